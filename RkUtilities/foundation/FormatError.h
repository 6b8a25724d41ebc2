#pragma once

#include "RkUtilities/RkExport.h"

#include <stdexcept>

namespace rk {

/// A format that cannot be carried out: what() says which conversion and why. Thrown by `CString::Format` and
/// `FormatV`.
class RK_EXPORT RK_DESCRIBED FormatError : public std::runtime_error {
public:
    /// An error whose `what()` is the reason.
    explicit FormatError(const char* reason) : std::runtime_error(reason) {}
    ~FormatError() override;
};

}  // namespace rk
