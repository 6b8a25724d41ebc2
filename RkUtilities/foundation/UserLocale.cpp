#include "RkUtilities/foundation/UserLocale.h"

#include "RkUtilities/platform/locale/UserLocale.h"

namespace rk {

void SetUserLocale(std::string_view name)
{
    platform::NameUserLocale(name);
}

}  // namespace rk
