#include "RkUtilities/dates/CrkDateUtilities.h"
#include "RkUtilities/platform/locale/DateText.h"
#include "RkUtilities/platform/locale/UserLocale.h"
#include "RkUtilities/platform/process/LocalTime.h"

#include <atomic>
#include <cmath>
#include <memory>
#include <string>

namespace {

using rk::platform::DateStyle;

std::int64_t UtcSeconds(const CTime& time)
{
    return static_cast<std::int64_t>(std::floor(time.GetCFAbsoluteTime())) + rk::platform::kUtcSecondsOf2001;
}

/// The locale of the first call, which stays that of all texts of a kind. Never destroyed: a static object's destructor
/// may still ask.
class FirstLocale {
public:
    const std::string& Name()
    {
        const std::string* name = m_name.load(std::memory_order_acquire);
        if (name == nullptr) {
            auto first =
                std::make_unique<const std::string>(rk::platform::UserLocaleName(rk::platform::LocaleUse::Time));
            if (m_name.compare_exchange_strong(name, first.get(), std::memory_order_acq_rel))
                name = first.release();
        }
        return *name;
    }

private:
    std::atomic<const std::string*> m_name = nullptr;
};
constinit FirstLocale dateLocale;
constinit FirstLocale timeLocale;

std::u16string_view DateText(const CTime& time, DateStyle style)
{
    return rk::platform::LocalDateText(dateLocale.Name(), style, DateStyle::None, UtcSeconds(time));
}

std::u16string_view TimeText(const CTime& time, DateStyle style)
{
    return rk::platform::LocalDateText(timeLocale.Name(), DateStyle::None, style, UtcSeconds(time));
}

}  // namespace

CString CrkDateUtilities::ShortDateString(const CTime& time)
{
    return DateText(time, DateStyle::Short);
}

CString CrkDateUtilities::LongDateString(const CTime& time)
{
    return DateText(time, DateStyle::Long);
}

CString CrkDateUtilities::ShortTimeString(const CTime& time)
{
    return TimeText(time, DateStyle::Short);
}

CString CrkDateUtilities::LongTimeString(const CTime& time)
{
    return TimeText(time, DateStyle::Long);
}

CString CrkDateUtilities::CurrentShortDateString()
{
    return ShortDateString(CTime::GetCurrentTime());
}

CString CrkDateUtilities::CurrentShortTimeString()
{
    return ShortTimeString(CTime::GetCurrentTime());
}

CString CrkDateUtilities::DateTimeString(const CTime& time)
{
    return ShortDateString(time) + u' ' + LongTimeString(time);
}

CString CrkDateUtilities::ShortDateTimeString(const CTime& time)
{
    return ShortDateString(time) + u' ' + ShortTimeString(time);
}
