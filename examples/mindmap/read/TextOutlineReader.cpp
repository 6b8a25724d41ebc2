#include "mindmap/read/TextOutlineReader.h"

#include <algorithm>
#include <cstdint>
#include <utility>

namespace mindmap {

namespace {

constexpr std::int64_t kTabColumns = 4;
/// Depths of list items and indented lines begin behind those of headings.
constexpr std::int64_t kFirstItemDepth = 10;
constexpr std::string_view kBlanks = " \t\r";

std::string_view WithoutBlanks(std::string_view text) {
    const std::size_t first = text.find_first_not_of(kBlanks);
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

/// The first line; `rest` becomes what follows its end, which is CR LF, LF or CR.
std::string_view TakeLine(std::string_view& rest) {
    const std::size_t end = rest.find_first_of("\r\n");
    const std::string_view line = rest.substr(0, end);
    if (end == std::string_view::npos)
        rest = {};
    else
        rest.remove_prefix(end + (rest.substr(end, 2) == "\r\n" ? 2 : 1));
    return line;
}

std::int64_t ColumnsOfIndent(std::string_view line) {
    std::int64_t columns = 0;
    for (const char c : line) {
        if (c == '\t')
            columns = (columns / kTabColumns + 1) * kTabColumns;
        else if (c == ' ')
            ++columns;
        else
            break;
    }
    return columns;
}

/// "## Text": how many signs; 0 for no heading.
int HeadingLevel(std::string_view text) {
    const std::size_t count = std::min(text.find_first_not_of('#'), text.size());
    const bool isHeading =
        count >= 1 && count <= 6 && count < text.size() && (text[count] == ' ' || text[count] == '\t');
    return isHeading ? static_cast<int>(count) : 0;
}

/// "Text ##" without the signs at its end; "C#" keeps its own.
std::string_view WithoutClosingSigns(std::string_view heading) {
    const std::string_view bare = heading.substr(0, heading.find_last_not_of('#') + 1);
    return bare.size() < heading.size() && bare.ends_with(' ') ? WithoutBlanks(bare) : heading;
}

/// "- Text", "2. Text", "[x] Text" after one of these: how many bytes go before the text; 0 for no list item.
std::size_t BulletLength(std::string_view text) {
    std::size_t length = 0;
    if (!text.empty() && (text[0] == '-' || text[0] == '*' || text[0] == '+'))
        length = 1;
    else if (const std::size_t digits = std::min(text.find_first_not_of("0123456789"), text.size());
             digits >= 1 && digits <= 3 && digits < text.size() && (text[digits] == '.' || text[digits] == ')'))
        length = digits + 1;
    if (length == 0 || length == text.size() || (text[length] != ' ' && text[length] != '\t'))
        return 0;
    return std::min(text.find_first_not_of(" \t", length), text.size());
}

bool IsRule(std::string_view text) {
    if (text.size() < 3 || (text[0] != '-' && text[0] != '*' && text[0] != '_' && text[0] != '='))
        return false;
    return text.find_first_not_of(text[0]) == std::string_view::npos;
}

bool IsFence(std::string_view text) { return text.starts_with("```") || text.starts_with("~~~"); }

/// Takes links and emphasis out of a topic's text; the first link's target becomes the topic's.
void TakeInlineMarkup(Topic& topic) {
    CString text;
    std::u16string_view rest = topic.text.View();
    while (!rest.empty()) {
        const std::size_t open = rest.find(u'[');
        const std::size_t middle = open == std::u16string_view::npos ? open : rest.find(u"](", open);
        const std::size_t close = middle == std::u16string_view::npos ? middle : rest.find(u')', middle);
        if (close == std::u16string_view::npos)
            break;
        text += rest.substr(0, open);
        text += rest.substr(open + 1, middle - open - 1);
        if (topic.link.IsEmpty())
            topic.link = rest.substr(middle + 2, close - middle - 2);
        rest.remove_prefix(close + 1);
    }
    text += rest;
    text.Replace(u"**", u"");
    text.Replace(u"`", u"");
    topic.text = text;
}

class OutlineLineReader {
public:
    explicit OutlineLineReader(TextSyntax syntax) : m_syntax(syntax) {}

    Outline Read(std::string_view document, const CString& title) {
        if (document.starts_with("\xEF\xBB\xBF"))
            document.remove_prefix(3);
        while (!document.empty()) {
            ++m_line;
            TakeIn(TakeLine(document));
        }
        return m_builder.Finish(title);
    }

private:
    void TakeIn(std::string_view line) {
        const std::string_view text = WithoutBlanks(line);
        if (m_syntax == TextSyntax::Indented) {
            if (!text.empty())
                AddTopic(kFirstItemDepth + ColumnsOfIndent(line), text.substr(BulletLength(text)));
            return;
        }
        if (IsFence(text)) {
            m_isInFence = !m_isInFence;
        } else if (m_isInFence) {
            AddToNote(line);
        } else if (IsRule(text)) {
            return;
        } else if (const int level = HeadingLevel(text); level > 0) {
            AddTopic(level, WithoutClosingSigns(WithoutBlanks(text.substr(static_cast<std::size_t>(level)))));
        } else if (const std::size_t bullet = BulletLength(text); bullet > 0) {
            AddItem(line, text.substr(bullet));
        } else {
            AddToNote(text);
        }
    }

    void AddItem(std::string_view line, std::string_view text) {
        for (std::string_view box : {"[ ] ", "[x] ", "[X] "})
            if (text.starts_with(box))
                text = WithoutBlanks(text.substr(box.size()));
        AddTopic(kFirstItemDepth + ColumnsOfIndent(line), text);
    }

    void AddTopic(std::int64_t depth, std::string_view text) {
        while (!m_open.empty() && m_open.back().depth >= depth)
            m_open.pop_back();
        Topic topic;
        topic.line = m_line;
        topic.text = Decoded(text);
        if (m_syntax == TextSyntax::Markdown)
            TakeInlineMarkup(topic);
        m_open.push_back({depth, m_builder.Add(m_open.empty() ? 0 : m_open.back().topic, std::move(topic))});
        m_isNoteOpen = false;
    }

    /// A paragraph's lines are one line of the note; an empty line ends it. Text before the first topic is a topic
    /// itself.
    void AddToNote(std::string_view text) {
        if (text.empty()) {
            m_isNoteOpen = false;
        } else if (m_open.empty()) {
            AddTopic(kFirstItemDepth, text);
        } else {
            CString& note = m_builder.At(m_open.back().topic).note;
            if (!note.IsEmpty())
                note += m_isNoteOpen && !m_isInFence ? u" " : u"\n";
            note += Decoded(text);
            m_isNoteOpen = true;
        }
    }

    [[nodiscard]] CString Decoded(std::string_view text) const {
        CString decoded(text);
        if (text.find('\0') != std::string_view::npos || decoded.ToUtf8() != text)
            throw OutlineError{m_line, u"is no text in UTF-8"};
        return decoded;
    }

    struct OpenTopic {
        std::int64_t depth;
        int topic;
    };

    TextSyntax m_syntax;
    OutlineBuilder m_builder;
    std::vector<OpenTopic> m_open;  // from the top down to the last topic
    int m_line = 0;
    bool m_isInFence = false;
    bool m_isNoteOpen = false;  // the next line goes on with the paragraph
};

}  // namespace

TextSyntax GuessTextSyntax(std::string_view document) {
    while (!document.empty()) {
        const std::string_view text = WithoutBlanks(TakeLine(document));
        if (!text.empty())
            return HeadingLevel(text) > 0 || BulletLength(text) > 0 ? TextSyntax::Markdown : TextSyntax::Indented;
    }
    return TextSyntax::Indented;
}

Outline ReadTextOutline(std::string_view document, TextSyntax syntax, const CString& title) {
    return OutlineLineReader(syntax).Read(document, title);
}

}  // namespace mindmap
