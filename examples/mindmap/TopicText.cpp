#include "mindmap/TopicText.h"

#include "mindmap/Dates.h"
#include "mindmap/Link.h"
#include "mindmap/Style.h"

#include <algorithm>
#include <utility>

namespace mindmap {

namespace {

constexpr int kIconSpace = kIconSize + kIconGap;
constexpr char16_t kWeekSign[] = u" · ";

/// Puts lines below each other.
class Composer {
public:
    Composer(const Topic& topic, const BranchSum& sum) : m_topic(topic), m_sum(sum), m_style(StyleOf(topic.level)) {}

    TopicText Compose()
    {
        const CString title = DrawableText(m_topic.text);
        m_block.direction = DirectionOf(title);
        AddLines(title, TextRole::Title, m_style.font, m_style.maximumLineCount);
        m_titleRunCount = m_block.runs.size();
        AddLines(DrawableText(m_topic.note), TextRole::Note, kDetailFont, kNoteLineCount);
        AddFacts();
        const Link link = ReadLink(m_topic.link);
        AddFact(link.address, TextRole::Link);
        AddFact(link.parameters, TextRole::More);
        const bool hasDetails = m_block.runs.size() > m_titleRunCount;
        m_block.isCentred = m_topic.level == 0 || !hasDetails;
        if (m_block.isCentred)
            Centre();
        return std::move(m_block);
    }

private:
    void BeginLine(TextRole role)
    {
        if (role != TextRole::Title && m_block.runs.size() == m_titleRunCount)
            m_block.height += kDetailGap;
    }

    void AddRun(const CString& text, TextRole role, Direction direction, Font font, int start)
    {
        const int width = TextWidth(text, font);
        m_block.width = std::max(m_block.width, start + width);
        m_block.runs.push_back({text, role, direction, start, m_block.height + Ascent(font), width, HasIcon(role)});
    }

    static bool HasIcon(TextRole role)
    {
        return role == TextRole::Date || role == TextRole::Amount || role == TextRole::Link;
    }

    void AddLines(const CString& text, TextRole role, Font font, int maximumLineCount)
    {
        WrappedText wrapped = Wrap(text, font, m_style.maximumTextWidth, maximumLineCount);
        m_block.isShortened = m_block.isShortened || wrapped.isShortened;
        const Direction direction = DirectionOf(text);
        for (const CString& line : wrapped.lines) {
            BeginLine(role);
            AddRun(line, role, direction, font, 0);
            m_block.height += LineHeight(font);
        }
    }

    /// One line of a detail that a long text does not break but shorten.
    CString OneLine(const CString& text, int maximumWidth)
    {
        WrappedText wrapped = Wrap(DrawableText(text), kDetailFont, maximumWidth, 1);
        m_block.isShortened = m_block.isShortened || wrapped.isShortened;
        return wrapped.lines.empty() ? CString() : std::move(wrapped.lines.front());
    }

    void AddFact(const CString& text, TextRole role)
    {
        CString line = OneLine(text, m_style.maximumTextWidth - kIconSpace);
        if (line.IsEmpty())
            return;
        BeginLine(role);
        const Direction direction = DirectionOf(line);
        AddRun(line, role, direction, kDetailFont, kIconSpace);
        m_block.height += LineHeight(kDetailFont);
    }

    /// Dates, weeks and amount stand on one line where there is room for them.
    void AddFacts()
    {
        const int availableWidth = m_style.maximumTextWidth - kIconSpace;
        CString date = ShownDate(m_topic.date);
        CString weeks = ShownWeeks(m_topic.date);
        if (!weeks.IsEmpty() && TextWidth(date + kWeekSign + weeks, kDetailFont) <= availableWidth)
            date += kWeekSign + std::exchange(weeks, CString());
        date = OneLine(date, availableWidth);
        const CString amount = OneLine(ShownAmount(m_topic, m_sum), availableWidth);
        const int amountStart = kIconSpace + TextWidth(date, kDetailFont) + kFactGap + kIconSpace;
        if (date.IsEmpty() || amount.IsEmpty() || !weeks.IsEmpty() ||
            amountStart + TextWidth(amount, kDetailFont) > m_style.maximumTextWidth) {
            AddFact(date, TextRole::Date);
            AddFact(weeks, TextRole::More);
            AddFact(amount, TextRole::Amount);
            return;
        }
        BeginLine(TextRole::Date);
        AddRun(date, TextRole::Date, DirectionOf(date), kDetailFont, kIconSpace);
        AddRun(amount, TextRole::Amount, DirectionOf(amount), kDetailFont, amountStart);
        m_block.height += LineHeight(kDetailFont);
    }

    /// Moves every line to the middle; runs on one baseline are one line.
    void Centre()
    {
        std::vector<TextRun>& runs = m_block.runs;
        for (std::size_t begin = 0, end = 0; begin < runs.size(); begin = end) {
            while (end < runs.size() && runs[end].baseline == runs[begin].baseline)
                ++end;
            const int shift = (m_block.width - (runs[end - 1].start + runs[end - 1].width)) / 2;
            for (std::size_t i = begin; i < end; ++i)
                runs[i].start += shift;
        }
    }

    const Topic& m_topic;
    const BranchSum& m_sum;
    const LevelStyle& m_style;
    TopicText m_block;
    std::size_t m_titleRunCount = 0;
};

}  // namespace

TopicText ComposeText(const Topic& topic, const BranchSum& sum)
{
    return Composer(topic, sum).Compose();
}

}  // namespace mindmap
