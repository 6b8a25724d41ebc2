#pragma once

#include "RkUtilities/RkExport.h"

#include <string_view>

namespace rk {

/// Names the application whose preferences `SECRegistry` keeps; without a call, or for "", it is the executable's file
/// name. Counts only before the first use of the preferences. "/" and U+0000 read as "_". Safe from any thread.
RK_EXPORT void SetApplicationName(std::string_view name);

}  // namespace rk

/// The names by which existing calling code knows them.
namespace rk::platform {
using rk::SetApplicationName;
}  // namespace rk::platform
