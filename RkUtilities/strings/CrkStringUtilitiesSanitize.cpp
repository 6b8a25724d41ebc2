#include "RkUtilities/strings/CrkStringUtilities.h"

#include "RkUtilities/foundation/detail/TextBuilder.h"
#include "RkUtilities/foundation/detail/TextSearch.h"

namespace {

constexpr char16_t kDelete = 0x7F;
constexpr char16_t kCancel = 0x18;
constexpr std::u16string_view kFourSpaces = u"    ";
constexpr std::u16string_view kCrLf = u"\r\n";

/// The units that each member looks at: controls and DEL, without some of them or with further units.
constexpr rk::UnitRange kControls[] = {{0, 0x1F}, {kDelete, kDelete}};
constexpr rk::UnitRange kControlsButBreaksAndTabs[] = {{0, 8}, {0xB, 0xC}, {0xE, 0x1F}, {kDelete, kDelete}};
constexpr rk::UnitRange kControlsAndLess[] = {{0, 0x1F}, {u'<', u'<'}, {kDelete, kDelete}};
constexpr rk::UnitRange kNoTopicText[] = {{0, 0x1F}, {kDelete, kDelete}, {0xD800, 0xDFFF}, {0xFFFE, 0xFFFF}};

/// The text with what `append` writes in the place of each unit in the ranges; `append` gets the builder, the text and
/// the unit's index, and returns how many units it took. There is room at once for a text that grows by `growth` units.
template <const auto& kRanges, class Append>
CString Rewritten(const CString& source, const Append& append, std::size_t growth = 0) {
    const std::u16string_view text = source.View();
    std::size_t at = rk::FirstInRanges<kRanges>(text, 0);
    if (at == text.size())
        return source;
    rk::TextBuilder result(text.size() + growth);
    std::size_t done = 0;
    while (at < text.size()) {
        result.Append(text.substr(done, at - done));
        done = at + append(result, text, at);
        at = rk::FirstInRanges<kRanges>(text, done);
    }
    result.Append(text.substr(done));
    return result.Take();
}

}  // namespace

void CrkStringUtilities::RemoveInvalidNotesCharacters(CString& text) {
    text = Rewritten<kControlsButBreaksAndTabs>(text,
                                                [](rk::TextBuilder&, std::u16string_view, std::size_t) { return 1U; });
}

void CrkStringUtilities::RemoveInvalidTooltipCharacters(CString& text) {
    constexpr std::u16string_view kBreak = u"<br>";
    text = Rewritten<kControlsAndLess>(
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

void CrkStringUtilities::FixInvalidUnformattedTooltipCharacters(CString& text) {
    const auto less = static_cast<std::size_t>(CountOccurrences(text, u'<'));
    const auto tabs = static_cast<std::size_t>(CountOccurrences(text, u'\t'));
    text = Rewritten<kControlsAndLess>(
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

CString CrkStringUtilities::ReplaceInvalidTopicTextCharacters(const CString& text) {
    return Rewritten<kNoTopicText>(text, [](rk::TextBuilder& result, std::u16string_view units, std::size_t at) {
        const char16_t unit = units[at];
        if (unit == u'\f')
            result.Append(kCrLf);
        else
            result.Append(unit == u'\t' || unit == u'\n' || unit == u'\r' ? unit : u' ');
        return 1U;
    });
}

CString CrkStringUtilities::ConvertLFsToCRLFPairs(const CString& text) {
    return Rewritten<kControls>(text, [](rk::TextBuilder& result, std::u16string_view units, std::size_t at) {
        if (units[at] == u'\n' && (at == 0 || units[at - 1] != u'\r'))
            result.Append(u'\r');
        result.Append(units[at]);
        return 1U;
    });
}

CString CrkStringUtilities::RemoveCRLF(const CString& text) {
    CString result(text);
    result.RemoveLineFeeds();
    return result;
}

bool CrkStringUtilities::IsCharPrintable(unsigned short unit) { return unit >= 0x20 && unit != kDelete; }

CString CrkStringUtilities::CondenseString(const CString& text) {
    const CString word = text.SpanExcluding(u" \t\r\n");
    return word.GetLength() == text.GetLength() ? text : word + u"...";
}
