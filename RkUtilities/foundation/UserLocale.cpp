#include "RkUtilities/foundation/UserLocale.h"

#include "RkUtilities/platform/locale/DateText.h"
#include "RkUtilities/platform/locale/NumberFormats.h"
#include "RkUtilities/platform/locale/UserLocale.h"

namespace rk {

void SetUserLocale(std::string_view name) { platform::NameUserLocale(name); }

void PrepareFormats() {
    using platform::DateStyle, platform::LocaleUse, platform::NumberFormats;
    for (const LocaleUse use : {LocaleUse::Money, LocaleUse::Numbers, LocaleUse::Time})
        static_cast<void>(NumberFormats::Of(use));
    static_cast<void>(NumberFormats::Of(LocaleUse::Numbers).ReadWhole(u"1"));
    constexpr struct {
        DateStyle date, time;
    } kStyles[] = {{DateStyle::Short, DateStyle::None},
                   {DateStyle::Long, DateStyle::None},
                   {DateStyle::None, DateStyle::Short},
                   {DateStyle::None, DateStyle::Long},
                   {DateStyle::Short, DateStyle::Short}};
    const std::string& locale = platform::UserLocaleName(LocaleUse::Time);
    for (const auto& [date, time] : kStyles)
        platform::LocalDateText(locale, date, time, /*utcSeconds=*/0);
}

}  // namespace rk
