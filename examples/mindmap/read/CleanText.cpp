#include "mindmap/read/CleanText.h"

#include "mindmap/read/CodePoints.h"

#include <RkUtilities/strings/CrkStringUtilities.h>

#include <climits>
#include <string>
#include <string_view>

namespace mindmap {

namespace {

constexpr int kTooltipColumns = 64;
constexpr int kMaximumTooltipUnits = 2000;
constexpr char16_t kLineFeed[] = u"\n";

bool IsHighSurrogate(char16_t unit) { return unit >= 0xD800 && unit <= 0xDBFF; }

bool IsLowSurrogate(char16_t unit) { return unit >= 0xDC00 && unit <= 0xDFFF; }

/// Lines are cut between code units; this moves a cut out of a character.
void MoveBreaksBehindPairs(CString& text) {
    for (int i = text.Find(kLineFeed, 1); i > 0; i = text.Find(kLineFeed, i + 1)) {
        const unsigned short low = text.GetAt(i + 1);
        if (!IsHighSurrogate(text.GetAt(i - 1)) || !IsLowSurrogate(low))
            continue;
        text.SetAt(i, low);
        text.SetAt(i + 1, u'\n');
    }
}

}  // namespace

CString CleanTopicText(const CString& text) {
    const std::u16string_view units = text.View();
    std::u16string clean;
    std::size_t begin = 0;
    const auto cleanUpTo = [&](std::size_t end) {
        if (begin < end)
            clean += CrkStringUtilities::ReplaceInvalidTopicTextCharacters(units.substr(begin, end - begin)).View();
    };
    for (std::size_t next = 0; next < units.size();) {
        const std::size_t index = next;
        if (NextCodePoint(units, next) <= 0xFFFF)
            continue;
        cleanUpTo(index);
        clean += units.substr(index, next - index);
        begin = next;
    }
    cleanUpTo(units.size());
    return clean;
}

CString CleanNote(CString note) {
    CrkStringUtilities::RemoveInvalidNotesCharacters(note);
    return note;
}

CString ShortenForTooltip(const CString& text) {
    constexpr int kLastKept = kMaximumTooltipUnits - 4;  // before the "..."
    CString shown = CrkStringUtilities::ShortenString(text, kMaximumTooltipUnits);
    if (shown.GetLength() < text.GetLength() && IsHighSurrogate(shown.GetAt(kLastKept)))
        shown.SetAt(kLastKept, u'.');  // rather than half a character
    return shown;
}

CString WrapTooltip(CString text) {
    CrkStringUtilities::RemoveInvalidTooltipCharacters(text);
    CString wrapped;
    for (std::u16string_view rest = text.View();;) {
        const std::size_t end = rest.find(u'\n');
        CString line = rest.substr(0, end);
        CrkStringUtilities::InsertLineSeparators(&line, kLineFeed, kTooltipColumns, INT_MAX);
        wrapped += line;
        if (end == std::u16string_view::npos)
            break;
        wrapped += kLineFeed;
        rest.remove_prefix(end + 1);
    }
    MoveBreaksBehindPairs(wrapped);
    return wrapped;
}

}  // namespace mindmap
