#include "RkUtilities/logging/CrkLogWriter.h"
#include "RkUtilities/logging/detail/LogEntryText.h"
#include "RkUtilities/platform/locale/DateText.h"
#include "RkUtilities/platform/locale/UserLocale.h"

#include <chrono>

std::u16string_view rk::LocalTimeText(std::chrono::system_clock::time_point time, CFDateFormatterStyle style)
{
    using platform::DateStyle;
    static_assert(static_cast<long>(DateStyle::Full) == kCFDateFormatterFullStyle);
    const bool isKnown = style >= kCFDateFormatterNoStyle && style <= kCFDateFormatterFullStyle;
    const DateStyle ours = isKnown ? static_cast<DateStyle>(style) : DateStyle::None;
    return platform::LocalDateText(platform::UserLocaleName(platform::LocaleUse::Time), ours, ours,
                                   std::chrono::floor<std::chrono::seconds>(time.time_since_epoch()).count());
}

CString CrkLogWriter::CurrentTimeString(CFDateFormatterStyle style)
{
    return CString(rk::LocalTimeText(std::chrono::system_clock::now(), style));
}
