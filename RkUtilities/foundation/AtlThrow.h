#pragma once

#include "RkUtilities/RkExport.h"

#include <exception>
#include <new>
#include <utility>

namespace ATL {

inline constexpr int kAllocationFailed = -108;  ///< no memory, or a size that no memory can hold
inline constexpr int kInvalidArgument = -50;    ///< an index or a position that names no element

/// What the containers throw, by value.
class RK_EXPORT RK_DESCRIBED CAtlException : public std::exception {
public:
    explicit CAtlException(int code) noexcept;   ///< An exception with that code.
    const char* what() const noexcept override;  ///< English text for the code, in static memory.

    int m_hr;  ///< the code: ATL::kAllocationFailed, ATL::kInvalidArgument or what AtlThrow was given
};

/// Throws a CAtlException with the code.
[[noreturn]] RK_EXPORT void AtlThrow(int code);

}  // namespace ATL

namespace rk {

/// Runs the work of a container; std::bad_alloc from it, an element's own included, leaves as CAtlException -108.
template <class Work> decltype(auto) RaisingAllocationFailures(Work&& work) {
    try {
        return std::forward<Work>(work)();
    } catch (const std::bad_alloc&) {
        ATL::AtlThrow(ATL::kAllocationFailed);
    }
}

}  // namespace rk
