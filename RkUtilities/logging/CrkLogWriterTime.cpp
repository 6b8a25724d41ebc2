#include "RkUtilities/logging/CrkLogWriter.h"
#include "RkUtilities/logging/detail/LogEntryText.h"
#include "RkUtilities/platform/locale/DateText.h"
#include "RkUtilities/platform/locale/UserLocale.h"

#include <chrono>

namespace {

rk::platform::DateStyle DateStyleOf(CFDateFormatterStyle style)
{
    using rk::platform::DateStyle;
    switch (style) {
    case kCFDateFormatterShortStyle:
        return DateStyle::Short;
    case kCFDateFormatterMediumStyle:
        return DateStyle::Medium;
    case kCFDateFormatterLongStyle:
        return DateStyle::Long;
    case kCFDateFormatterFullStyle:
        return DateStyle::Full;
    default:
        return DateStyle::None;
    }
}

}  // namespace

std::u16string_view rk::LocalTimeText(std::chrono::system_clock::time_point time, CFDateFormatterStyle style)
{
    const platform::DateStyle ours = DateStyleOf(style);
    return platform::LocalDateText(platform::UserLocaleName(platform::LocaleUse::Time), ours, ours,
                                   std::chrono::floor<std::chrono::seconds>(time.time_since_epoch()).count());
}

CString CrkLogWriter::CurrentTimeString(CFDateFormatterStyle style)
{
    return CString(rk::LocalTimeText(std::chrono::system_clock::now(), style));
}
