#include "mindmap/measure/TextMeasure.h"

#include "mindmap/read/CodePoints.h"

#include <RkUtilities/foundation/CharacterTypes.h>

#include <algorithm>

namespace mindmap {

namespace {

constexpr int kHundredthsPerEm = 100;
constexpr char16_t kEllipsis[] = u"…";
constexpr char32_t kEmojiSelector = 0xFE0F;
constexpr int kEmojiWidth = 125;
/// The placeholder under a mark that has no character to stand on.
constexpr int kDottedCircleWidth = 95;
/// Longer texts are cut before they are measured, so that a huge text costs no more than a long text.
constexpr std::size_t kMaximumMeasuredUnits = 4000;
constexpr int kMaximumMarks = 4;
constexpr int kMaximumClusterCodePoints = 24;  // more than any picture is joined of

/// Characters that no line ends with or begins with, after JIS X 4051 and the quotation marks of European texts.
constexpr std::u16string_view kNoBreakAfter = u"([{‘“‚„«‹（［｛「『【〈《〔〖";
constexpr std::u16string_view kNoBreakBefore =
    u")]}’”»›!,.:;?%/…、。，．：；？！）］｝」』】〉》〕〗・ーゝゞ々〻ぁぃぅぇぉっゃゅょゎァィゥェォッャュョヮヵヶ％";

bool IsOneOf(std::u16string_view set, char32_t codePoint) {
    return codePoint <= 0xFFFF && set.find(static_cast<char16_t>(codePoint)) != std::u16string_view::npos;
}

bool IsSpace(char32_t c) { return c == u' ' || (c >= 0x2000 && c <= 0x200B && c != 0x2007) || c == 0x3000; }

bool IsIdeograph(char32_t c) {
    return (c >= 0x2E80 && c <= 0xA4CF) || (c >= 0xAC00 && c <= 0xD7A3) || (c >= 0xF900 && c <= 0xFAFF) ||
           (c >= 0xFE30 && c <= 0xFE4F) || (c >= 0xFF00 && c <= 0xFFEF) || (c >= 0x1F300 && c <= 0x1FAFF) ||
           (c >= 0x20000 && c <= 0x3FFFF);
}

bool IsDash(char32_t c) { return c == u'-' || c == u'/' || c == 0x2010 || (c >= 0x2012 && c <= 0x2014); }

bool IsRegionalIndicator(char32_t c) { return c >= 0x1F1E6 && c <= 0x1F1FF; }

/// A character with its marks: what stays together on a line.
struct Cluster {
    std::size_t begin;
    std::size_t end;
    int width;  // hundredths of the font size
    char32_t first;
    bool isSpace;
    bool isPicture;  // drawn in color: emoji, flags and what the selector makes a picture
    bool mayBreakAfter;
};

/// Indic and other scripts that show a mark on a character of another script as if it stood alone.
bool NeedsDottedCircle(char32_t first, char32_t mark) {
    constexpr char32_t kFirst = 0x0900;
    constexpr char32_t kLast = 0x1CCF;
    constexpr char32_t kBlock = 0x80;
    return mark >= kFirst && mark <= kLast && first / kBlock != mark / kBlock;
}

/// The cluster that begins at `index`.
Cluster ClusterAt(std::u16string_view text, std::size_t index, Weight weight) {
    Cluster cluster{index, index, 0, 0, false, false, false};
    cluster.first = NextCodePoint(text, cluster.end);
    const std::size_t afterFirst = cluster.end;
    cluster.width = CharacterWidth(cluster.first, weight) + (IsMark(cluster.first) ? kDottedCircleWidth : 0);
    cluster.isPicture = cluster.first >= 0x1F000 && cluster.first <= 0x1FAFF;
    if (cluster.first == u'\n')
        return cluster;
    bool isPairOpen = IsRegionalIndicator(cluster.first);
    bool isJoined = false;
    for (int count = 1; cluster.end < text.size() && count < kMaximumClusterCodePoints; ++count) {
        std::size_t next = cluster.end;
        const char32_t codePoint = NextCodePoint(text, next);
        const bool completesPair = isPairOpen && IsRegionalIndicator(codePoint);
        if (codePoint == u'\n' || !(IsMark(codePoint) || completesPair || isJoined))
            break;
        isPairOpen = false;
        isJoined = codePoint == 0x200D && IsIdeograph(cluster.first);
        cluster.width += CharacterWidth(codePoint, weight);
        if (NeedsDottedCircle(cluster.first, codePoint))
            cluster.width += kDottedCircleWidth;
        cluster.isPicture = cluster.isPicture || codePoint == kEmojiSelector;
        cluster.end = next;
    }
    cluster.isSpace = IsSpace(cluster.first) && cluster.end == afterFirst;
    if (cluster.isPicture)
        cluster.width = std::max(cluster.width, kEmojiWidth);
    return cluster;
}

bool MayBreakBetween(const Cluster& before, const Cluster& after) {
    if (after.isSpace || after.first == u'\n')
        return false;  // spaces stay with the line they end
    if (before.isSpace)
        return true;
    if (IsOneOf(kNoBreakBefore, after.first) || IsOneOf(kNoBreakAfter, before.first))
        return false;
    if (IsIdeograph(before.first) || IsIdeograph(after.first))
        return true;
    // A hyphen before a digit may be a minus or part of a date.
    return IsDash(before.first) && !(after.first >= u'0' && after.first <= u'9');
}

/// Behind these, names and links break where they are too wide for a line.
constexpr std::u16string_view kNameBreaks = u"/.-_?&=";

/// Lets what is wider than a line break inside, behind signs that join the parts of names.
void AllowBreaksInNames(std::vector<Cluster>& clusters, int maximumWidth) {
    std::size_t first = 0;
    int width = 0;
    for (std::size_t i = 0; i < clusters.size(); ++i) {
        width += clusters[i].isSpace ? 0 : clusters[i].width;
        if (!clusters[i].mayBreakAfter && clusters[i].first != u'\n' && i + 1 < clusters.size())
            continue;
        for (std::size_t part = first; width > maximumWidth && part < i; ++part)
            clusters[part].mayBreakAfter =
                clusters[part].mayBreakAfter ||
                (IsOneOf(kNameBreaks, clusters[part].first) && !IsOneOf(kNameBreaks, clusters[part + 1].first));
        first = i + 1;
        width = 0;
    }
}

std::vector<Cluster> ClustersOf(std::u16string_view text, Weight weight, int maximumWidth) {
    std::vector<Cluster> clusters;
    clusters.reserve(text.size());
    for (std::size_t index = 0; index < text.size(); index = clusters.back().end)
        clusters.push_back(ClusterAt(text, index, weight));
    for (std::size_t i = 0; i + 1 < clusters.size(); ++i)
        clusters[i].mayBreakAfter = MayBreakBetween(clusters[i], clusters[i + 1]);
    AllowBreaksInNames(clusters, maximumWidth);
    return clusters;
}

/// A line as a range of clusters, spaces at its end left out.
struct Line {
    std::size_t first;
    std::size_t last;
    int width;
};

Line MakeLine(const std::vector<Cluster>& clusters, std::size_t first, std::size_t last) {
    while (last > first && (clusters[last - 1].isSpace || clusters[last - 1].first == u'\n'))
        --last;
    int width = 0;
    for (std::size_t i = first; i < last; ++i)
        width += clusters[i].width;
    return {first, last, width};
}

/// The lines of the text, at most `maximumLineCount` + 1 lines: the last of these tells that the text is longer.
std::vector<Line> Break(const std::vector<Cluster>& clusters, int maximumWidth, int maximumLineCount) {
    std::vector<Line> lines;
    std::size_t first = 0;
    std::size_t opportunity = 0;
    int width = 0;
    const auto endLine = [&](std::size_t last) {
        lines.push_back(MakeLine(clusters, first, last));
        first = opportunity = last;
        width = 0;
    };
    for (std::size_t i = 0; i < clusters.size() && static_cast<int>(lines.size()) <= maximumLineCount; ++i) {
        const Cluster& cluster = clusters[i];
        if (!cluster.isSpace && width + cluster.width > maximumWidth && i > first) {
            endLine(opportunity > first ? opportunity : i);
            i = first;
            width = 0;
            if (i == clusters.size())
                break;
        }
        width += clusters[i].width;
        if (clusters[i].mayBreakAfter)
            opportunity = i + 1;
        if (clusters[i].first == u'\n')
            endLine(i + 1);
    }
    if (first < clusters.size() && static_cast<int>(lines.size()) <= maximumLineCount)
        endLine(clusters.size());
    return lines;
}

/// The width of the widest part that has no place to break in it.
int WidestPart(const std::vector<Cluster>& clusters) {
    int widest = 0;
    int width = 0;
    for (const Cluster& cluster : clusters) {
        width += cluster.isSpace ? 0 : cluster.width;
        widest = std::max(widest, width);
        if (cluster.mayBreakAfter || cluster.first == u'\n')
            width = 0;
    }
    return widest;
}

/// The narrowest lines of which there are no more than at `maximumWidth`, and that break no more words.
std::vector<Line> BreakEvenly(const std::vector<Cluster>& clusters, int maximumWidth, int maximumLineCount) {
    std::vector<Line> best = Break(clusters, maximumWidth, maximumLineCount);
    if (static_cast<int>(best.size()) > maximumLineCount)
        return best;  // full lines show more of a text that is cut off
    int tooNarrow = std::max(maximumWidth / 3, WidestPart(clusters) - 1);
    int wideEnough = maximumWidth;
    while (best.size() > 1 && wideEnough - tooNarrow > kHundredthsPerEm / 4) {
        const int middle = (tooNarrow + wideEnough) / 2;
        std::vector<Line> lines = Break(clusters, middle, maximumLineCount);
        if (lines.size() <= best.size()) {
            best = std::move(lines);
            wideEnough = middle;
        } else {
            tooNarrow = middle;
        }
    }
    return best;
}

constexpr int Scaled(int hundredths, Font font) {
    return (hundredths * font.size + kHundredthsPerEm - 1) / kHundredthsPerEm;
}

std::u16string_view TextOf(const Line& line, const std::vector<Cluster>& clusters, std::u16string_view text) {
    if (line.first == line.last)
        return {};
    const std::size_t begin = clusters[line.first].begin;
    return text.substr(begin, clusters[line.last - 1].end - begin);
}

/// Makes room for the ellipsis at the end of the last line that is shown.
void MakeRoom(Line& line, const std::vector<Cluster>& clusters, int maximumWidth) {
    while (line.first < line.last && line.width > maximumWidth)
        line.width -= clusters[--line.last].width;
}

bool IsRightToLeftBlock(char32_t c) {
    return (c >= 0x0590 && c <= 0x08FF) || (c >= 0xFB1D && c <= 0xFDFF) || (c >= 0xFE70 && c <= 0xFEFF) ||
           (c >= 0x10800 && c <= 0x10FFF) || (c >= 0x1E800 && c <= 0x1EFFF);
}

bool IsDigitOfArabic(char32_t c) { return (c >= 0x0660 && c <= 0x0669) || (c >= 0x06F0 && c <= 0x06F9); }

}  // namespace

int TextWidth(std::u16string_view line, Font font) {
    int hundredths = 0;
    for (std::size_t index = 0; index < line.size();) {
        const Cluster cluster = ClusterAt(line, index, font.weight);
        hundredths += cluster.width;
        index = cluster.end;
    }
    return Scaled(hundredths, font);
}

FontPart FirstFontPart(std::u16string_view text) {
    const bool isPicture = !text.empty() && ClusterAt(text, 0, Weight::Regular).isPicture;
    std::size_t end = 0;
    while (end < text.size()) {
        const Cluster cluster = ClusterAt(text, end, Weight::Regular);
        if (cluster.isPicture != isPicture)
            break;
        end = cluster.end;
    }
    return {text.substr(0, end), isPicture};
}

Direction DirectionOf(std::u16string_view text) {
    constexpr char32_t kLeftToRightMark = 0x200E;
    constexpr char32_t kRightToLeftMark = 0x200F;
    for (std::size_t index = 0; index < text.size();) {
        const char32_t c = NextCodePoint(text, index);
        if (c == kRightToLeftMark)
            return Direction::RightToLeft;
        if (c == kLeftToRightMark)
            return Direction::LeftToRight;
        const bool isLetter = c > 0xFFFF
                                  ? c < 0x1F000 || c > 0x1FAFF
                                  : IsCharAlphaNumeric(static_cast<unsigned short>(c)) && !(c >= u'0' && c <= u'9');
        if (isLetter && !IsMark(c) && !IsDigitOfArabic(c))
            return IsRightToLeftBlock(c) ? Direction::RightToLeft : Direction::LeftToRight;
    }
    return Direction::LeftToRight;
}

CString DrawableText(std::u16string_view text) {
    std::u16string drawable;
    int markCount = 0;
    for (std::size_t index = 0; index < text.size() && drawable.size() <= kMaximumMeasuredUnits;) {
        const std::size_t begin = index;
        const char32_t c = NextCodePoint(text, index);
        markCount = IsMark(c) ? markCount + 1 : 0;
        if (c == u'\r' && index < text.size() && text[index] == u'\n')
            continue;
        if (c == u'\r' || c == u'\n' || c == 0x85 || c == 0x2028 || c == 0x2029)
            drawable += u'\n';
        else if (c == u'\t')
            drawable += u' ';
        else if (c < 0x20 || (c >= 0x7F && c < 0xA0) || (c & 0xFFFE) == 0xFFFE || c == kReplacementCharacter)
            drawable += static_cast<char16_t>(kReplacementCharacter);
        else if (markCount <= kMaximumMarks)
            drawable += text.substr(begin, index - begin);
    }
    CString result(drawable);
    return result.Trim();
}

WrappedText Wrap(std::u16string_view text, Font font, int maximumWidth, int maximumLineCount) {
    const int available = maximumWidth * kHundredthsPerEm / font.size;
    const std::vector<Cluster> clusters = ClustersOf(text.substr(0, kMaximumMeasuredUnits), font.weight, available);
    std::vector<Line> lines = BreakEvenly(clusters, available, maximumLineCount);

    WrappedText wrapped;
    wrapped.isShortened = static_cast<int>(lines.size()) > maximumLineCount || text.size() > kMaximumMeasuredUnits;
    if (static_cast<int>(lines.size()) > maximumLineCount)
        lines.pop_back();
    for (std::size_t i = 0; i < lines.size(); ++i) {
        Line line = lines[i];
        const bool endsWithEllipsis = wrapped.isShortened && i + 1 == lines.size();
        if (endsWithEllipsis) {
            MakeRoom(line, clusters, available - CharacterWidth(kEllipsis[0], font.weight));
            line.width += CharacterWidth(kEllipsis[0], font.weight);
        }
        wrapped.lines.push_back(CString(TextOf(line, clusters, text)) + (endsWithEllipsis ? kEllipsis : u""));
        wrapped.width = std::max(wrapped.width, Scaled(line.width, font));
    }
    return wrapped;
}

}  // namespace mindmap
