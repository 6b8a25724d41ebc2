#include "RkUtilities/logging/detail/LogEntryText.h"

#include "RkUtilities/foundation/detail/TextBuilder.h"
#include "RkUtilities/foundation/detail/TextSearch.h"
#include "RkUtilities/logging/CrkLogWriter.h"
#include "RkUtilities/platform/process/Threads.h"

#include <array>
#include <bit>
#include <charconv>
#include <chrono>
#include <cstddef>
#include <iterator>

namespace rk {

namespace {

// Indexed by level.
constexpr std::string_view kSeverities[] = {"Emergency", "Critical", "Error", "Warning", "Notice", "Info", "Debug"};

// The markup of a header, body and footer around the values, and the values of fixed or nearly fixed length.
constexpr std::size_t kUsualOverhead = 400;

std::string_view SeverityText(ErkLogLevel level)
{
    const auto index = static_cast<unsigned>(level);
    return index < std::size(kSeverities) ? kSeverities[index] : std::string_view();
}

// A text is built as UTF-16 for callers and as UTF-8 for the file, both from the same pieces: a target is a TextBuilder
// or EntryBytes. All markup and what is replaced by it is ASCII, so no pair of surrogates is split between pieces.

template <class Target>
void AppendEscaped(Target& target, std::u16string_view text)
{
    const UnitSet ampersand(u"&");
    for (std::size_t at = ampersand.FirstIn(text, 0); at < text.size(); at = ampersand.FirstIn(text, 0)) {
        target.Append(text.substr(0, at));
        target.AppendAscii("&amp;");
        text.remove_prefix(at + 1);
    }
    target.Append(text);
}

// What follows the first "?>"; all when there is none. Escaping neither makes nor breaks one, so it may be looked for
// before.
std::u16string_view WithoutDeclaration(std::u16string_view message)
{
    const UnitSet questionMark(u"?");
    for (std::size_t at = questionMark.FirstIn(message, 0); at + 1 < message.size();
         at = questionMark.FirstIn(message, at + 1)) {
        if (message[at + 1] == u'>')
            return message.substr(at + 2);
    }
    return message;
}

template <class Target>
void AppendPreparedMessage(Target& target, std::u16string_view message)
{
    AppendEscaped(target, WithoutDeclaration(message));
}

template <class Target, class Number>
void AppendNumber(Target& target, Number number, int base)
{
    std::array<char, 24> digits;
    const auto result = std::to_chars(digits.data(), digits.data() + digits.size(), number, base);
    target.AppendAscii({digits.data(), result.ptr});
}

template <class Target>
void AppendUuid(Target& target, const CFUUIDBytes& id)
{
    constexpr char kDigits[] = "0123456789ABCDEF";
    std::array<char, 36> text;
    auto* next = text.begin();
    std::size_t index = 0;
    for (const std::uint8_t byte : std::bit_cast<std::array<std::uint8_t, 16>>(id)) {
        if (index == 4 || index == 6 || index == 8 || index == 10)
            *next++ = '-';
        *next++ = kDigits[byte >> 4];
        *next++ = kDigits[byte & 0xF];
        ++index;
    }
    target.AppendAscii({text.data(), text.size()});
}

std::int32_t SecondsSince2001(std::chrono::system_clock::time_point time)
{
    using namespace std::chrono;
    constexpr sys_days kReferenceDate = 2001y / January / 1;
    return static_cast<std::int32_t>(duration_cast<seconds>(time - kReferenceDate).count());
}

template <class Target>
void AppendHeader(Target& target, const CString& category, ErkLogLevel level, const CString& description,
                  const CFUUIDBytes& id)
{
    const auto now = std::chrono::system_clock::now();
    target.AppendAscii(kEntryStart);
    target.Append(LocalTimeText(now, kCFDateFormatterShortStyle));
    target.AppendAscii(":");
    AppendNumber(target, std::int64_t{SecondsSince2001(now)} - CrkLogWriter::m_seconds, 10);
    target.AppendAscii("</l:Timestamp><l:Tid>");
    AppendNumber(target, platform::CurrentThreadHandle(), 16);
    target.AppendAscii("</l:Tid><l:Category>");
    AppendEscaped(target, category);
    target.AppendAscii("</l:Category><l:Severity>");
    target.AppendAscii(SeverityText(level));
    target.AppendAscii("</l:Severity><l:Id>");
    AppendUuid(target, id);
    target.AppendAscii("</l:Id><l:Description>");
    AppendEscaped(target, description);
    target.AppendAscii("</l:Description>");
}

}  // namespace

void AppendEntry(EntryBytes& entry, const CString& message, const CString& category, ErkLogLevel level,
                 const CString& description, const CFUUIDBytes& id)
{
    AppendHeader(entry, category, level, description, id);
    entry.AppendAscii("<l:Body>");
    AppendPreparedMessage(entry, message);
    entry.AppendAscii("</l:Body>");
    entry.AppendAscii(kEntryFooter);
}

}  // namespace rk

constinit std::int32_t CrkLogWriter::m_seconds = 0;

namespace {

// Before the initialisers of all files, which in a static library may run earlier than this file's and use the log
// already.
[[gnu::constructor(101)]] void NoteWhenTheLibraryWasLoaded()
{
    CrkLogWriter::m_seconds = rk::SecondsSince2001(std::chrono::system_clock::now());
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
    rk::TextBuilder body(static_cast<std::size_t>(message.GetLength()));
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
