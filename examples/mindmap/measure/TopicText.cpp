#include "mindmap/measure/TopicText.h"

#include "mindmap/measure/Dates.h"
#include "mindmap/measure/Style.h"
#include "mindmap/read/Link.h"

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

    TopicText Compose() {
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
    void BeginLine(TextRole role) {
        if (role != TextRole::Title && m_block.runs.size() == m_titleRunCount)
            m_block.height += kDetailGap;
    }

    enum class Sign { None, Icon };

    void AddRun(const CString& text, TextRole role, Direction direction, Font font, int start, Sign sign) {
        const int width = TextWidth(text, font);
        m_block.width = std::max(m_block.width, start + width);
        m_block.runs.push_back(
            {text, role, direction, start, m_block.height + Ascent(font), width, sign == Sign::Icon});
    }

    void AddLines(const CString& text, TextRole role, Font font, int maximumLineCount) {
        WrappedText wrapped = Wrap(text, font, m_style.maximumTextWidth, maximumLineCount);
        m_block.isShortened = m_block.isShortened || wrapped.isShortened;
        const Direction direction = DirectionOf(text);
        for (const CString& line : wrapped.lines) {
            BeginLine(role);
            AddRun(line, role, direction, font, 0, Sign::None);
            m_block.height += LineHeight(font);
        }
    }

    /// A detail with its sign.
    void AddFact(const CString& text, TextRole role) {
        const WrappedText wrapped = Wrap(DrawableText(text), kDetailFont, FactWidth(), kFactLineCount);
        m_block.isShortened = m_block.isShortened || wrapped.isShortened;
        Sign sign = role == TextRole::More ? Sign::None : Sign::Icon;
        for (const CString& line : wrapped.lines) {
            BeginLine(role);
            AddRun(line, role, DirectionOf(line), kDetailFont, kIconSpace, sign);
            m_block.height += LineHeight(kDetailFont);
            sign = Sign::None;
        }
    }

    static CString OnOneLine(const CString& text) {
        CString line = DrawableText(text);
        line.Replace(u"\n", u" ");
        return line;
    }

    [[nodiscard]] int FactWidth() const { return m_style.maximumTextWidth - kIconSpace; }

    /// Dates, weeks and amount stand on one line where there is room for them.
    void AddFacts() {
        CString date = OnOneLine(ShownDate(m_topic.date));
        CString weeks = ShownWeeks(m_topic.date);
        if (!weeks.IsEmpty() && TextWidth(date + kWeekSign + weeks, kDetailFont) <= FactWidth())
            date += kWeekSign + std::exchange(weeks, CString());
        const CString amount = OnOneLine(ShownAmount(m_topic, m_sum));
        const int amountStart = kIconSpace + TextWidth(date, kDetailFont) + kFactGap + kIconSpace;
        if (date.IsEmpty() || amount.IsEmpty() || !weeks.IsEmpty() ||
            amountStart + TextWidth(amount, kDetailFont) > m_style.maximumTextWidth) {
            AddFact(date, TextRole::Date);
            AddFact(weeks, TextRole::More);
            AddFact(amount, TextRole::Amount);
            return;
        }
        BeginLine(TextRole::Date);
        AddRun(date, TextRole::Date, DirectionOf(date), kDetailFont, kIconSpace, Sign::Icon);
        AddRun(amount, TextRole::Amount, DirectionOf(amount), kDetailFont, amountStart, Sign::Icon);
        m_block.height += LineHeight(kDetailFont);
    }

    /// Moves every line to the middle; runs on one baseline are one line.
    void Centre() {
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

TopicText ComposeText(const Topic& topic, const BranchSum& sum) { return Composer(topic, sum).Compose(); }

}  // namespace mindmap
