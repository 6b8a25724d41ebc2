#include "RkUtilities/strings/CrkStringUtilities.h"

#include "RkUtilities/foundation/detail/TextBuilder.h"
#include "RkUtilities/foundation/detail/UnitBlock.h"

#include <string_view>

namespace {

constexpr char16_t kDelete = 0x7F;
constexpr char16_t kCancel = 0x18;
constexpr std::u16string_view kFourSpaces = u"    ";
constexpr std::u16string_view kCrLf = u"\r\n";

bool IsKeptControl(char16_t unit)
{
    return unit == u'\t' || unit == u'\n' || unit == u'\r';
}

/// Units that a rule looks at; the others pass eight at a time. A rule answers for a block and for a unit, and may take a unit
/// that it then leaves as it is.
struct ControlsAndDelete {
    static rk::UnitMask In(rk::UnitBlock block)
    {
        return (block < rk::FilledBlock(0x20)) | (block == rk::FilledBlock(kDelete));
    }
    static bool Is(char16_t unit) { return unit < 0x20 || unit == kDelete; }
};

struct ControlsAndDeleteButBreaksAndTabs {
    static rk::UnitMask In(rk::UnitBlock block)
    {
        return ControlsAndDelete::In(block) & (block != rk::FilledBlock(u'\t')) & (block != rk::FilledBlock(u'\n')) &
               (block != rk::FilledBlock(u'\r'));
    }
    static bool Is(char16_t unit) { return ControlsAndDelete::Is(unit) && !IsKeptControl(unit); }
};

struct ControlsDeleteAndLess {
    static rk::UnitMask In(rk::UnitBlock block)
    {
        return ControlsAndDelete::In(block) | (block == rk::FilledBlock(u'<'));
    }
    static bool Is(char16_t unit) { return ControlsAndDelete::Is(unit) || unit == u'<'; }
};

struct NoTopicText {
    static rk::UnitMask In(rk::UnitBlock block)
    {
        return ControlsAndDelete::In(block) | (block >= rk::FilledBlock(0xFFFE)) |
               ((block & rk::FilledBlock(0xF800)) == rk::FilledBlock(0xD800));
    }
    static bool Is(char16_t unit) { return ControlsAndDelete::Is(unit) || unit >= 0xFFFE || (unit & 0xF800) == 0xD800; }
};

template <class Rule>
std::size_t NextFor(std::u16string_view text, std::size_t at)
{
    for (; at + rk::kBlockUnits <= text.size(); at += rk::kBlockUnits) {
        const rk::UnitMask found = Rule::In(rk::LoadBlock(text.data() + at));
        if (rk::AnyLane(found))
            return at + rk::FirstLane(found);
    }
    while (at < text.size() && !Rule::Is(text[at]))
        ++at;
    return at;
}

/// The text with what `append` writes in the place of each unit that the rule looks at; `append` gets the builder, the text and
/// the unit's index, and returns how many units it took. There is room at once for a text that grows by `growth` units.
template <class Rule, class Append>
CString Rewritten(const CString& source, const Append& append, std::size_t growth = 0)
{
    const std::u16string_view text = source.View();
    std::size_t at = NextFor<Rule>(text, 0);
    if (at == text.size())
        return source;
    rk::TextBuilder result(text.size() + growth);
    std::size_t done = 0;
    while (at < text.size()) {
        result.Append(text.substr(done, at - done));
        done = at + append(result, text, at);
        at = NextFor<Rule>(text, done);
    }
    result.Append(text.substr(done));
    return result.Take();
}

}  // namespace

void CrkStringUtilities::RemoveInvalidNotesCharacters(CString& text)
{
    text = Rewritten<ControlsAndDeleteButBreaksAndTabs>(
        text, [](rk::TextBuilder&, std::u16string_view, std::size_t) { return 1U; });
}

void CrkStringUtilities::RemoveInvalidTooltipCharacters(CString& text)
{
    constexpr std::u16string_view kBreak = u"<br>";
    text = Rewritten<ControlsDeleteAndLess>(
        text, [kBreak](rk::TextBuilder& result, std::u16string_view units, std::size_t at) -> std::size_t {
            const char16_t unit = units[at];
            if (units.substr(at, kBreak.size()) == kBreak) {
                result.Append(u'\n');
                return kBreak.size();
            }
            if (unit == u'\t')
                result.Append(kFourSpaces);
            else if (unit == kCancel)
                result.Append(u' ');
            else if (unit == u'\n' || unit == u'<')
                result.Append(unit);
            return 1;
        });
}

void CrkStringUtilities::FixInvalidUnformattedTooltipCharacters(CString& text)
{
    const auto less = static_cast<std::size_t>(CountOccurrences(text, u'<'));
    const auto tabs = static_cast<std::size_t>(CountOccurrences(text, u'\t'));
    text = Rewritten<ControlsDeleteAndLess>(
        text,
        [](rk::TextBuilder& result, std::u16string_view units, std::size_t at) {
            const char16_t unit = units[at];
            if (unit == u'<')
                result.Append(u"<<");
            else if (unit == u'\t')
                result.Append(kFourSpaces);
            else
                result.Append(unit == kCancel ? u' ' : unit);
            return 1U;
        },
        less + tabs * (kFourSpaces.size() - 1));
}

CString CrkStringUtilities::ReplaceInvalidTopicTextCharacters(const CString& text)
{
    return Rewritten<NoTopicText>(text, [](rk::TextBuilder& result, std::u16string_view units, std::size_t at) {
        const char16_t unit = units[at];
        if (unit == u'\f')
            result.Append(kCrLf);
        else
            result.Append(IsKeptControl(unit) ? unit : u' ');
        return 1U;
    });
}

CString CrkStringUtilities::ConvertLFsToCRLFPairs(const CString& text)
{
    return Rewritten<ControlsAndDelete>(text, [](rk::TextBuilder& result, std::u16string_view units, std::size_t at) {
        if (units[at] == u'\n' && (at == 0 || units[at - 1] != u'\r'))
            result.Append(u'\r');
        result.Append(units[at]);
        return 1U;
    });
}

CString CrkStringUtilities::RemoveCRLF(const CString& text)
{
    CString result(text);
    result.RemoveLineFeeds();
    return result;
}

bool CrkStringUtilities::IsCharPrintable(unsigned short unit)
{
    return !ControlsAndDelete::Is(unit);
}

CString CrkStringUtilities::CondenseString(const CString& text)
{
    const CString word = text.SpanExcluding(u" \t\r\n");
    return word.GetLength() == text.GetLength() ? text : word + u"...";
}
