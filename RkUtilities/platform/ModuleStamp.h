#pragma once

#include <cstddef>
#include <string_view>

namespace rk::platform {

/// What stands first in the services of each module: the library takes a module of its own version only.
struct ModuleStamp {
    std::string_view version = RKUTILITIES_VERSION;
    std::size_t servicesByteCount = 0;

    friend bool operator==(const ModuleStamp&, const ModuleStamp&) = default;
};

}  // namespace rk::platform
