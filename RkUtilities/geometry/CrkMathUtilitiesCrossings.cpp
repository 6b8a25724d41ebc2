#include "RkUtilities/geometry/CrkMathUtilities.h"

#include <algorithm>

using rk::FloatLanes;

bool CrkMathUtilities::IsCrossingWithinBounds(FloatLanes starts, FloatLanes ends) noexcept
{
    // The slope and intercept of each segment stand in its x lane. Those of a vertical one mean nothing and are not
    // looked at.
    const FloatLanes delta = ends - starts;
    const FloatLanes slopes =
        __builtin_shufflevector(delta, delta, 1, 1, 3, 3) / __builtin_shufflevector(delta, delta, 0, 0, 2, 2);
    const FloatLanes intercepts = __builtin_shufflevector(starts, starts, 1, 1, 3, 3) - starts * slopes;
    const bool isFirstVertical = starts[0] == ends[0], isSecondVertical = starts[2] == ends[2];
    float x = starts[0], y = 0;
    if (isFirstVertical) {
        if (isSecondVertical)
            return x == starts[2];
        y = slopes[2] * x + intercepts[2];
    } else {
        x = isSecondVertical ? starts[2] : (intercepts[2] - intercepts[0]) / (slopes[0] - slopes[2]);
        y = slopes[0] * x + intercepts[0];
    }

    // A start that is not a number stays in the lower bound, an end in the upper one: nothing is in such a range.
    const FloatLanes crossing{x, y, x, y}, low = rk::Smaller(starts, ends), high = rk::Larger(ends, starts);
    const auto isInRange = (low <= crossing) & (crossing <= high);
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
