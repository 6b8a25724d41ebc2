#include "RkUtilities/preferences/ApplicationName.h"

#include "RkUtilities/platform/process/ApplicationName.h"

namespace rk {

void SetApplicationName(std::string_view name) { platform::NameApplication(name); }

}  // namespace rk
