#include "RkUtilities/platform/locale/Collation.h"

#include "RkUtilities/platform/locale/IcuServices.h"
#include "RkUtilities/platform/locale/UserLocale.h"
#include "RkUtilities/platform/process/PerThread.h"

#include <algorithm>
#include <memory>

namespace rk::platform {

namespace {

struct Known {
    std::string locale;
    std::unique_ptr<const NameOrder> order;
};

/// The thread's order, made again when the locale has changed.
const NameOrder& UserOrder()
{
    auto& known = PerThread<Known>();
    const std::string& locale = UserLocaleName(LocaleUse::Order);
    if (known.order == nullptr || known.locale != locale) {
        known.order = Icu().nameOrder(locale);
        known.locale = locale;
    }
    return *known.order;
}

bool IsAscii(std::u16string_view text) noexcept
{
    unsigned seen = 0;
    for (const char16_t unit : text)
        seen |= unit;
    return seen < 0x80;
}

void AppendPlaces(const AsciiPlaces& places, std::u16string_view text, std::string& keys)
{
    for (const char16_t unit : text) {
        if (const std::uint8_t place = places[unit]; place != 0)
            keys += static_cast<char>(place);
    }
}

}  // namespace

CollationKeys CollationKeysOf(const std::vector<std::u16string_view>& texts)
{
    const NameOrder& order = UserOrder();
    const AsciiPlaces* const places = order.PlacesOfAscii();
    const bool placesDecide = places != nullptr && std::all_of(texts.begin(), texts.end(), IsAscii);
    CollationKeys keys;
    keys.ends.reserve(texts.size());
    for (const std::u16string_view text : texts) {
        if (placesDecide)
            AppendPlaces(*places, text, keys.bytes);
        else
            order.AppendKey(text, keys.bytes);
        keys.ends.push_back(keys.bytes.size());
    }
    return keys;
}

}  // namespace rk::platform
