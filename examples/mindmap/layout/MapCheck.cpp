#include "mindmap/layout/MapCheck.h"

#include <RkUtilities/collections/CorvaneNSArrayAdditions.h>
#include <RkUtilities/geometry/CrkFloatMargin.h>
#include <RkUtilities/geometry/CrkMathUtilities.h>

#include <algorithm>
#include <array>
#include <bit>

namespace mindmap {

namespace {

constexpr int kSegmentCount = 16;
constexpr float kEdgeTolerance = 0.25F;  // less than between any two lines of the grid; the distances are rounded

bool ShareArea(const CrkFloatRect& a, const CrkFloatRect& b) {
    CrkFloatRect common;
    return CrkFloatRect::Intersect(common, a, b);
}

/// A binary tree of bounding boxes over the topics in their order: neighbours in the outline are neighbours in the map,
/// so the boxes stay small. Node i has the children 2i and 2i + 1; the leaves begin at `m_leafCount`.
class ShapeTree {
public:
    explicit ShapeTree(const std::vector<TopicShape>& shapes)
        : m_leafCount(std::bit_ceil(shapes.size())), m_count(shapes.size()), m_boxes(2 * m_leafCount) {
        for (std::size_t i = 0; i < m_leafCount; ++i)
            m_boxes[m_leafCount + i] = shapes[std::min(i, m_count - 1)].bounds;
        for (std::size_t i = m_leafCount; i-- > 1;)
            m_boxes[i] = CrkFloatRect::Union(m_boxes[2 * i], m_boxes[2 * i + 1]);
    }

    /// Calls `visit` with the index of every topic whose box shares an area with `sought`.
    template <class Visit> void ForEachIn(const CrkFloatRect& sought, Visit visit) const {
        std::vector<std::size_t> open = {1};
        while (!open.empty()) {
            const std::size_t node = open.back();
            open.pop_back();
            if (!ShareArea(m_boxes[node], sought))
                continue;
            if (node < m_leafCount)
                open.insert(open.end(), {2 * node + 1, 2 * node});
            else if (node - m_leafCount < m_count)
                visit(node - m_leafCount);
        }
    }

private:
    std::size_t m_leafCount;
    std::size_t m_count;
    std::vector<CrkFloatRect> m_boxes;
};

/// The box of a level or upright line has no area; it gets some. Other boxes stay: the box of a line that comes from
///  the centre ends where all the main topics begin and must not reach into them.
CrkFloatRect WithArea(CrkFloatRect box) {
    const float x = box.width > 0 ? 0.0F : 0.5F;
    const float y = box.height > 0 ? 0.0F : 0.5F;
    CrkFloatMargin{x, y, x, y}.InflateRect(box);
    return box;
}

bool IsOnEllipse(const CrkFloatPoint& point, const CrkFloatRect& bounds) {
    const double x = (point.x - (bounds.x + bounds.width / 2)) / (bounds.width / 2);
    const double y = (point.y - (bounds.y + bounds.height / 2)) / (bounds.height / 2);
    return CrkMathUtilities::FloatsEqual(x * x + y * y, 1.0, 1e-4);
}

bool IsOnEdge(CrkFloatPoint point, const TopicShape& shape) {
    const CrkFloatRect& r = shape.bounds;
    if (shape.side == Side::Centre)
        return IsOnEllipse(point, r);
    const std::array<CrkFloatPoint, 5> outline = {
        {{r.x, r.y}, {r.x + r.width, r.y}, {r.x + r.width, r.y + r.height}, {r.x, r.y + r.height}, {r.x, r.y}}};
    return CrkMathUtilities::IsPointInRect(point, r) &&
           CrkMathUtilities::IsPointOnPolyline(point, outline, kEdgeTolerance);
}

}  // namespace

MapFaults CheckMap(const Outline& outline, const MapLayout& map, const ProgressHook& progress) {
    MapFaults faults;
    const std::vector<TopicShape>& shapes = map.shapes;
    const ShapeTree tree(shapes);
    for (std::size_t i = 1; i < shapes.size(); ++i) {
        Tell(progress, "checking", i, shapes.size());
        tree.ForEachIn(shapes[i].bounds, [&](std::size_t other) { faults.overlapCount += other < i ? 1 : 0; });

        const Connection& line = map.connections[i];
        const auto parent = static_cast<std::size_t>(outline.topics[i].parent);
        faults.looseEndCount += IsOnEdge(line.points.front(), shapes[parent]) ? 0 : 1;
        faults.looseEndCount += IsOnEdge(line.points.back(), shapes[i]) ? 0 : 1;

        // Of shapes that lie on each other, the line may touch only the two that it joins.
        const std::array<const TopicShape*, 2> ends = {&shapes[parent], &shapes[i]};
        const auto check = [&](const CrkFloatPoint* points, int pointCount) {
            const CrkFloatRect box = CrkMathUtilities::CalculatePointsBoundingRectangle(points, pointCount);
            tree.ForEachIn(WithArea(box), [&](std::size_t other) {
                if (!CorvaneNSArrayAdditions::containsObjectIdenticalTo(ends, &shapes[other]) &&
                    CrkMathUtilities::IsPolylineCrossingRect(points, pointCount, shapes[other].bounds))
                    ++faults.crossingCount;
            });
        };
        const std::vector<CrkFloatPoint> points = Flatten(line, kSegmentCount);
        if (line.isCurve)
            check(points.data(), static_cast<int>(points.size()));
        else  // piece by piece: the box around a line along many columns would hold them all
            for (std::size_t p = 0; p + 1 < points.size(); ++p)
                check(&points[p], 2);
    }
    return faults;
}

}  // namespace mindmap
