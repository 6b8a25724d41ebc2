#pragma once

#include "mindmap/layout/Layout.h"
#include "mindmap/write/SvgWriter.h"

#include <expat.h>

#include <algorithm>
#include <cmath>
#include <set>
#include <string>
#include <vector>

/// What holds for the map of every outline, checked without the library's geometry and without the program's own check.
namespace mindmap {

struct Box {
    double left, top, right, bottom;

    explicit Box(const CrkFloatRect& r)
        : left(r.x), top(r.y), right(double{r.x} + double{r.width}), bottom(double{r.y} + double{r.height})
    {}
    [[nodiscard]] bool Overlaps(const Box& o) const
    {
        return left < o.right && o.left < right && top < o.bottom && o.top < bottom;
    }
    [[nodiscard]] bool Holds(double x, double y) const { return x >= left && x <= right && y >= top && y <= bottom; }
};

inline bool IsInEllipse(const Box& box, double x, double y)
{
    const double u = (2 * x - box.left - box.right) / (box.right - box.left);
    const double v = (2 * y - box.top - box.bottom) / (box.bottom - box.top);
    return u * u + v * v <= 1;
}

/// The text block lies in the shape, its corners in the central ellipse.
inline bool TextStaysInShape(const TopicShape& shape)
{
    const Box box(shape.bounds);
    const double start = double{shape.textOrigin.x};
    const double end = start + (shape.text.direction == Direction::RightToLeft ? -shape.text.width : shape.text.width);
    const double top = double{shape.textOrigin.y};
    const double bottom = top + shape.text.height;
    for (const TextRun& run : shape.text.runs)
        if (run.start < 0 || run.start + run.width > shape.text.width || run.baseline > shape.text.height)
            return false;
    for (const double x : {start, end})
        for (const double y : {top, bottom})
            if (shape.side == Side::Centre ? !IsInEllipse(box, x, y) : !box.Holds(x, y))
                return false;
    return true;
}

/// A point of the curve, by repeated halving of its control polygon.
inline void PointAt(const Connection& line, double t, double& x, double& y)
{
    double xs[] = {line.start.x, line.firstControl.x, line.secondControl.x, line.end.x};
    double ys[] = {line.start.y, line.firstControl.y, line.secondControl.y, line.end.y};
    for (int count = 3; count > 0; --count)
        for (int i = 0; i < count; ++i) {
            xs[i] += (xs[i + 1] - xs[i]) * t;
            ys[i] += (ys[i + 1] - ys[i]) * t;
        }
    x = xs[0];
    y = ys[0];
}

inline bool EndsOnEdges(const Connection& line, const TopicShape& parent, const TopicShape& child)
{
    const Box from(parent.bounds);
    const Box to(child.bounds);
    const bool goesRight = child.side == Side::Right;
    const double middle = (to.top + to.bottom) / 2;
    if (double{line.end.x} != (goesRight ? to.left : to.right) || double{line.end.y} != middle)
        return false;
    if (parent.side != Side::Centre)
        return double{line.start.x} == (goesRight ? from.right : from.left) &&
               double{line.start.y} == (from.top + from.bottom) / 2;
    const double u = 2 * double{line.start.x} / (from.right - from.left);
    const double v = 2 * double{line.start.y} / (from.bottom - from.top);
    return std::abs(u * u + v * v - 1) < 1e-5;
}

/// What is wrong with a map, "" for nothing. Every pair of topics is looked at, so only for maps of some hundred.
inline std::string FaultOf(const Outline& outline, const MapLayout& map)
{
    const std::size_t count = outline.topics.size();
    if (map.shapes.size() != count)
        return "topics are missing";
    std::vector<Box> boxes;
    for (const TopicShape& shape : map.shapes)
        boxes.emplace_back(shape.bounds);
    for (std::size_t i = 0; i < count; ++i) {
        const std::string name = "topic " + std::to_string(i);
        if (!TextStaysInShape(map.shapes[i]))
            return name + " does not hold its text";
        for (std::size_t j = 0; j < i; ++j)
            if (boxes[i].Overlaps(boxes[j]))
                return name + " overlaps topic " + std::to_string(j);
        if (i == 0)
            continue;
        const auto parent = static_cast<std::size_t>(outline.topics[i].parent);
        if (!EndsOnEdges(map.connections[i], map.shapes[parent], map.shapes[i]))
            return name + " has a line that ends elsewhere";
        for (int step = 0; step <= 24; ++step) {
            double x = 0;
            double y = 0;
            PointAt(map.connections[i], step / 24.0, x, y);
            for (std::size_t j = 0; j < count; ++j)
                if (j != i && j != parent && boxes[j].Holds(x, y))
                    return name + " has a line through topic " + std::to_string(j);
        }
    }
    return {};
}

inline std::string SvgOf(const Outline& outline, const MapLayout& map)
{
    std::vector<CString> ids;
    for (std::size_t i = 0; i < outline.topics.size(); ++i)
        ids.emplace_back(std::to_string(i));
    std::string svg;
    WriteSvg(outline, map, MakeLegend(outline, map), {}, ids, [&](const CString& piece) { svg += piece.ToUtf8(); });
    return svg;
}

/// How many elements of each name a document has, and what its text says; `isWellFormed` is an XML parser's word.
struct XmlFacts {
    bool isWellFormed = false;
    std::multiset<std::string> elements;
    std::multiset<std::string> ids;
    std::set<std::string> guids;
    std::set<std::string> links;
    std::string text;
};

inline XmlFacts ParseXml(const std::string& document)
{
    XmlFacts facts;
    const XML_Parser parser = XML_ParserCreate(nullptr);
    XML_SetUserData(parser, &facts);
    XML_SetStartElementHandler(parser, [](void* data, const XML_Char* name, const XML_Char** attributes) {
        XmlFacts& seen = *static_cast<XmlFacts*>(data);
        seen.elements.insert(name);
        for (; *attributes != nullptr; attributes += 2) {
            if (std::string_view(attributes[0]) == "id")
                seen.ids.insert(attributes[1]);
            if (std::string_view(attributes[0]) == "data-guid")
                seen.guids.insert(attributes[1]);
            if (std::string_view(name) == "a")
                seen.links.insert(attributes[1]);
        }
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
