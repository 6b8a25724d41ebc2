#include "RkUtilities/geometry/CrkMathUtilities.h"

#include <algorithm>

bool CrkMathUtilities::IsCrossingWithinBounds(rk::FloatPair start, rk::FloatPair end, rk::FloatPair otherStart,
                                              rk::FloatPair otherEnd) noexcept {
    const bool isVertical = start[0] == end[0], isOtherVertical = otherStart[0] == otherEnd[0];
    if (isVertical && isOtherVertical)
        return start[0] == otherStart[0];
    // The slope and the intercept of a vertical segment mean nothing and are not looked at.
    const rk::FloatPair delta = end - start, otherDelta = otherEnd - otherStart;
    const float slope = delta[1] / delta[0], otherSlope = otherDelta[1] / otherDelta[0];
    const float intercept = start[1] - start[0] * slope, otherIntercept = otherStart[1] - otherStart[0] * otherSlope;
    const float x = isVertical        ? start[0]
                    : isOtherVertical ? otherStart[0]
                                      : (otherIntercept - intercept) / (slope - otherSlope);
    const float y = isVertical ? otherSlope * x + otherIntercept : slope * x + intercept;

    // A start that is not a number stays the lower bound, an end the upper bound: no crossing is between them then.
    const rk::FloatPair crossing{x, y};
    const auto isInBoth = (rk::Smaller(start, end) <= crossing) & (crossing <= rk::Larger(end, start)) &
                          (rk::Smaller(otherStart, otherEnd) <= crossing) &
                          (crossing <= rk::Larger(otherEnd, otherStart));
    return rk::HoldsForBoth(isInBoth);
}

bool CrkMathUtilities::IsLineCrossingRect(const CrkFloatPoint& lineStart, const CrkFloatPoint& lineEnd,
                                          const CrkFloatRect& rectangle) noexcept {
    const float left = rectangle.MinX(), top = rectangle.MinY(), right = rectangle.MaxX(), bottom = rectangle.MaxY();
    // Most lines of a mind map lie clear of the rectangle, and a crossing point is within the bounds of line and
    // rectangle. A vertical line in line with a side counts above and below the rectangle too.
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
                                                    CrkFloatRect rectangle) noexcept {
    constexpr float kAxisTolerance = 0x1p-23f;
    const auto [lowX, highX] = std::minmax(lineStart.x, lineEnd.x);
    const auto [lowY, highY] = std::minmax(lineStart.y, lineEnd.y);
    if (highY - lowY < kAxisTolerance)
        return rectangle.y <= lowY && lowY <= rectangle.MaxY() && rectangle.MaxX() > lowX && highX > rectangle.x;
    if (highX - lowX < kAxisTolerance)
        return rectangle.x <= lowX && lowX <= rectangle.MaxX() && rectangle.MaxY() > lowY && highY > rectangle.y;
    return false;
}
