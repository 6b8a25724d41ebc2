#include "RkUtilities/geometry/CrkMathUtilities.h"

#include "RkUtilities/geometry/RectAdjustments.h"

#include <algorithm>
#include <cmath>

namespace {

/// A line that is not vertical, as y = slope · x + intercept.
struct Slanted {
    float slope;
    float intercept;

    Slanted(const CrkFloatPoint& start, const CrkFloatPoint& end) noexcept
        : slope((end.y - start.y) / (end.x - start.x)), intercept(start.y - start.x * slope)
    {}
    [[nodiscard]] CrkFloatPoint At(float x) const noexcept { return {x, slope * x + intercept}; }
};

/// Whether the point lies within the extents of a segment, ends included.
bool IsInExtents(const CrkFloatPoint& point, const CrkFloatPoint& start, const CrkFloatPoint& end) noexcept
{
    return point.x >= std::min(start.x, end.x) && point.x <= std::max(start.x, end.x) &&
           point.y >= std::min(start.y, end.y) && point.y <= std::max(start.y, end.y);
}

bool IsSamePlace(const CrkFloatPoint& a, const CrkFloatPoint& b) noexcept
{
    return std::fabs(a.x - b.x) < rk::kAxisTolerance && std::fabs(a.y - b.y) < rk::kAxisTolerance;
}

}  // namespace

float CrkMathUtilities::CalculateDistanceToLine(const CrkFloatPoint& point, const CrkFloatPoint& start,
                                                const CrkFloatPoint& end) noexcept
{
    if (start == end)
        return Length(point, start);
    const CrkFloatPoint d{end.x - start.x, end.y - start.y};
    const CrkFloatPoint v{point.x - start.x, point.y - start.y};
    const float t = (d.x * v.x + v.y * d.y) / (d.x * d.x + d.y * d.y);
    const CrkFloatPoint e{v.x - t * d.x, v.y - t * d.y};
    return std::sqrt(e.x * e.x + e.y * e.y);
}

bool CrkMathUtilities::IsPointOnLine(const CrkFloatPoint& point, const CrkFloatPoint& start, const CrkFloatPoint& end,
                                     float tolerance) noexcept
{
    const CrkFloatRect extents{std::min(start.x, end.x), std::min(start.y, end.y), std::fabs(start.x - end.x),
                               std::fabs(start.y - end.y)};
    return IsPointInRect(point, rk::InflateRect(extents, tolerance, tolerance)) &&
           !(CalculateDistanceToLine(point, start, end) > tolerance);
}

bool CrkMathUtilities::IsPointOnPolyline(const CrkFloatPoint& point, const CrkFloatPoint* points, int count,
                                         float tolerance) noexcept
{
    for (int i = 1; points != nullptr && i < count; ++i) {
        if (IsPointOnLine(point, points[i - 1], points[i], tolerance))
            return true;
    }
    return false;
}

float CrkMathUtilities::IsPointAboveLine(const CrkFloatPoint& point, const CrkFloatPoint& start,
                                         const CrkFloatPoint& end) noexcept
{
    if (IsSamePlace(point, start) || IsSamePlace(point, end))
        return 0;
    if (std::fabs(end.x - start.x) < rk::kAxisTolerance)
        return point.x - start.x;
    if (std::fabs(start.y - end.y) < rk::kAxisTolerance)
        return start.y - point.y;
    return (end.x - start.x) * (start.y - point.y) - (start.y - end.y) * (point.x - start.x);
}

float CrkMathUtilities::IsPointRightOfLine(const CrkFloatPoint& point, const CrkFloatPoint& start,
                                           const CrkFloatPoint& end) noexcept
{
    return IsPointAboveLine(point, start, end);
}

float CrkMathUtilities::IsPointBelowLine(const CrkFloatPoint& point, const CrkFloatPoint& start,
                                         const CrkFloatPoint& end) noexcept
{
    return -IsPointAboveLine(point, start, end);
}

float CrkMathUtilities::IsPointLeftOfLine(const CrkFloatPoint& point, const CrkFloatPoint& start,
                                          const CrkFloatPoint& end) noexcept
{
    return -IsPointAboveLine(point, start, end);
}

CrkFloatPoint CrkMathUtilities::GetPolylineMidpoint(const CrkFloatPoint* points, int count) noexcept
{
    if (points == nullptr)
        return {};
    float total = 0;
    for (int i = 1; i < count; ++i)
        total += Length(points[i], points[i - 1]);
    const float half = total * 0.5F;
    float before = 0;
    for (int i = 1; i < count; ++i) {
        const CrkFloatPoint& start = points[i - 1];
        const CrkFloatPoint& end = points[i];
        const float length = Length(end, start);
        if (before + length > half) {
            const float part = (half - before) / length;
            return {start.x + part * (end.x - start.x), start.y + part * (end.y - start.y)};
        }
        before += length;
    }
    return {};
}

bool CrkMathUtilities::IsLineCrossingLine(const CrkFloatPoint& firstStart, const CrkFloatPoint& firstEnd,
                                          const CrkFloatPoint& secondStart, const CrkFloatPoint& secondEnd) noexcept
{
    const bool firstVertical = firstStart.x == firstEnd.x;
    const bool secondVertical = secondStart.x == secondEnd.x;
    if (firstVertical && secondVertical)
        return firstStart.x == secondStart.x;
    CrkFloatPoint crossing;
    if (firstVertical) {
        crossing = Slanted(secondStart, secondEnd).At(firstStart.x);
    } else {
        const Slanted first(firstStart, firstEnd);
        if (secondVertical) {
            crossing = first.At(secondStart.x);
        } else {
            const Slanted second(secondStart, secondEnd);
            crossing = first.At((second.intercept - first.intercept) / (first.slope - second.slope));
        }
    }
    return IsInExtents(crossing, firstStart, firstEnd) && IsInExtents(crossing, secondStart, secondEnd);
}

bool CrkMathUtilities::IsLineCrossingRect(const CrkFloatPoint& start, const CrkFloatPoint& end,
                                          const CrkFloatRect& rect) noexcept
{
    if (IsPointInRect(start, rect) || IsPointInRect(end, rect))
        return true;
    const rk::RectBounds bounds(rect);
    const CrkFloatPoint corners[] = {
        {bounds.minX, bounds.minY}, {bounds.maxX, bounds.minY}, {bounds.maxX, bounds.maxY}, {bounds.minX, bounds.maxY}};
    for (int side = 0; side < 4; ++side) {
        if (IsLineCrossingLine(corners[side], corners[(side + 1) % 4], start, end))
            return true;
    }
    return false;
}

bool CrkMathUtilities::IsPolylineCrossingRect(const CrkFloatPoint* points, int count, const CrkFloatRect& rect) noexcept
{
    for (int i = 1; points != nullptr && i < count; ++i) {
        if (IsLineCrossingRect(points[i - 1], points[i], rect))
            return true;
    }
    return false;
}

bool CrkMathUtilities::IsRightAngleLineCrossingRect(CrkFloatPoint start, CrkFloatPoint end, CrkFloatRect rect) noexcept
{
    const rk::RectBounds bounds(rect);
    const auto [lowX, highX] = std::minmax(start.x, end.x);
    const auto [lowY, highY] = std::minmax(start.y, end.y);
    if (highY - lowY < rk::kAxisTolerance)
        return rect.y <= lowY && lowY <= bounds.maxY && bounds.maxX > lowX && highX > rect.x;
    if (highX - lowX < rk::kAxisTolerance)
        return rect.x <= lowX && lowX <= bounds.maxX && bounds.maxY > lowY && highY > rect.y;
    return false;
}
