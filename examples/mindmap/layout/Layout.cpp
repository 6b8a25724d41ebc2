#include "mindmap/layout/Layout.h"

#include "mindmap/layout/Placement.h"
#include "mindmap/measure/Style.h"

#include <RkUtilities/geometry/CrkFloatMargin.h>
#include <RkUtilities/geometry/CrkMathUtilities.h>
#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <numbers>

namespace mindmap {

namespace {

class Layouter {
public:
    Layouter(const Outline& outline, const ProgressHook& progress)
        : m_topics(outline.topics), m_progress(progress), m_boxes(m_topics.size()) {
        m_map.shapes.resize(m_topics.size());
        m_map.connections.resize(m_topics.size());
        m_map.sums = SumBranches(outline);
    }

    MapLayout Run() {
        ComposeTexts();
        m_placement = PlaceBoxes(m_boxes);
        MakeShapes();
        Connect();
        FindBounds();
        return std::move(m_map);
    }

private:
    const LevelStyle& LevelOf(std::size_t index) const { return StyleOf(m_topics[index].level); }

    void ComposeTexts() {
        for (std::size_t i = 0; i < m_topics.size(); ++i) {
            Tell(m_progress, "laying out", i, m_topics.size());
            TopicText& text = m_map.shapes[i].text = ComposeText(m_topics[i], m_map.sums[i]);
            const LevelStyle& style = LevelOf(i);
            text.height = std::max(text.height, LineHeight(style.font));
            const int width = OnGrid(std::max(text.width, style.font.size) + 2 * style.horizontalPadding);
            const int height = OnGrid(text.height + 2 * style.verticalPadding);
            m_boxes[i] = {static_cast<double>(width), static_cast<double>(height), m_topics[i].parent,
                          static_cast<double>(style.siblingGap),
                          static_cast<double>(i == 0 ? 0 : StyleOf(m_topics[i].level).childGap)};
        }
        MakeEllipse();
    }

    /// An ellipse whose axes are √2 times a rectangle's sides goes through its corners.
    void MakeEllipse() {
        const auto axis = [](int side) {
            return OnGrid(static_cast<int>(std::ceil((side + kCentralPadding) * std::numbers::sqrt2 / 2))) * 2;
        };
        const TopicText& text = m_map.shapes.front().text;
        m_boxes.front().width = axis(std::max(text.width, LevelOf(0).font.size));
        m_boxes.front().height = axis(text.height);
    }

    void MakeShapes() {
        int branch = -1;
        for (std::size_t i = 0; i < m_topics.size(); ++i) {
            const PlainPlace& place = m_placement.places[i];
            const PlainBox& box = m_boxes[i];
            TopicShape& shape = m_map.shapes[i];
            if (std::max({std::abs(place.x), std::abs(place.x + box.width), std::abs(place.y),
                          std::abs(place.y + box.height)}) > kMaximumExtent)
                throw OutlineError{m_topics[i].line, u"the map would be wider or taller than 67,108,864 units"};
            shape.side = i == 0 ? Side::Centre : place.isLeft ? Side::Left : Side::Right;
            branch += m_topics[i].level == 1 ? 1 : 0;
            shape.branch = std::max(branch, 0);
            shape.bounds = {static_cast<float>(place.x), static_cast<float>(place.y), static_cast<float>(box.width),
                            static_cast<float>(box.height)};
            PlaceText(shape);
        }
    }

    static void PlaceText(TopicShape& shape) {
        const float air = (shape.bounds.width - static_cast<float>(shape.text.width)) / 2;
        const bool beginsRight = shape.text.direction == Direction::RightToLeft;
        shape.textOrigin = {shape.bounds.x + (beginsRight ? shape.bounds.width - air : air),
                            shape.bounds.y + (shape.bounds.height - static_cast<float>(shape.text.height)) / 2};
    }

    void Connect() {
        for (std::size_t i = 1; i < m_topics.size(); ++i) {
            const PlainPlace& place = m_placement.places[i];
            const auto first = m_placement.points.begin() + static_cast<std::ptrdiff_t>(place.firstPoint);
            Connection& line = m_map.connections[i];
            for (auto point = first; point != first + static_cast<std::ptrdiff_t>(place.pointCount); ++point)
                line.points.push_back({static_cast<float>(point->x), static_cast<float>(point->y)});
            line.isCurve = place.isCurved;
            if (line.isCurve)
                line.points = Curve(m_map.shapes[static_cast<std::size_t>(m_topics[i].parent)], m_map.shapes[i]);
        }
    }

    static std::vector<CrkFloatPoint> Curve(const TopicShape& parent, const TopicShape& child) {
        const float outward = child.side == Side::Right ? 1.0F : -1.0F;
        const CrkFloatPoint end = CrkMathUtilities::GetRectangleEdgePoint(child.bounds, {-outward, 0}, 0);
        if (parent.side == Side::Centre) {
            const CrkFloatPoint start = CrkMathUtilities::GetEllipseEdgePoint(parent.bounds, end, 0);
            const float reach = end.x - start.x;
            return {start,
                    {start.x + reach * 0.25F, start.y + (end.y - start.y) * 0.75F},
                    {end.x - reach * 0.6F, end.y},
                    end};
        }
        const CrkFloatPoint start = CrkMathUtilities::GetRectangleEdgePoint(parent.bounds, {outward, 0}, 0);
        const float half = (end.x - start.x) / 2;
        return {start, {start.x + half, start.y}, {end.x - half, end.y}, end};
    }

    void FindBounds() {
        m_map.bounds = {static_cast<float>(m_placement.left), static_cast<float>(m_placement.top),
                        static_cast<float>(m_placement.right - m_placement.left),
                        static_cast<float>(m_placement.bottom - m_placement.top)};
        CrkFloatMargin{kMargin, kMargin, kMargin, kMargin}.InflateRect(m_map.bounds);
    }

    const std::vector<Topic>& m_topics;
    const ProgressHook& m_progress;
    std::vector<PlainBox> m_boxes;
    Placement m_placement;
    MapLayout m_map;
};

}  // namespace

MapLayout LayOut(const Outline& outline, const ProgressHook& progress) { return Layouter(outline, progress).Run(); }

std::vector<CrkFloatPoint> Flatten(const Connection& connection, int segmentCount) {
    if (!connection.isCurve)
        return connection.points;
    const CrkFloatPoint& a = connection.points[0];
    const CrkFloatPoint& b = connection.points[1];
    const CrkFloatPoint& c = connection.points[2];
    const CrkFloatPoint& d = connection.points[3];
    std::vector<CrkFloatPoint> points = {a};
    for (int i = 1; i < segmentCount; ++i) {
        const float t = static_cast<float>(i) / static_cast<float>(segmentCount);
        const float s = 1 - t;
        const auto mix = [s, t](float p, float q, float r, float o) {
            return s * s * s * p + 3 * s * s * t * q + 3 * s * t * t * r + t * t * t * o;
        };
        points.push_back({mix(a.x, b.x, c.x, d.x), mix(a.y, b.y, c.y, d.y)});
    }
    points.push_back(d);
    return points;
}

}  // namespace mindmap
