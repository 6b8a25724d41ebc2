#include "RkUtilities/platform/Collation.h"

#include "RkUtilities/platform/Modules.h"
#include "RkUtilities/platform/PerThread.h"
#include "RkUtilities/platform/UserLocaleName.h"
#include "RkUtilities/platform/icu/IcuServices.h"

#include <memory>

namespace rk::platform {

namespace {

struct Known {
    std::string locale;
    std::unique_ptr<const NameOrder> order;
};

}  // namespace

/// The thread's order is made again when the locale has changed.
std::string CollationKey(std::u16string_view text)
{
    auto& known = PerThread<Known>();
    const std::string& locale = UserLocaleName(LocaleUse::Order);
    if (known.order == nullptr || known.locale != locale) {
        known.order = Icu().nameOrder(locale);
        known.locale = locale;
    }
    return known.order->Key(text);
}

}  // namespace rk::platform
