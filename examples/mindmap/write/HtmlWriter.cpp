#include "mindmap/write/HtmlWriter.h"

#include "mindmap/measure/Style.h"
#include "mindmap/read/CleanText.h"
#include "mindmap/read/CodePoints.h"
#include "mindmap/write/BranchColors.h"
#include "mindmap/write/RunPlace.h"
#include "mindmap/write/TopicFacts.h"
#include "mindmap/write/TopicIds.h"

#include <array>
#include <span>
#include <string>

namespace mindmap {

namespace {

/// What only a page shows: links in the details, the ring of the chosen topic and of hits.
struct Signals {
    std::uint32_t link;
    std::uint32_t chosen;
    std::uint32_t hit;
};
constexpr std::array<Signals, 2> kSignals = {{{0x1D4ED8, 0x0A84FF, 0xD97706}, {0x8AB4F8, 0x5AA9FF, 0xF59E0B}}};

constexpr int kLookCount = 4;  // levels below the centre that look different

/// A text as a JSON string (RFC 8259) with its quotes, fit to stand in a script element of HTML: "<", ">" and "&" are
/// written as escapes, so that no end of the element and no comment can begin. A lone surrogate becomes U+FFFD.
std::u16string JsonText(std::u16string_view text) {
    std::u16string json = u"\"";
    for (std::size_t index = 0; index < text.size();) {
        const std::size_t begin = index;
        const char32_t c = NextCodePoint(text, index);
        if (c == u'"' || c == u'\\')
            json += {u'\\', static_cast<char16_t>(c)};
        else if (c < 0x20 || c == u'<' || c == u'>' || c == u'&')
            json += {u'\\', u'u', u'0', u'0', u"0123"[c / 16], u"0123456789abcdef"[c % 16]};
        else if (c == kReplacementCharacter)  // may stand for a lone surrogate
            json += static_cast<char16_t>(kReplacementCharacter);
        else
            json += text.substr(begin, index - begin);
    }
    return json + u'"';
}

class HtmlDocument {
public:
    HtmlDocument(const Outline& outline, const MapLayout& map, const Legend& legend, Shapes shapes,
                 const TextSink& sink)
        : m_topics(outline.topics), m_map(map), m_legend(legend), m_shapes(shapes), m_xml(sink) {
        for (const std::string_view piece : std::span(kPagePieces, kPagePieceCount))
            m_page += CString(piece);
    }

    void Begin() {
        WritePageUpTo(u"title");
        m_xml.Text(ShortenForTooltip(m_topics.front().text), Place::Content);
        WritePageUpTo(u"icons");
        m_xml << kIcons;
        WritePageUpTo(u"legend");
        for (std::size_t i = 0; i < m_legend.entries.size(); ++i)
            WriteLegendEntry(m_legend.entries[i], static_cast<int>(i));
        WritePageUpTo(u"data");
        m_xml << u"{\"branchCount\":" << static_cast<int>(kBranchColors.size()) << u",\"levels\":[";
        for (std::size_t level = 0; level < kLevels.size(); ++level)
            WriteLevel(static_cast<int>(level));
        m_xml << u"],\n\"colors\":\"";
        WriteColors(Theme::Light);
        m_xml << u"@media screen and (prefers-color-scheme:dark){";
        WriteColors(Theme::Dark);
        m_xml << u"}\",\n\"topics\":[";
    }

    void WriteTopic(std::size_t index) {
        const Topic& topic = m_topics[index];
        const TopicShape& shape = m_map.shapes[index];
        m_xml << (index == 0 ? u"\n{" : u",\n{");
        m_isFirst = true;
        Write("id", m_ids.Make(topic.text));
        if (index > 0)
            Name("parent") << topic.parent;
        Name("width") << shape.bounds.width;
        Name("height") << shape.bounds.height;
        Name("text") << JsonText(topic.text);
        Write("note", topic.note);
        const TopicFacts facts = FactsOf(topic, m_map.sums[index]);
        Write("dates", facts.dates);
        Write("amount", facts.amount);
        Write("sum", facts.sum);
        Write("address", facts.link.address);
        Write("parameters", facts.link.parameters);
        Write("target", facts.link.target);
        Name("runs") << u"[";
        for (std::size_t i = 0; i < shape.text.runs.size(); ++i) {
            m_xml << (i == 0 ? u"{" : u",{");
            WriteRun(shape.text.runs[i], shape);
        }
        m_xml << u"]}";
        m_xml.HandOnPieces();
    }

    void End() {
        m_xml << u"\n]}";
        m_xml << m_page;
        m_xml.HandOnAll();
    }

private:
    /// Writes the page up to a mark, "{{name}}". Marks before that are replaced by words in the user's language.
    void WritePageUpTo(const CString& name) {
        for (CString mark, word; mark != name;) {
            const int at = m_page.Find(u"{{");
            const int end = m_page.Find(u"}}", at);
            m_xml << m_page.Left(at);
            mark = m_page.Mid(at + 2, end - at - 2);
            m_page = m_page.Mid(end + 2);
            word.LoadString(mark.ToUtf8().c_str());
            m_xml.Text(word, Place::Attribute);
        }
    }

    void WriteLegendEntry(const LegendEntry& entry, int branch) {
        m_xml << u"<div class=\"l1 b" << branch << u"\"><i></i><strong>";
        m_xml.Text(entry.name, Place::Content);
        m_xml << u"</strong> <bdi>";
        m_xml.Text(entry.topics, Place::Content);
        m_xml << u"</bdi></div>";
    }

    /// The name of a member; its value follows.
    XmlStream& Name(std::string_view name) {
        m_xml << (m_isFirst ? u"\"" : u",\"") << CString(name) << u"\":";
        m_isFirst = false;
        return m_xml;
    }
    void Write(std::string_view name, const CString& text) {
        if (!text.IsEmpty())
            Name(name) << JsonText(text);
    }

    void WriteLevel(int level) {
        const LevelStyle& style = StyleOf(level);
        m_xml << (level == 0 ? u"{" : u",{");
        m_isFirst = true;
        Name("fontSize") << style.font.size;
        Name("isBold") << (style.font.weight == Weight::Bold ? u"true" : u"false");
        Name("siblingGap") << style.siblingGap;
        Name("childGap") << style.childGap;
        Name("lineWidth") << style.lineWidth;
        // No corner is rounder than half of the shape's height, which the page takes care of.
        Name("radius") << CornerRadiusOf(m_shapes, level, kMaximumExtent) << u"}";
    }

    /// Colors as CSS: of the page, of the centre, and of each branch's lines and levels.
    void WriteColors(Theme theme) {
        const Page& page = PageOf(theme);
        const Signals& signals = kSignals[static_cast<std::size_t>(theme)];
        m_xml << u":root{--paper:" << Color{page.paper} << u";--box:" << Color{page.boxFill} << u";--box-edge:"
              << Color{page.boxEdge} << u";--ink:" << Color{page.ink} << u";--quiet:" << Color{page.quietInk}
              << u";--link:" << Color{signals.link} << u";--focus:" << Color{signals.chosen} << u";--hit:"
              << Color{signals.hit} << u"}.l0{--line:" << Color{LookOf(theme, 0, 0).fill} << u"}.l0";
        WriteLook(LookOf(theme, 0, 0));
        for (int branch = 0; branch < static_cast<int>(kBranchColors.size()); ++branch) {
            m_xml << u".b" << branch << u"{--line:" << Color{LineColorOf(theme, branch)} << u"}";
            for (int level = 1; level <= kLookCount; ++level) {
                m_xml << u".b" << branch << u".l" << level;
                WriteLook(LookOf(theme, level, branch));
            }
        }
    }

    void WriteLook(const Look& look) {
        m_xml << u"{--fill:" << Color{look.fill} << u";--edge:" << Color{look.edge} << u";--title:" << Color{look.title}
              << u";--detail:" << Color{look.detail} << u";--accent:" << Color{look.accent} << u"}";
    }

    void WriteRun(const TextRun& run, const TopicShape& shape) {
        const RunPlace place = PlaceOf(run, shape);
        m_isFirst = true;
        Write("role", NameOf(run.role));
        Name("x") << place.x - shape.bounds.x;
        Name("y") << place.baseline - shape.bounds.y;
        if (place.anchor != Anchor::Start)
            Write("anchor", NameOf(place.anchor));
        if (run.direction == Direction::RightToLeft)
            Name("rtl") << u"true";
        if (run.hasIcon)
            Name("icon") << place.iconX - shape.bounds.x;
        Name("text") << JsonText(run.text) << u"}";
    }

    const std::vector<Topic>& m_topics;
    const MapLayout& m_map;
    const Legend& m_legend;
    const Shapes m_shapes;
    CString m_page;  // what is still to be written of it
    XmlStream m_xml;
    TopicIds m_ids;
    bool m_isFirst = true;
};

}  // namespace

void WriteHtml(const Outline& outline, const MapLayout& map, const Legend& legend, Shapes shapes, const TextSink& sink,
               const ProgressHook& progress) {
    HtmlDocument document(outline, map, legend, shapes, sink);
    document.Begin();
    for (std::size_t i = 0; i < outline.topics.size(); ++i) {
        Tell(progress, "drawing", i, outline.topics.size());
        document.WriteTopic(i);
    }
    document.End();
}

}  // namespace mindmap
