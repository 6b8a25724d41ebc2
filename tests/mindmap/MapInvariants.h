#pragma once

#include "mindmap/layout/Layout.h"
#include "mindmap/measure/Style.h"
#include "mindmap/write/SvgWriter.h"

#include <expat.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <set>
#include <string>
#include <vector>

/// What holds for the map of every outline beside what the program's own check looks for (MapCheck.h).
namespace mindmap {

struct Box {
    double left, top, right, bottom;

    explicit Box(const CrkFloatRect& r)
        : left(r.x), top(r.y), right(double{r.x} + double{r.width}), bottom(double{r.y} + double{r.height}) {}
    [[nodiscard]] bool Holds(const Box& o) const {
        return o.left >= left && o.right <= right && o.top >= top && o.bottom <= bottom;
    }
};

/// The text block lies in the shape, its corners in the central ellipse.
inline bool TextStaysInShape(const TopicShape& shape) {
    const Box box(shape.bounds);
    const double start = double{shape.textOrigin.x};
    const double end = start + (shape.text.direction == Direction::RightToLeft ? -shape.text.width : shape.text.width);
    const double top = double{shape.textOrigin.y};
    const double bottom = top + shape.text.height;
    for (const TextRun& run : shape.text.runs)
        if (run.start < 0 || run.start + run.width > shape.text.width || run.baseline > shape.text.height)
            return false;
    for (const double x : {start, end})
        for (const double y : {top, bottom}) {
            const double u = std::abs(2 * x - box.left - box.right) / (box.right - box.left);
            const double v = std::abs(2 * y - box.top - box.bottom) / (box.bottom - box.top);
            if (shape.side == Side::Centre ? u * u + v * v > 1 : u > 1 || v > 1)
                return false;
        }
    return true;
}

/// How much of the map inside its outline is topics and the gaps beside them. The outline goes from the leftmost to the
/// rightmost topic at each height.
inline double FillOf(const Outline& outline, const MapLayout& map) {
    constexpr int kStep = 4;
    const Box whole(map.bounds);
    std::vector<std::pair<double, double>> rows(static_cast<std::size_t>(map.bounds.height) / kStep + 1, {1e9, -1e9});
    double filled = 0;
    for (std::size_t i = 0; i < map.shapes.size(); ++i) {
        const Box box(map.shapes[i].bounds);
        const LevelStyle& style = StyleOf(std::max(outline.topics[i].level, 1));
        filled += (box.right - box.left + style.childGap) * (box.bottom - box.top + style.siblingGap);
        for (double y = box.top; y < box.bottom; y += kStep) {
            auto& [left, right] = rows[static_cast<std::size_t>((y - whole.top) / kStep)];
            left = std::min(left, box.left);
            right = std::max(right, box.right);
        }
    }
    double area = 0;
    for (const auto& [left, right] : rows)
        area += std::max(0.0, right - left) * kStep;
    return filled / area;
}

inline std::string SvgOf(const Outline& outline, const MapLayout& map) {
    const std::vector<CString> ids(outline.topics.size());
    std::string svg;
    WriteSvg(outline, map, MakeLegend(outline, map), {}, ids, [&](const CString& piece) { svg += piece.ToUtf8(); });
    return svg;
}

/// A document's elements, values of attributes ("a href") and text; `isWellFormed` is an XML parser's word.
struct XmlFacts {
    bool isWellFormed = false;
    std::multiset<std::string> elements;
    std::map<std::string, std::set<std::string>> attributes;
    std::string text;
};

inline XmlFacts ParseXml(const std::string& document) {
    XmlFacts facts;
    const XML_Parser parser = XML_ParserCreate(nullptr);
    XML_SetUserData(parser, &facts);
    XML_SetStartElementHandler(parser, [](void* data, const XML_Char* name, const XML_Char** attributes) {
        XmlFacts& seen = *static_cast<XmlFacts*>(data);
        seen.elements.insert(name);
        for (; *attributes != nullptr; attributes += 2)
            seen.attributes[name + std::string(" ") + attributes[0]].insert(attributes[1]);
    });
    XML_SetCharacterDataHandler(parser, [](void* data, const XML_Char* bytes, int count) {
        static_cast<XmlFacts*>(data)->text.append(bytes, static_cast<std::size_t>(count));
    });
    facts.isWellFormed =
        XML_Parse(parser, document.data(), static_cast<int>(document.size()), XML_TRUE) == XML_STATUS_OK;
    XML_ParserFree(parser);
    return facts;
}

}  // namespace mindmap
