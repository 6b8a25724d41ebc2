#include "RkUtilities/geometry/CrkMathUtilities.h"

#include <cstring>

namespace {

/// Two points at once: x, y, x, y.
using PointPair [[gnu::vector_size(16)]] = float;

PointPair LoadPair(const CrkFloatPoint* points) noexcept
{
    PointPair pair;
    std::memcpy(&pair, points, sizeof pair);
    return pair;
}

PointPair Smaller(PointPair candidate, PointPair known) noexcept
{
    return candidate < known ? candidate : known;
}

PointPair Larger(PointPair candidate, PointPair known) noexcept
{
    return candidate > known ? candidate : known;
}

}  // namespace

CrkFloatPoint CrkMathUtilities::ClampPoint(const CrkFloatPoint& point, const CrkFloatRect& rect) noexcept
{
    const rk::RectBounds bounds(rect);
    const auto clamp = [](float value, float low, float high) {
        if (value < low)
            return low;
        return value > high ? high : value;
    };
    return {clamp(point.x, bounds.minX, bounds.maxX), clamp(point.y, bounds.minY, bounds.maxY)};
}

bool CrkMathUtilities::IsPointInRect(const CrkFloatPoint& point, const CrkFloatRect& rect) noexcept
{
    return point.x >= rect.x && point.x <= rect.x + rect.width && point.y >= rect.y && point.y <= rect.y + rect.height;
}

CrkFloatRect CrkMathUtilities::CalculatePointsBoundingRectangle(const CrkFloatPoint* points, int count) noexcept
{
    if (points == nullptr || count <= 0)
        return {};
    // Each lane keeps its own extremes, all starting from the first point; a comparison with not-a-number changes none.
    constexpr int kAtOnce = 4;
    const PointPair first = {points[0].x, points[0].y, points[0].x, points[0].y};
    PointPair low[2] = {first, first};
    PointPair high[2] = {first, first};
    int i = 1;
    for (; i <= count - kAtOnce; i += kAtOnce) {
        for (int half = 0; half < 2; ++half) {
            const PointPair pair = LoadPair(points + i + 2 * half);
            low[half] = Smaller(pair, low[half]);
            high[half] = Larger(pair, high[half]);
        }
    }
    for (; i < count; ++i) {
        const PointPair pair = {points[i].x, points[i].y, points[i].x, points[i].y};
        low[0] = Smaller(pair, low[0]);
        high[0] = Larger(pair, high[0]);
    }
    const PointPair lowest = Smaller(low[1], low[0]);
    const PointPair highest = Larger(high[1], high[0]);
    const float minX = lowest[2] < lowest[0] ? lowest[2] : lowest[0];
    const float minY = lowest[3] < lowest[1] ? lowest[3] : lowest[1];
    const float maxX = highest[2] > highest[0] ? highest[2] : highest[0];
    const float maxY = highest[3] > highest[1] ? highest[3] : highest[1];
    return {minX, minY, maxX - minX, maxY - minY};
}

CrkFloatRect CrkMathUtilities::CalculateTransformedRectBoundingRectangle(const CrkFloatRect& rect,
                                                                         CGAffineTransform transform) noexcept
{
    if (transform == CGAffineTransform())
        return rect;
    const auto mapped = [&](float cornerX, float cornerY) {
        const auto x = static_cast<double>(cornerX);
        const auto y = static_cast<double>(cornerY);
        return CrkFloatPoint{static_cast<float>(transform.a * x + transform.c * y + transform.tx),
                             static_cast<float>(transform.b * x + transform.d * y + transform.ty)};
    };
    const rk::RectBounds bounds(rect);
    const CrkFloatPoint corners[] = {mapped(bounds.minX, bounds.minY), mapped(bounds.maxX, bounds.minY),
                                     mapped(bounds.maxX, bounds.maxY), mapped(bounds.minX, bounds.maxY)};
    return CalculatePointsBoundingRectangle(corners, 4);
}
