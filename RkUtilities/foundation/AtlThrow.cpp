#include "RkUtilities/foundation/AtlThrow.h"

namespace ATL {

CAtlException::CAtlException(int code) noexcept : m_hr(code) {}

const char* CAtlException::what() const noexcept {
    if (m_hr == kAllocationFailed)
        return "container: out of memory";
    return m_hr == kInvalidArgument ? "container: no such index or position" : "container: failure";
}

void AtlThrow(int code) { throw CAtlException(code); }

}  // namespace ATL
