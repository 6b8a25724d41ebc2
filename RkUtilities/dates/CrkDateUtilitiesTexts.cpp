#include "RkUtilities/dates/CrkDateUtilities.h"
#include "RkUtilities/platform/locale/DateText.h"
#include "RkUtilities/platform/locale/UserLocale.h"
#include "RkUtilities/platform/process/LocalTime.h"
#include "RkUtilities/platform/process/MadeOnce.h"

#include <string>

namespace {

using rk::platform::DateStyle;

/// The locale of the first date text and of the first time text, which all later texts keep.
constinit std::atomic<const std::string*> dateLocale = nullptr;
constinit std::atomic<const std::string*> timeLocale = nullptr;

const std::string& Fixed(std::atomic<const std::string*>& locale) {
    return rk::platform::MadeOnce(locale, [] { return rk::platform::UserLocaleName(rk::platform::LocaleUse::Time); });
}

std::u16string_view DateText(const CTime& time, DateStyle style) {
    return rk::platform::LocalDateText(Fixed(dateLocale), style, DateStyle::None,
                                       rk::platform::UtcSecondsOf(time.GetCFAbsoluteTime()));
}

std::u16string_view TimeText(const CTime& time, DateStyle style) {
    return rk::platform::LocalDateText(Fixed(timeLocale), DateStyle::None, style,
                                       rk::platform::UtcSecondsOf(time.GetCFAbsoluteTime()));
}

}  // namespace

CString CrkDateUtilities::ShortDateString(const CTime& time) { return DateText(time, DateStyle::Short); }

CString CrkDateUtilities::LongDateString(const CTime& time) { return DateText(time, DateStyle::Long); }

CString CrkDateUtilities::ShortTimeString(const CTime& time) { return TimeText(time, DateStyle::Short); }

CString CrkDateUtilities::LongTimeString(const CTime& time) { return TimeText(time, DateStyle::Long); }
