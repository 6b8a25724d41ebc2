#include "RkUtilities/strings/CrkStringUtilities.h"

#include "RkUtilities/foundation/detail/TextBuilder.h"
#include "RkUtilities/foundation/detail/UnitBlock.h"

#include <algorithm>
#include <string>

namespace {

constexpr int kMostLinesWithoutText = 1000;

bool IsBlankView(std::u16string_view text) {
    return std::all_of(text.begin(), text.end(), [](char16_t unit) { return unit <= 0x20; });
}

std::u16string_view WithoutLeadingBlankLines(std::u16string_view text) {
    const auto isBlank = [](char16_t unit) { return unit <= 0x20; };
    const auto firstText = std::find_if_not(text.begin(), text.end(), isBlank);
    const std::size_t feed = text.substr(0, static_cast<std::size_t>(firstText - text.begin())).rfind(u'\n');
    return feed == std::u16string_view::npos ? text : text.substr(feed + 1);
}

/// A text on its way into lines. The rest begins with the separators that earlier breaks have left over.
class LineWrap {
public:
    LineWrap(std::u16string_view text, std::u16string_view separator, int width, int maximumLines)
        : m_rest(text), m_separator(separator), m_width(static_cast<std::size_t>(std::max(width, 0))),
          m_maximumLines(maximumLines), m_result(text.size()) {}

    CString Wrapped() {
        int withoutText = 0;
        for (int line = 0; line < m_maximumLines && Left() > 0 && withoutText < kMostLinesWithoutText; ++line) {
            const std::size_t before = m_rest.size();
            PlaceLine(line == m_maximumLines - 1);
            withoutText = m_rest.size() == before ? withoutText + 1 : 0;
        }
        CString wrapped = m_result.Take().TrimRight();
        return CrkStringUtilities::IsBlank(wrapped) ? CString() : wrapped;
    }

private:
    [[nodiscard]] std::size_t Left() const { return m_leftOver.size() + m_rest.size(); }
    [[nodiscard]] char16_t At(std::size_t index) const {
        return index < m_leftOver.size() ? m_leftOver[index] : m_rest[index - m_leftOver.size()];
    }

    /// The index of the first LF behind the first unit, or where the line is seen to be too long or to be the last.
    [[nodiscard]] std::size_t LineEnd() const {
        const std::size_t enough = CanBreak() ? std::min(Left(), m_width + 1) : Left();
        const std::u16string_view leftOver = std::u16string_view(m_leftOver).substr(0, enough);
        const std::size_t end = std::min(leftOver.find(u'\n', 1), leftOver.size());
        if (end < leftOver.size() || leftOver.size() == enough)
            return end;
        const std::u16string_view rest = m_rest.substr(0, enough - leftOver.size());
        return leftOver.size() + std::min(rest.find(u'\n', leftOver.empty() ? 1 : 0), rest.size());
    }
    [[nodiscard]] bool CanBreak() const { return m_width > m_separator.size(); }

    /// Where a line that is too long breaks.
    [[nodiscard]] std::size_t BreakIndex() const {
        for (std::size_t index = m_width; index > 1; --index) {
            if (At(index - 1) == u' ')
                return index;
        }
        return m_width;
    }

    void PlaceLine(bool isLast) {
        const std::size_t end = LineEnd();
        if (CanBreak() && end > m_width) {
            PlaceBrokenLine(BreakIndex(), isLast);
            return;
        }
        Place(end);
        if (isLast && !(IsBlankView(m_leftOver) && IsBlankView(m_rest)))
            m_result.Append(kEllipsis);
        if (Left() > 0)
            m_result.Append(m_separator);
    }

    void PlaceBrokenLine(std::size_t length, bool isLast) {
        if (isLast) {
            Place(length - 1);
            m_result.Append(kEllipsis);
            Place(1);
            return;  // the separator would stand where the text is cut
        }
        Place(length);
        m_leftOver.insert(0, m_separator);
    }

    /// Moves units to the result.
    void Place(std::size_t count) {
        char16_t* const to = m_result.Extend(count);
        const std::size_t ofLeftOver = std::min(count, m_leftOver.size());
        rk::CopyUnits(m_leftOver.data(), ofLeftOver, to);
        rk::CopyUnits(m_rest.data(), count - ofLeftOver, to + ofLeftOver);
        m_leftOver.erase(0, ofLeftOver);
        m_rest.remove_prefix(count - ofLeftOver);
    }

    static constexpr std::u16string_view kEllipsis = u"...";

    std::u16string m_leftOver;
    std::u16string_view m_rest;
    std::u16string_view m_separator;
    std::size_t m_width;
    int m_maximumLines;
    rk::TextBuilder m_result;
};

}  // namespace

void CrkStringUtilities::InsertLineSeparators(CString* text, const CString& separator, int width, int maximumLines) {
    if (text == nullptr)
        return;
    *text = LineWrap(WithoutLeadingBlankLines(text->View()), separator.View(), width, maximumLines).Wrapped();
}

int CrkStringUtilities::GetLinesCount(const CString& text) {
    int count = 0;
    bool inLine = false;
    for (const char16_t unit : text) {
        const bool ends = unit == u'\r' || unit == u'\n';
        count += static_cast<int>(!ends && !inLine);
        inLine = !ends;
    }
    return count;
}
