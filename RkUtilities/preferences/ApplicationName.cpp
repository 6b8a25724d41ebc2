#include "RkUtilities/preferences/ApplicationName.h"

#include "RkUtilities/platform/storage/PreferenceStore.h"

namespace rk {

void SetApplicationName(std::string_view name)
{
    platform::NameApplication(name);
}

}  // namespace rk
