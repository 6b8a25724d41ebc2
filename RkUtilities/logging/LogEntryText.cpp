#include "RkUtilities/logging/LogEntryText.h"

#include "RkUtilities/foundation/TextBuilder.h"
#include "RkUtilities/logging/CrkLogWriter.h"
#include "RkUtilities/platform/Threads.h"

#include <array>
#include <bit>
#include <charconv>
#include <chrono>
#include <cstddef>
#include <iterator>

namespace rk {

namespace {

// Indexed by level.
constexpr std::u16string_view kSeverities[] = {u"Emergency", u"Critical", u"Error", u"Warning",
                                               u"Notice",    u"Info",     u"Debug"};

// The markup of a header, body and footer around the values, and the values of fixed or nearly fixed length.
constexpr std::size_t kUsualOverhead = 400;

std::u16string_view SeverityText(ErkLogLevel level)
{
    const auto index = static_cast<unsigned>(level);
    return index < std::size(kSeverities) ? kSeverities[index] : std::u16string_view();
}

void AppendEscaped(TextBuilder& target, std::u16string_view text)
{
    for (std::size_t at = text.find(u'&'); at != std::u16string_view::npos; at = text.find(u'&')) {
        target.Append(text.substr(0, at));
        target.Append(u"&amp;");
        text.remove_prefix(at + 1);
    }
    target.Append(text);
}

void AppendPreparedMessage(TextBuilder& target, std::u16string_view message)
{
    // Escaping neither makes nor breaks a "?>", so it may as well be looked for before.
    constexpr std::u16string_view kDeclarationEnd = u"?>";
    if (const std::size_t at = message.find(kDeclarationEnd); at != std::u16string_view::npos)
        message.remove_prefix(at + kDeclarationEnd.size());
    AppendEscaped(target, message);
}

template <class Number>
void AppendNumber(TextBuilder& target, Number number, int base)
{
    std::array<char, 24> digits;
    const auto result = std::to_chars(digits.data(), digits.data() + digits.size(), number, base);
    target.AppendAscii({digits.data(), result.ptr});
}

void AppendUuid(TextBuilder& target, const CFUUIDBytes& id)
{
    constexpr char16_t kDigits[] = u"0123456789ABCDEF";
    std::array<char16_t, 36> text;
    auto* next = text.begin();
    std::size_t index = 0;
    for (const std::uint8_t byte : std::bit_cast<std::array<std::uint8_t, 16>>(id)) {
        if (index == 4 || index == 6 || index == 8 || index == 10)
            *next++ = u'-';
        *next++ = kDigits[byte >> 4];
        *next++ = kDigits[byte & 0xF];
        ++index;
    }
    target.Append({text.data(), text.size()});
}

std::int32_t SecondsSince2001()
{
    using namespace std::chrono;
    constexpr sys_days kReferenceDate = 2001y / January / 1;
    return static_cast<std::int32_t>(duration_cast<seconds>(system_clock::now() - kReferenceDate).count());
}

void AppendHeader(TextBuilder& target, const CString& category, ErkLogLevel level, const CString& description,
                  const CFUUIDBytes& id)
{
    target.AppendAscii(kEntryStart);
    target.Append(CrkLogWriter::CurrentTimeString(kCFDateFormatterShortStyle));
    target.Append(u':');
    AppendNumber(target, std::int64_t{SecondsSince2001()} - CrkLogWriter::m_seconds, 10);
    target.Append(u"</l:Timestamp><l:Tid>");
    AppendNumber(target, platform::CurrentThreadHandle(), 16);
    target.Append(u"</l:Tid><l:Category>");
    AppendEscaped(target, category);
    target.Append(u"</l:Category><l:Severity>");
    target.Append(SeverityText(level));
    target.Append(u"</l:Severity><l:Id>");
    AppendUuid(target, id);
    target.Append(u"</l:Id><l:Description>");
    AppendEscaped(target, description);
    target.Append(u"</l:Description>");
}

std::size_t UnitsOf(const CString& text)
{
    return static_cast<std::size_t>(text.GetLength());
}

}  // namespace

CString LogEntryText(const CString& message, const CString& category, ErkLogLevel level, const CString& description,
                     const CFUUIDBytes& id)
{
    TextBuilder entry(kUsualOverhead + UnitsOf(message) + UnitsOf(category) + UnitsOf(description));
    AppendHeader(entry, category, level, description, id);
    entry.Append(u"<l:Body>");
    AppendPreparedMessage(entry, message);
    entry.Append(u"</l:Body>");
    entry.AppendAscii(kEntryFooter);
    return entry.Take();
}

}  // namespace rk

constinit std::int32_t CrkLogWriter::m_seconds = 0;

namespace {

// Before the initialisers of all files, which in a static library may run earlier than this file's and use the log
// already.
[[gnu::constructor(101)]] void NoteWhenTheLibraryWasLoaded()
{
    CrkLogWriter::m_seconds = rk::SecondsSince2001();
}

}  // namespace

CString CrkLogWriter::EntryHeader(const CString& category, ErkLogLevel level, const CString& description,
                                  CFUUIDBytes id)
{
    rk::TextBuilder header(rk::kUsualOverhead);
    rk::AppendHeader(header, category, level, description, id);
    return header.Take();
}

CString CrkLogWriter::EntryFooter()
{
    return rk::kEntryFooter;
}

CString CrkLogWriter::PrepareXml(const CString& message)
{
    rk::TextBuilder body(rk::UnitsOf(message));
    rk::AppendPreparedMessage(body, message);
    return body.Take();
}

void CrkLogWriter::EscapeXmlCharacters(CString& text)
{
    text.Replace(u"&", u"&amp;");
}

CString CrkLogWriter::Severity(ErkLogLevel level)
{
    return rk::SeverityText(level);
}
