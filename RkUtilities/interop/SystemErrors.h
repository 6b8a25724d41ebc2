#pragma once

#include "RkUtilities/foundation/CFileException.h"

#include <system_error>
#include <utility>

namespace rk {

/// Disposes of a failure that was caught as a pointer and throws it as a `std::system_error`: the system's error number
/// in the generic category (EIO without a number), the path in `what()`.
[[noreturn]] inline void ThrowAsSystemError(CFileException* failure) {
    const CString path = failure->m_strFileName;
    const auto osError = static_cast<int>(failure->m_lOsError);
    failure->Delete();
    throw std::system_error(osError != 0 ? std::error_code(osError, std::generic_category())
                                         : make_error_code(std::errc::io_error),
                            path.ToUtf8());
}

/// Runs a call, and throws its failures by value: a `CFileException*` that leaves it becomes a `std::system_error`.
///
///     try {
///         rk::WithSystemErrors([&] { CFile::Remove(path); });
///     } catch (const std::system_error& failure) {
///         std::cerr << failure.what();    // /maps/plan.map: No such file or directory
///     }
///
/// Other exceptions, and the result, come out as they are.
template <class Call> decltype(auto) WithSystemErrors(Call&& call) {
    try {
        return std::forward<Call>(call)();
    } catch (CFileException* failure) {
        ThrowAsSystemError(failure);
    }
}

}  // namespace rk
