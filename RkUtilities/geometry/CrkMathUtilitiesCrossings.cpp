#include "RkUtilities/geometry/CrkMathUtilities.h"

#include <algorithm>

using rk::FloatLanes;

bool CrkMathUtilities::IsLineCrossingLine(const CrkFloatPoint& firstStart, const CrkFloatPoint& firstEnd,
                                          const CrkFloatPoint& secondStart, const CrkFloatPoint& secondEnd) noexcept
{
    // The lanes hold x and y of the first segment, then of the second.
    const FloatLanes starts = rk::LoadLanes(&firstStart, &secondStart), ends = rk::LoadLanes(&firstEnd, &secondEnd);
    const FloatLanes low = rk::Smaller(starts, ends), high = rk::Larger(starts, ends);
    const bool isFirstVertical = firstStart.x == firstEnd.x, isSecondVertical = secondStart.x == secondEnd.x;
    // Most segments of a map lie apart: they are told before the divisions.
    if (rk::HoldsInAnyLane(low > __builtin_shufflevector(high, high, 2, 3, 0, 1)))
        return isFirstVertical && isSecondVertical && firstStart.x == secondStart.x;

    // The slope and intercept of each segment stand in its x lane. Those of a vertical one mean nothing and are not
    // looked at.
    const FloatLanes delta = ends - starts;
    const FloatLanes slopes =
        __builtin_shufflevector(delta, delta, 1, 1, 3, 3) / __builtin_shufflevector(delta, delta, 0, 0, 2, 2);
    const FloatLanes intercepts = __builtin_shufflevector(starts, starts, 1, 1, 3, 3) - starts * slopes;
    float x = firstStart.x, y = 0;
    if (isFirstVertical) {
        if (isSecondVertical)
            return x == secondStart.x;
        y = slopes[2] * x + intercepts[2];
    } else {
        x = isSecondVertical ? secondStart.x : (intercepts[2] - intercepts[0]) / (slopes[0] - slopes[2]);
        y = slopes[0] * x + intercepts[0];
    }

    const FloatLanes crossing{x, y, x, y};
    // A start that is not a number is a bound that holds nothing; an end that is none must be looked for.
    const auto isInRange = (low <= crossing) & (crossing <= high) & (ends == ends);
    return rk::HoldsInLanes0And1(isInRange & __builtin_shufflevector(isInRange, isInRange, 2, 3, 2, 3));
}

bool CrkMathUtilities::IsLineCrossingRect(const CrkFloatPoint& lineStart, const CrkFloatPoint& lineEnd,
                                          const CrkFloatRect& rectangle) noexcept
{
    const float left = rectangle.MinX(), top = rectangle.MinY(), right = rectangle.MaxX(), bottom = rectangle.MaxY();
    // Most lines of a map lie clear of the rectangle, and a crossing point is within the bounds of both. Above and
    // below it, a vertical line in line with a side still counts.
    if (std::max(lineStart.x, lineEnd.x) < left || std::min(lineStart.x, lineEnd.x) > right)
        return false;
    if (lineStart.x != lineEnd.x &&
        (std::max(lineStart.y, lineEnd.y) < top || std::min(lineStart.y, lineEnd.y) > bottom))
        return false;

    const CrkFloatPoint topLeft{left, top}, topRight{right, top}, bottomRight{right, bottom}, bottomLeft{left, bottom};
    return IsPointInRect(lineStart, rectangle) || IsPointInRect(lineEnd, rectangle) ||
           IsLineCrossingLine(topLeft, topRight, lineStart, lineEnd) ||
           IsLineCrossingLine(topRight, bottomRight, lineStart, lineEnd) ||
           IsLineCrossingLine(bottomRight, bottomLeft, lineStart, lineEnd) ||
           IsLineCrossingLine(bottomLeft, topLeft, lineStart, lineEnd);
}

bool CrkMathUtilities::IsRightAngleLineCrossingRect(CrkFloatPoint lineStart, CrkFloatPoint lineEnd,
                                                    CrkFloatRect rectangle) noexcept
{
    constexpr float kAxisTolerance = 0x1p-23f;
    const auto [lowX, highX] = std::minmax(lineStart.x, lineEnd.x);
    const auto [lowY, highY] = std::minmax(lineStart.y, lineEnd.y);
    if (highY - lowY < kAxisTolerance)
        return rectangle.y <= lowY && lowY <= rectangle.MaxY() && rectangle.MaxX() > lowX && highX > rectangle.x;
    if (highX - lowX < kAxisTolerance)
        return rectangle.x <= lowX && lowX <= rectangle.MaxX() && rectangle.MaxY() > lowY && highY > rectangle.y;
    return false;
}
