#pragma once

#include "RkUtilities/geometry/CrkMathUtilities.h"

#include <algorithm>

/// What the library computes for x and y at once or rejects early, written down step by step: the alternatives that
/// the benchmarks race, and what the tests and the fuzzer compare with.
namespace plain {

inline bool Intersect(CrkFloatRect& result, const CrkFloatRect& a, const CrkFloatRect& b) {
    const float left = std::max(a.MinX(), b.MinX()), top = std::max(a.MinY(), b.MinY());
    result = {left, top, std::min(a.MaxX(), b.MaxX()) - left, std::min(a.MaxY(), b.MaxY()) - top};
    return result.width > 0 && result.height > 0;
}

inline bool IsLineCrossingLine(const CrkFloatPoint& a0, const CrkFloatPoint& a1, const CrkFloatPoint& b0,
                               const CrkFloatPoint& b1) {
    if (a0.x == a1.x && b0.x == b1.x)
        return a0.x == b0.x;
    const float slopeA = (a1.y - a0.y) / (a1.x - a0.x), interceptA = a0.y - a0.x * slopeA;
    const float slopeB = (b1.y - b0.y) / (b1.x - b0.x), interceptB = b0.y - b0.x * slopeB;
    const float slantedX = (interceptB - interceptA) / (slopeA - slopeB);
    const float x = a0.x == a1.x ? a0.x : b0.x == b1.x ? b0.x : slantedX;
    const float y = a0.x == a1.x ? slopeB * x + interceptB : slopeA * x + interceptA;
    const auto between = [](float f, float a, float b) { return (a <= f && f <= b) || (b <= f && f <= a); };
    return between(x, a0.x, a1.x) && between(y, a0.y, a1.y) && between(x, b0.x, b1.x) && between(y, b0.y, b1.y);
}

inline bool IsLineCrossingRect(const CrkFloatPoint& start, const CrkFloatPoint& end, const CrkFloatRect& r) {
    const CrkFloatPoint leftTop{r.MinX(), r.MinY()}, rightBottom{r.MaxX(), r.MaxY()};
    const CrkFloatPoint rightTop{r.MaxX(), r.MinY()}, leftBottom{r.MinX(), r.MaxY()};
    return CrkMathUtilities::IsPointInRect(start, r) || CrkMathUtilities::IsPointInRect(end, r) ||
           IsLineCrossingLine(leftTop, rightTop, start, end) || IsLineCrossingLine(rightTop, rightBottom, start, end) ||
           IsLineCrossingLine(rightBottom, leftBottom, start, end) ||
           IsLineCrossingLine(leftBottom, leftTop, start, end);
}

inline CrkFloatRect BoundsOf(const CrkFloatPoint* points, int count) {
    CrkFloatPoint low = *points, high = *points;
    for (int i = 1; i < count; ++i) {
        low = {points[i].x < low.x ? points[i].x : low.x, points[i].y < low.y ? points[i].y : low.y};
        high = {points[i].x > high.x ? points[i].x : high.x, points[i].y > high.y ? points[i].y : high.y};
    }
    return count == 1 ? CrkFloatRect{low.x, low.y, 0, 0} : CrkFloatRect{low.x, low.y, high.x - low.x, high.y - low.y};
}

inline CrkFloatRect TransformedBounds(const CrkFloatRect& r, const CGAffineTransform& t) {
    const auto mapped = [&t](double x, double y) {
        return CrkFloatPoint{static_cast<float>(t.a * x + t.c * y + t.tx),
                             static_cast<float>(t.b * x + t.d * y + t.ty)};
    };
    const CrkFloatPoint corners[] = {mapped(r.MinX(), r.MinY()), mapped(r.MaxX(), r.MinY()), mapped(r.MaxX(), r.MaxY()),
                                     mapped(r.MinX(), r.MaxY())};
    return BoundsOf(corners, 4);
}

}  // namespace plain
