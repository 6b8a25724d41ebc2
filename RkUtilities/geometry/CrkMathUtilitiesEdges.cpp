#include "RkUtilities/geometry/CrkMathUtilities.h"

#include "RkUtilities/geometry/RectAdjustments.h"

#include <algorithm>
#include <cmath>

namespace {

/// `length` times a slope, formed in double precision.
float AlongSlope(float numerator, float denominator, float length) noexcept
{
    return static_cast<float>(static_cast<double>(numerator) / static_cast<double>(denominator) *
                              static_cast<double>(length));
}

CrkFloatPoint CentreOf(const CrkFloatRect& rect) noexcept
{
    return {rect.x + rect.width / 2, rect.y + rect.height / 2};
}

/// Where a ray from (0, 0) that is parallel to no axis meets the rectangle: the side whose corners' angles enclose its
/// own.
CrkFloatPoint SlantedEdgePoint(const rk::RectBounds& bounds, CrkFloatPoint direction) noexcept
{
    const auto onHorizontal = [&](float y) { return CrkFloatPoint{AlongSlope(direction.x, direction.y, y), y}; };
    const auto onVertical = [&](float x) { return CrkFloatPoint{x, AlongSlope(direction.y, direction.x, x)}; };
    const double angle = CrkMathUtilities::CalculateAngle(direction);
    if (angle < CrkMathUtilities::CalculateAngle(bounds.maxX, bounds.minY))
        return onHorizontal(bounds.minY);
    if (angle < CrkMathUtilities::CalculateAngle(bounds.maxX, bounds.maxY))
        return onVertical(bounds.maxX);
    if (angle < CrkMathUtilities::CalculateAngle(bounds.minX, bounds.maxY))
        return onHorizontal(bounds.maxY);
    if (angle < CrkMathUtilities::CalculateAngle(bounds.minX, bounds.minY))
        return onVertical(bounds.minX);
    return onHorizontal(bounds.minY);
}

CrkFloatPoint EdgePointFromZero(const CrkFloatRect& rect, CrkFloatPoint direction) noexcept
{
    const rk::RectBounds bounds(rect);
    if (direction.x == 0)
        return {bounds.minX + rect.width / 2, direction.y >= 0 ? bounds.maxY : bounds.minY};
    if (direction.y == 0)
        return {direction.x >= 0 ? bounds.maxX : bounds.minX, bounds.minY + rect.height / 2};
    return SlantedEdgePoint(bounds, direction);
}

/// The ellipse inscribed in a rectangle around (0, 0), by its semi-axes and its extent in y.
struct Ellipse {
    explicit Ellipse(const CrkFloatRect& rect) noexcept
        : a(rect.width / 2), b(rect.height / 2), top(rect.y), bottom(rect.y + rect.height)
    {}

    float a;
    float b;
    float top;
    float bottom;

    /// Below 1 inside, 1 on the edge.
    [[nodiscard]] float Level(CrkFloatPoint point) const noexcept
    {
        return point.x * point.x / (a * a) + point.y * point.y / (b * b);
    }
};

/// Far enough along the ray to be outside.
float ReachOf(const Ellipse& ellipse, CrkFloatPoint direction) noexcept
{
    const auto axisReach = [](float semiAxis, float component) {
        return (component == 0 ? 0 : semiAxis / std::fabs(component)) + 0.1F;
    };
    return std::max({1.0F, axisReach(ellipse.a, direction.x), axisReach(ellipse.b, direction.y)});
}

struct TwoPoints {
    CrkFloatPoint first;
    CrkFloatPoint second;
};

/// Where the endless line through `inside` and `outside` meets the ellipse.
TwoPoints CrossingsOf(const Ellipse& ellipse, CrkFloatPoint inside, CrkFloatPoint outside) noexcept
{
    if (outside.x == inside.x) {
        if (inside == CrkFloatPoint())
            return {{0, ellipse.top}, {0, ellipse.bottom}};
        const float part = inside.x / ellipse.a;
        const float y = ellipse.b * std::sqrt(1 - part * part);
        return {{inside.x, -y}, {inside.x, y}};
    }
    const float slope = (outside.y - inside.y) / (outside.x - inside.x);
    const float intercept = inside.y - slope * inside.x;
    const float aSquared = ellipse.a * ellipse.a;
    const float bSquared = ellipse.b * ellipse.b;
    float first = 0;
    float second = 0;
    CrkMathUtilities::SolveQuadraticEquation(1 / aSquared + slope * slope / bSquared, 2 * slope * intercept / bSquared,
                                             intercept * intercept / bSquared - 1, &first, &second);
    return {{first, slope * first + intercept}, {second, slope * second + intercept}};
}

bool IsBetween(float value, float a, float b) noexcept
{
    return value >= std::min(a, b) && value <= std::max(a, b);
}

bool IsBetween(CrkFloatPoint point, CrkFloatPoint a, CrkFloatPoint b) noexcept
{
    return IsBetween(point.x, a.x, b.x) && IsBetween(point.y, a.y, b.y);
}

}  // namespace

CrkFloatPoint CrkMathUtilities::GetRectangleEdgePoint(CrkFloatRect rect, CrkFloatPoint direction, CrkFloatPoint origin,
                                                      float offset) noexcept
{
    const CrkFloatRect around = rk::InflateRect(rk::OffsetRect(rect, -origin.x, -origin.y), offset, offset);
    if (std::isinf(around.x) || std::isinf(around.y))
        return origin;  // nothing is left of the rectangle
    const CrkFloatPoint edge = EdgePointFromZero(around, direction);
    return {origin.x + edge.x, origin.y + edge.y};
}

CrkFloatPoint CrkMathUtilities::GetRectangleEdgePoint(CrkFloatRect rect, CrkFloatPoint direction, float offset) noexcept
{
    return GetRectangleEdgePoint(rect, direction, CentreOf(rect), offset);
}

CrkFloatPoint CrkMathUtilities::GetEllipseEdgePoint(CrkFloatRect rect, CrkFloatPoint direction, CrkFloatPoint origin,
                                                    float offset) noexcept
{
    const rk::RectBounds bounds(rect);
    const CrkFloatPoint centre{bounds.minX + std::fabs(rect.width) / 2, bounds.minY + std::fabs(rect.height) / 2};
    const CrkFloatRect around = rk::InflateRect(rk::OffsetRect(rect, -centre.x, -centre.y), offset, offset);
    const Ellipse ellipse(around);
    const CrkFloatPoint from{origin.x - centre.x, origin.y - centre.y};
    if (!(ellipse.Level(from) < 1))
        return origin;
    const float reach = ReachOf(ellipse, direction);
    const CrkFloatPoint far{from.x + reach * direction.x, from.y + reach * direction.y};
    if (!(ellipse.Level(far) > 1))
        return origin;
    const TwoPoints crossings = CrossingsOf(ellipse, from, far);
    if (IsBetween(crossings.first, from, far))
        return {centre.x + crossings.first.x, centre.y + crossings.first.y};
    if (IsBetween(crossings.second, from, far))
        return {centre.x + crossings.second.x, centre.y + crossings.second.y};
    return origin;
}

CrkFloatPoint CrkMathUtilities::GetEllipseEdgePoint(CrkFloatRect rect, CrkFloatPoint direction, float offset) noexcept
{
    return GetEllipseEdgePoint(rect, direction, CentreOf(rect), offset);
}
