#include "RkUtilities/geometry/CrkMathUtilities.h"

#include <algorithm>

namespace {

CrkFloatPoint MiddleOf(const CrkFloatRect& rectangle) {
    return {rectangle.x + rectangle.width / 2, rectangle.y + rectangle.height / 2};
}

/// Where a ray from (0, 0) with the given quotient of its components meets a side, in double precision.
float AlongSide(float component, float otherComponent, float side) {
    return static_cast<float>(double{component} / otherComponent * side);
}

/// The edge point as seen from the origin, which is (0, 0) here.
CrkFloatPoint RectangleEdgePoint(const CrkFloatRect& shape, CrkFloatPoint direction) {
    const float left = shape.MinX(), top = shape.MinY(), right = shape.MaxX(), bottom = shape.MaxY();
    if (direction.x == 0)
        return {left + shape.width / 2, direction.y >= 0 ? bottom : top};
    if (direction.y == 0)
        return {direction.x >= 0 ? right : left, top + shape.height / 2};

    const auto onHorizontalSide = [&](float y) { return CrkFloatPoint{AlongSide(direction.x, direction.y, y), y}; };
    const auto onVerticalSide = [&](float x) { return CrkFloatPoint{x, AlongSide(direction.y, direction.x, x)}; };
    const double angle = CrkMathUtilities::CalculateAngle(direction);
    if (angle < CrkMathUtilities::CalculateAngle(right, top))
        return onHorizontalSide(top);
    if (angle < CrkMathUtilities::CalculateAngle(right, bottom))
        return onVerticalSide(right);
    if (angle < CrkMathUtilities::CalculateAngle(left, bottom))
        return onHorizontalSide(bottom);
    if (angle < CrkMathUtilities::CalculateAngle(left, top))
        return onVerticalSide(left);
    return top == 0 ? CrkFloatPoint{0, 0} : onHorizontalSide(top);
}

/// An ellipse around (0, 0).
struct Ellipse {
    float halfWidth;
    float halfHeight;

    /// Below 1 inside, 1 on the outline, above 1 outside.
    float Level(CrkFloatPoint p) const {
        return p.x * p.x / (halfWidth * halfWidth) + p.y * p.y / (halfHeight * halfHeight);
    }
};

/// How many times a component of the direction leads safely out of an ellipse, from its middle.
float Reach(float halfExtent, float component) {
    return component == 0 ? 0.1f : halfExtent / std::fabs(component) + 0.1f;
}

bool IsBetween(float value, float a, float b) { return a < b ? a <= value && value <= b : b <= value && value <= a; }

struct Candidates {
    CrkFloatPoint first;
    CrkFloatPoint second;
};

/// Where a vertical line meets the ellipse, above and below. On the axis that is the top and the bottom of the shape.
Candidates OnVerticalLine(const Ellipse& ellipse, const CrkFloatRect& shape, float x) {
    if (x == 0)
        return {{0, shape.MinY()}, {0, shape.MaxY()}};
    const double ratio = double{x} / ellipse.halfWidth;
    const auto height = static_cast<float>(ellipse.halfHeight * std::sqrt(1 - ratio * ratio));
    return {{x, -height}, {x, height}};
}

Candidates OnSlantedLine(const Ellipse& ellipse, CrkFloatPoint from, CrkFloatPoint to) {
    const float slope = (to.y - from.y) / (to.x - from.x);
    const float intercept = from.y - slope * from.x;
    const float a2 = ellipse.halfWidth * ellipse.halfWidth, b2 = ellipse.halfHeight * ellipse.halfHeight;
    float x1 = 0, x2 = 0;
    CrkMathUtilities::SolveQuadraticEquation(1 / a2 + slope * slope / b2, 2 * slope * intercept / b2,
                                             intercept * intercept / b2 - 1, &x1, &x2);
    return {{x1, slope * x1 + intercept}, {x2, slope * x2 + intercept}};
}

}  // namespace

CrkFloatPoint CrkMathUtilities::GetRectangleEdgePoint(CrkFloatRect rectangle, CrkFloatPoint direction,
                                                      CrkFloatPoint origin, float offset) noexcept {
    const CrkFloatRect shape = rectangle.Moved(-origin.x, -origin.y).Inflated(offset, offset);
    if (shape.IsNull())
        return origin;
    const CrkFloatPoint edge = RectangleEdgePoint(shape, direction);
    return {origin.x + edge.x, origin.y + edge.y};
}

CrkFloatPoint CrkMathUtilities::GetRectangleEdgePoint(CrkFloatRect rectangle, CrkFloatPoint direction,
                                                      float offset) noexcept {
    return GetRectangleEdgePoint(rectangle, direction, MiddleOf(rectangle), offset);
}

CrkFloatPoint CrkMathUtilities::GetEllipseEdgePoint(CrkFloatRect rectangle, CrkFloatPoint direction,
                                                    CrkFloatPoint origin, float offset) noexcept {
    const CrkFloatPoint centre = MiddleOf(rectangle);
    const CrkFloatRect shape = rectangle.Moved(-centre.x, -centre.y).Inflated(offset, offset);
    const Ellipse ellipse{shape.width / 2, shape.height / 2};
    const CrkFloatPoint start{origin.x - centre.x, origin.y - centre.y};
    if (!(ellipse.Level(start) < 1))
        return origin;

    const auto fromCentre = [&](CrkFloatPoint p) { return CrkFloatPoint{centre.x + p.x, centre.y + p.y}; };
    if (direction.x == 0) {
        const auto [above, below] = OnVerticalLine(ellipse, shape, start.x);
        return direction.y < 0 ? fromCentre(above) : direction.y > 0 ? fromCentre(below) : origin;
    }
    const float reach = std::max({1.0f, Reach(ellipse.halfWidth, direction.x), Reach(ellipse.halfHeight, direction.y)});
    const CrkFloatPoint beyond{start.x + reach * direction.x, start.y + reach * direction.y};
    if (!(ellipse.Level(beyond) > 1))
        return origin;

    const auto [first, second] = OnSlantedLine(ellipse, start, beyond);
    const auto isOnRay = [&](CrkFloatPoint p) {
        return IsBetween(p.x, start.x, beyond.x) && IsBetween(p.y, start.y, beyond.y);
    };
    if (isOnRay(first))
        return fromCentre(first);
    return isOnRay(second) ? fromCentre(second) : origin;
}

CrkFloatPoint CrkMathUtilities::GetEllipseEdgePoint(CrkFloatRect rectangle, CrkFloatPoint direction,
                                                    float offset) noexcept {
    return GetEllipseEdgePoint(rectangle, direction, MiddleOf(rectangle), offset);
}
