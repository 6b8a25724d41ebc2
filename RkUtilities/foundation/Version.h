#pragma once

#include "RkUtilities/RkExport.h"

#include <string_view>

/// The version of these headers, by semantic versioning. Before 1.0 a minor version may change the interface.
#define RKUTILITIES_VERSION_MAJOR 0
#define RKUTILITIES_VERSION_MINOR 1
#define RKUTILITIES_VERSION_PATCH 0

namespace rk {

/// The version of the library that the program runs with: "0.1.0". It may differ from the headers' in its last number.
/// Safe from any thread; the text lives as long as the library.
RK_EXPORT std::string_view Version() noexcept;

}  // namespace rk
