#include "RkUtilities/foundation/Version.h"

#define RK_TEXT(value) #value
#define RK_VERSION(major, minor, patch) RK_TEXT(major) "." RK_TEXT(minor) "." RK_TEXT(patch)

namespace rk {

std::string_view Version() noexcept {
    return RK_VERSION(RKUTILITIES_VERSION_MAJOR, RKUTILITIES_VERSION_MINOR, RKUTILITIES_VERSION_PATCH);
}

}  // namespace rk
