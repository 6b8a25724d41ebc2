#include "RkUtilities/dates/CrkDateUtilities.h"
#include "RkUtilities/platform/locale/DateText.h"
#include "RkUtilities/platform/locale/UserLocale.h"
#include "RkUtilities/platform/process/LocalTime.h"

#include <atomic>
#include <memory>
#include <string>

namespace {

using rk::platform::DateStyle;

// The locale of the first date text and of the first time text, which all later texts keep. They are never
// destroyed: a static object's destructor may still ask.
constinit std::atomic<const std::string*> dateLocale = nullptr;
constinit std::atomic<const std::string*> timeLocale = nullptr;

const std::string& Fixed(std::atomic<const std::string*>& locale) {
    const std::string* name = locale.load(std::memory_order_acquire);
    if (name == nullptr) {
        auto first = std::make_unique<const std::string>(rk::platform::UserLocaleName(rk::platform::LocaleUse::Time));
        if (locale.compare_exchange_strong(name, first.get(), std::memory_order_acq_rel))
            name = first.release();
    }
    return *name;
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
