#include "RkUtilities/dates/CrkDateUtilities.h"
#include "RkUtilities/platform/locale/DateText.h"
#include "RkUtilities/platform/locale/UserLocale.h"
#include "RkUtilities/platform/process/LocalTime.h"

#include <cmath>

namespace {

using rk::platform::DateStyle;
using rk::platform::DateTextFormat;

/// The short and the long format of a kind, made together for the locale of the first call.
struct FormatPair {
    std::shared_ptr<const DateTextFormat> shortFormat;
    std::shared_ptr<const DateTextFormat> longFormat;
};

const std::string& Locale()
{
    return rk::platform::UserLocaleName(rk::platform::LocaleUse::Time);
}

// Neither pair is ever destroyed: a static object's destructor may still ask.
const FormatPair& DateFormats()
{
    DateTextFormat::Prepare();
    static const auto& formats =
        *new FormatPair{.shortFormat = DateTextFormat::For(Locale(), DateStyle::Short, DateStyle::None),
                        .longFormat = DateTextFormat::For(Locale(), DateStyle::Long, DateStyle::None)};
    return formats;
}

const FormatPair& TimeFormats()
{
    DateTextFormat::Prepare();
    static const auto& formats =
        *new FormatPair{.shortFormat = DateTextFormat::For(Locale(), DateStyle::None, DateStyle::Short),
                        .longFormat = DateTextFormat::For(Locale(), DateStyle::None, DateStyle::Long)};
    return formats;
}

/// Valid until the thread's next text; "" when there is no such format.
std::u16string_view Text(const std::shared_ptr<const DateTextFormat>& format, const CTime& time)
{
    const auto seconds = static_cast<std::int64_t>(std::floor(time.GetCFAbsoluteTime()));
    return format != nullptr ? format->Text(seconds + rk::platform::kUtcSecondsOf2001) : std::u16string_view();
}

}  // namespace

CString CrkDateUtilities::ShortDateString(const CTime& time)
{
    return Text(DateFormats().shortFormat, time);
}

CString CrkDateUtilities::LongDateString(const CTime& time)
{
    return Text(DateFormats().longFormat, time);
}

CString CrkDateUtilities::ShortTimeString(const CTime& time)
{
    return Text(TimeFormats().shortFormat, time);
}

CString CrkDateUtilities::LongTimeString(const CTime& time)
{
    return Text(TimeFormats().longFormat, time);
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
