#include "mindmap/write/SvgWriter.h"

#include "mindmap/measure/Style.h"
#include "mindmap/read/CleanText.h"
#include "mindmap/read/Link.h"
#include "mindmap/write/RunPlace.h"
#include "mindmap/write/TopicFacts.h"
#include "mindmap/write/TopicIds.h"
#include "mindmap/write/XmlStream.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <string_view>

namespace mindmap {

namespace {

constexpr float kTurnRadius = 6;

/// Half the distance of two points that are straight above or beside each other.
float HalfDistance(const CrkFloatPoint& a, const CrkFloatPoint& b) {
    return (std::abs(a.x - b.x) + std::abs(a.y - b.y)) / 2;
}
CrkFloatPoint Towards(const CrkFloatPoint& from, const CrkFloatPoint& to, float distance) {
    const auto step = [distance](float a, float b) { return b > a ? distance : b < a ? -distance : 0; };
    return {from.x + step(from.x, to.x), from.y + step(from.y, to.y)};
}

class SvgDocument {
public:
    SvgDocument(const Outline& outline, const MapLayout& map, const Legend& legend, const Design& design,
                const TextSink& sink)
        : m_topics(outline.topics), m_map(map), m_legend(legend), m_design(design), m_xml(sink) {}

    void Begin() {
        const CrkFloatRect& r = m_legend.bounds;
        m_xml << u"<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<svg xmlns=\"http://www.w3.org/2000/svg\" "
                 u"xmlns:xlink=\"http://www.w3.org/1999/xlink\" width=\""
              << r.width << u"\" height=\"" << r.height << u"\" viewBox=\"" << r.x << u" " << r.y << u" " << r.width
              << u" " << r.height << u"\" font-family=\"" << kFontFamily << u"\">\n<title>";
        m_xml.Text(ShortenForTooltip(m_topics.front().text), Place::Content)
            << u"</title>\n"
            << kIcons << u"<rect x=\"" << r.x << u"\" y=\"" << r.y << u"\" width=\"" << r.width << u"\" height=\""
            << r.height << u"\" fill=\"" << Color{PageOf(m_design.theme).paper}
            << u"\"/>\n<g fill=\"none\" stroke-linecap=\"round\">\n";
    }

    void WriteConnection(std::size_t index) {
        const Connection& line = m_map.connections[index];
        const CrkFloatPoint& start = line.points.front();
        m_xml << u"<path d=\"M" << start.x << u" " << start.y;
        if (line.isCurve)
            WriteCurve(line.points);
        else
            WriteCorners(line.points);
        m_xml << u"\" stroke=\"" << LineColor(index) << u"\" stroke-width=\""
              << StyleOf(m_topics[index].level).lineWidth << u"\"/>\n";
        m_xml.HandOnPieces();
    }

    void EndConnections() { m_xml << u"</g>\n"; }

    void WriteTopic(std::size_t index, const CString& guid) {
        const Topic& topic = m_topics[index];
        const TopicShape& shape = m_map.shapes[index];
        const Look look = LookOf(m_design.theme, topic.level, shape.branch);
        const CString target = ReadLink(topic.link).target;

        m_xml << u"<g id=\"" << m_ids.Make(topic.text) << u"\" data-guid=\"" << guid << u"\">";
        if (!target.IsEmpty()) {
            m_xml << u"<a xlink:href=\"";
            m_xml.Text(target, Place::Attribute) << u"\">";
        }
        m_xml << u"<title>";
        m_xml.Text(ComposeTooltip(topic, m_map.sums[index]), Place::Content) << u"</title>";
        WriteShape(shape, look, topic.level);
        for (const TextRun& run : shape.text.runs)
            WriteRun(run, shape, look, StyleOf(topic.level).font);
        m_xml << (target.IsEmpty() ? u"</g>\n" : u"</a></g>\n");
        m_xml.HandOnPieces();
    }

    void WriteLegend() {
        if (m_legend.entries.empty())
            return;
        const Page& page = PageOf(m_design.theme);
        m_xml << u"<g id=\"legend\">";
        BeginRect(m_legend.box) << CornerRadiusOf(m_design.shapes, 1, 2 * StyleOf(1).cornerRadius) << u"\" fill=\""
                                << Color{page.boxFill} << u"\" stroke=\"" << Color{page.boxEdge} << u"\"/>\n";
        for (const LegendEntry& entry : m_legend.entries) {
            const CrkFloatPoint& o = entry.origin;
            BeginRect({o.x, o.y + kSwatchTop, kSwatchSize, kSwatchSize})
                << CornerRadiusOf(m_design.shapes, 3, kSwatchSize) << u"\" fill=\"" << Color{entry.color} << u"\"/>";
            WriteLegendLine(entry.name, kLegendFont, page.ink, o.x, o.y + Ascent(kLegendFont));
            WriteLegendLine(entry.topics, kDetailFont, page.quietInk, o.x,
                            o.y + LineHeight(kLegendFont) + Ascent(kDetailFont));
            m_xml << u"\n";
        }
        m_xml << u"</g>\n";
    }

    void End() {
        m_xml << u"</svg>\n";
        m_xml.HandOnAll();
    }

private:
    /// Begins a rectangle; its corners' radius follows.
    XmlStream& BeginRect(const CrkFloatRect& r) {
        return m_xml << u"<rect x=\"" << r.x << u"\" y=\"" << r.y << u"\" width=\"" << r.width << u"\" height=\""
                     << r.height << u"\" rx=\"";
    }

    void WriteCurve(const std::vector<CrkFloatPoint>& points) {
        char16_t sign = u'C';
        for (std::size_t i = 1; i < points.size(); ++i, sign = u' ')
            m_xml << std::u16string_view(&sign, 1) << points[i].x << u" " << points[i].y;
    }

    /// Straight lines with round corners.
    void WriteCorners(const std::vector<CrkFloatPoint>& points) {
        for (std::size_t i = 1; i + 1 < points.size(); ++i) {
            const CrkFloatPoint& corner = points[i];
            const float radius =
                std::min({kTurnRadius, HalfDistance(corner, points[i - 1]), HalfDistance(corner, points[i + 1])});
            const CrkFloatPoint in = Towards(corner, points[i - 1], radius);
            const CrkFloatPoint out = Towards(corner, points[i + 1], radius);
            m_xml << u"L" << in.x << u" " << in.y << u"Q" << corner.x << u" " << corner.y << u" " << out.x << u" "
                  << out.y;
        }
        m_xml << u"L" << points.back().x << u" " << points.back().y;
    }

    /// The lines to all main topics that leave the centre together have the centre's color.
    Color LineColor(std::size_t index) const {
        const bool isShared = m_topics[index].level == 1 && !m_map.connections[index].isCurve;
        return {isShared ? LookOf(m_design.theme, 0, 0).fill : LineColorOf(m_design.theme, m_map.shapes[index].branch)};
    }

    void WriteShape(const TopicShape& shape, const Look& look, int level) {
        const CrkFloatRect& r = shape.bounds;
        if (shape.side == Side::Centre)
            m_xml << u"<ellipse cx=\"" << r.x + r.width / 2 << u"\" cy=\"" << r.y + r.height / 2 << u"\" rx=\""
                  << r.width / 2 << u"\" ry=\"" << r.height / 2;
        else
            BeginRect(r) << CornerRadiusOf(m_design.shapes, level, static_cast<int>(r.height));
        m_xml << u"\" fill=\"" << Color{look.fill};
        if (look.edgeWidth > 0)
            m_xml << u"\" stroke=\"" << Color{look.edge} << u"\" stroke-width=\"" << look.edgeWidth;
        m_xml << u"\"/>";
    }

    void WriteRun(const TextRun& run, const TopicShape& shape, const Look& look, Font titleFont) {
        const bool isTitle = run.role == TextRole::Title;
        const Font font = isTitle ? titleFont : kDetailFont;
        const bool isAccent = run.role == TextRole::Amount || run.role == TextRole::Link;
        const Color color{isTitle ? look.title : isAccent ? look.accent : look.detail};
        const RunPlace place = PlaceOf(run, shape);

        if (run.hasIcon)
            m_xml << u"<use xlink:href=\"#icon-" << CString(NameOf(run.role)) << u"\" x=\"" << place.iconX << u"\" y=\""
                  << place.iconTop << u"\" stroke=\"" << color << u"\"/>";
        BeginText(place.x, place.baseline, font, color);
        if (font.weight == Weight::Bold)
            m_xml << u"\" font-weight=\"bold";
        if (run.direction == Direction::RightToLeft)
            m_xml << u"\" direction=\"rtl\" unicode-bidi=\"embed";
        if (place.anchor != Anchor::Start)
            m_xml << u"\" text-anchor=\"" << CString(NameOf(place.anchor));
        m_xml << u"\">";
        WriteFontParts(run.text);
        m_xml << u"</text>";
    }

    /// Begins a line of text; more attributes may follow.
    void BeginText(float x, float baseline, Font font, Color color) {
        m_xml << u"<text x=\"" << x << u"\" y=\"" << baseline << u"\" font-size=\"" << font.size << u"\" fill=\""
              << color;
    }

    /// Begins right of the square of color, whatever the text's direction is.
    void WriteLegendLine(const CString& text, Font font, std::uint32_t color, float cellX, float baseline) {
        BeginText(cellX + kSwatchSize + kSwatchGap, baseline, font, Color{color});
        if (DirectionOf(text) == Direction::RightToLeft)
            m_xml << u"\" direction=\"rtl\" unicode-bidi=\"embed\" text-anchor=\"end";
        m_xml << u"\">";
        WriteFontParts(text);
        m_xml << u"</text>";
    }

    void WriteFontParts(std::u16string_view text) {
        while (!text.empty()) {
            const FontPart part = FirstFontPart(text);
            if (part.isPicture)
                m_xml << u"<tspan font-family=\"" << kPictureFontFamily << u"\" font-weight=\"normal\">";
            m_xml.Text(part.text, Place::Content);
            if (part.isPicture)
                m_xml << u"</tspan>";
            text.remove_prefix(part.text.size());
        }
    }

    const std::vector<Topic>& m_topics;
    const MapLayout& m_map;
    const Legend& m_legend;
    const Design m_design;
    XmlStream m_xml;
    TopicIds m_ids;
};

}  // namespace

void WriteSvg(const Outline& outline, const MapLayout& map, const Legend& legend, const Design& design,
              const std::vector<CString>& topicGuids, const TextSink& sink, const ProgressHook& progress) {
    SvgDocument document(outline, map, legend, design, sink);
    document.Begin();
    for (std::size_t i = outline.topics.size(); i-- > 1;)  // heavier lines last, over the ends of lighter lines
        document.WriteConnection(i);
    document.EndConnections();
    for (std::size_t i = 0; i < outline.topics.size(); ++i) {
        Tell(progress, "drawing", i, outline.topics.size());
        document.WriteTopic(i, topicGuids[i]);
    }
    document.WriteLegend();
    document.End();
}

}  // namespace mindmap
