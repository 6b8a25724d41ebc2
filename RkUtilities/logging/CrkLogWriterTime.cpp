#include "RkUtilities/logging/CrkLogWriter.h"
#include "RkUtilities/logging/detail/LogEntryText.h"
#include "RkUtilities/platform/locale/DateText.h"
#include "RkUtilities/platform/locale/UserLocale.h"
#include "RkUtilities/platform/process/PerThread.h"

#include <chrono>
#include <memory>
#include <string>

namespace {

using rk::platform::DateTextFormat;

// The format that a thread used last; each entry of a log asks for the same one.
struct LastFormat {
    std::string locale;
    CFDateFormatterStyle style = kCFDateFormatterNoStyle;
    std::shared_ptr<const DateTextFormat> format;
};

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

const DateTextFormat* FormatOf(CFDateFormatterStyle style)
{
    const std::string& locale = rk::platform::UserLocaleName(rk::platform::LocaleUse::Time);
    auto& last = rk::platform::PerThread<LastFormat>();
    if (last.style != style || last.locale != locale) {
        const rk::platform::DateStyle ours = DateStyleOf(style);
        last = {.locale = locale, .style = style, .format = DateTextFormat::For(locale, ours, ours)};
    }
    return last.format.get();
}

}  // namespace

std::u16string_view rk::LocalTimeText(std::chrono::system_clock::time_point time, CFDateFormatterStyle style)
{
    const DateTextFormat* const format = FormatOf(style);
    if (format == nullptr)
        return {};
    return format->Text(std::chrono::floor<std::chrono::seconds>(time.time_since_epoch()).count());
}

CString CrkLogWriter::CurrentTimeString(CFDateFormatterStyle style)
{
    return CString(rk::LocalTimeText(std::chrono::system_clock::now(), style));
}
