#include "RkUtilities/logging/detail/LogEntryText.h"

#include "RkUtilities/foundation/detail/TextBuilder.h"
#include "RkUtilities/foundation/detail/TextSearch.h"
#include "RkUtilities/foundation/detail/Utf8.h"
#include "RkUtilities/logging/CrkLogWriter.h"
#include "RkUtilities/platform/locale/DateText.h"
#include "RkUtilities/platform/locale/UserLocale.h"
#include "RkUtilities/platform/process/Threads.h"

#include <array>
#include <charconv>
#include <chrono>
#include <cstddef>
#include <iterator>

namespace rk {

using namespace std::string_view_literals;

namespace {

/// The markup of a header, body and footer around the values, and the values of fixed or nearly fixed length.
constexpr std::size_t kUsualOverhead = 400;

std::string_view SeverityText(ErkLogLevel level) {
    const auto index = static_cast<unsigned>(level);
    return index < std::size(kLevelNames) ? kLevelNames[index].substr("Log"sv.size()) : std::string_view();
}

void AppendEscaped(TextBuilder& target, std::u16string_view text) {
    for (std::size_t at = FindUnits(text, u"&", 0); at < text.size(); at = FindUnits(text, u"&", 0)) {
        target.Append(text.substr(0, at));
        target.Append(u"&amp;"sv);
        text.remove_prefix(at + 1);
    }
    target.Append(text);
}

/// The message behind its first "?>", or all of it. Escaping neither makes nor breaks a "?>".
std::u16string_view WithoutDeclaration(std::u16string_view message) {
    const std::size_t end = FindUnits(message, u"?>", 0);
    return end < message.size() ? message.substr(end + 2) : message;
}

void AppendPreparedMessage(TextBuilder& target, std::u16string_view message) {
    AppendEscaped(target, WithoutDeclaration(message));
}

/// `CrkLogWriter::CurrentTimeString` of a time. Valid until the thread's next text of a date or a time.
std::u16string_view LocalTimeText(std::chrono::system_clock::time_point time, CFDateFormatterStyle style) {
    using platform::DateStyle;
    static_assert(static_cast<long>(DateStyle::Full) == kCFDateFormatterFullStyle);
    const bool isStyle = style >= kCFDateFormatterNoStyle && style <= kCFDateFormatterFullStyle;
    const DateStyle ours = isStyle ? static_cast<DateStyle>(style) : DateStyle::None;
    return platform::LocalDateText(platform::UserLocaleName(platform::LocaleUse::Time), ours, ours,
                                   std::chrono::floor<std::chrono::seconds>(time.time_since_epoch()).count());
}

void AppendHexadecimal(TextBuilder& target, std::uintptr_t number) {
    std::array<char, 2 * sizeof number> digits;
    target.AppendAscii({digits.data(), std::to_chars(digits.begin(), digits.end(), number, 16).ptr});
}

std::int32_t SecondsSince2001(std::chrono::system_clock::time_point time) {
    using namespace std::chrono;
    constexpr sys_days kReferenceDate = 2001y / January / 1;
    return static_cast<std::int32_t>(duration_cast<seconds>(time - kReferenceDate).count());
}

void AppendHeader(TextBuilder& target, const CString& category, ErkLogLevel level, const CString& description,
                  const CFUUIDBytes& id) {
    const auto now = std::chrono::system_clock::now();
    target.Append(u"<l:LogEntry><l:Timestamp>"sv);
    target.Append(LocalTimeText(now, kCFDateFormatterShortStyle));
    target.Append(u":"sv);
    target.AppendAscii(std::to_string(std::int64_t{SecondsSince2001(now)} - CrkLogWriter::m_seconds));
    target.Append(u"</l:Timestamp><l:Tid>"sv);
    AppendHexadecimal(target, platform::CurrentThreadHandle());
    target.Append(u"</l:Tid><l:Category>"sv);
    AppendEscaped(target, category);
    target.Append(u"</l:Category><l:Severity>"sv);
    target.AppendAscii(SeverityText(level));
    target.Append(u"</l:Severity><l:Id>"sv);
    target.Append(CrkGuid::GuidToString(guid::WithGroupsReversed(id)));
    target.Append(u"</l:Id><l:Description>"sv);
    AppendEscaped(target, description);
    target.Append(u"</l:Description>"sv);
}

}  // namespace

std::string EntryUtf8(const CString& message, const CString& category, ErkLogLevel level, const CString& description,
                      const CFUUIDBytes& id) {
    TextBuilder entry(kUsualOverhead + static_cast<std::size_t>(message.GetLength()));
    AppendHeader(entry, category, level, description, id);
    entry.Append(u"<l:Body>"sv);
    AppendPreparedMessage(entry, message);
    entry.Append(u"</l:Body></l:LogEntry>\n"sv);
    std::string bytes;
    AppendUtf8(entry.View(), bytes);
    return bytes;
}

}  // namespace rk

constinit std::int32_t CrkLogWriter::m_seconds = 0;

namespace {

/// Runs before the initialisers of all files, which may use the log already.
[[gnu::constructor(101)]] void NoteWhenTheLibraryWasLoaded() {
    CrkLogWriter::m_seconds = rk::SecondsSince2001(std::chrono::system_clock::now());
}

}  // namespace

CString CrkLogWriter::EntryHeader(const CString& category, ErkLogLevel level, const CString& description,
                                  CFUUIDBytes id) {
    rk::TextBuilder header(rk::kUsualOverhead);
    rk::AppendHeader(header, category, level, description, id);
    return header.Take();
}

CString CrkLogWriter::EntryFooter() { return rk::kEntryFooter; }

CString CrkLogWriter::PrepareXml(const CString& message) {
    rk::TextBuilder body(static_cast<std::size_t>(message.GetLength()));
    rk::AppendPreparedMessage(body, message);
    return body.Take();
}

CString CrkLogWriter::CurrentTimeString(CFDateFormatterStyle style) {
    return rk::LocalTimeText(std::chrono::system_clock::now(), style);
}

CString CrkLogWriter::Severity(ErkLogLevel level) { return rk::SeverityText(level); }
