#include "RkUtilities/foundation/AtlThrow.h"

namespace ATL {

CAtlException::CAtlException(int code) noexcept : m_hr(code) {}

const char* CAtlException::what() const noexcept {
    switch (m_hr) {
    case kAllocationFailed:
        return "container: out of memory";
    case kInvalidArgument:
        return "container: no such index or position";
    default:
        return "container: failure";
    }
}

void AtlThrow(int code) { throw CAtlException(code); }

}  // namespace ATL
