#include "RkUtilities/geometry/CrkMathUtilities.h"

namespace {

constexpr float kAxisTolerance = 0x1p-23f;

bool Coincide(const CrkFloatPoint& a, const CrkFloatPoint& b) {
    return std::fabs(a.x - b.x) < kAxisTolerance && std::fabs(a.y - b.y) < kAxisTolerance;
}

/// Whether a test holds for a segment between neighbours.
template <class Test> bool AnySegment(const CrkFloatPoint* points, int count, const Test& test) {
    for (int i = 1; points && i < count; ++i) {
        if (test(points[i - 1], points[i]))
            return true;
    }
    return false;
}

}  // namespace

CrkFloatPoint CrkMathUtilities::ClampPoint(const CrkFloatPoint& point, const CrkFloatRect& rectangle) noexcept {
    const auto clamp = [](float value, float low, float high) {
        return value < low ? low : value > high ? high : value;
    };
    return {clamp(point.x, rectangle.MinX(), rectangle.MaxX()), clamp(point.y, rectangle.MinY(), rectangle.MaxY())};
}

float CrkMathUtilities::CalculateDistanceToLine(const CrkFloatPoint& point, const CrkFloatPoint& lineStart,
                                                const CrkFloatPoint& lineEnd) noexcept {
    if (lineStart == lineEnd)
        return Length(point, lineStart);
    const CrkFloatPoint d{lineEnd.x - lineStart.x, lineEnd.y - lineStart.y};
    const CrkFloatPoint v{point.x - lineStart.x, point.y - lineStart.y};
    const float t = (d.x * v.x + v.y * d.y) / (d.x * d.x + d.y * d.y);
    const CrkFloatPoint e{v.x - t * d.x, v.y - t * d.y};
    return std::sqrt(e.x * e.x + e.y * e.y);
}

bool CrkMathUtilities::IsPointOnLine(const CrkFloatPoint& point, const CrkFloatPoint& lineStart,
                                     const CrkFloatPoint& lineEnd, float tolerance) noexcept {
    if (tolerance < 0)
        return false;
    const CrkFloatRect box{lineStart.x < lineEnd.x ? lineStart.x : lineEnd.x,
                           lineStart.y < lineEnd.y ? lineStart.y : lineEnd.y, std::fabs(lineStart.x - lineEnd.x),
                           std::fabs(lineStart.y - lineEnd.y)};
    return IsPointInRect(point, box.Inflated(tolerance, tolerance)) &&
           !(CalculateDistanceToLine(point, lineStart, lineEnd) > tolerance);
}

bool CrkMathUtilities::IsPointOnPolyline(const CrkFloatPoint& point, const CrkFloatPoint* points, int count,
                                         float tolerance) noexcept {
    return AnySegment(points, count, [&](const CrkFloatPoint& start, const CrkFloatPoint& end) {
        return IsPointOnLine(point, start, end, tolerance);
    });
}

float CrkMathUtilities::IsPointAboveLine(const CrkFloatPoint& point, const CrkFloatPoint& lineStart,
                                         const CrkFloatPoint& lineEnd) noexcept {
    if (Coincide(point, lineStart) || Coincide(point, lineEnd))
        return 0;
    const float width = lineEnd.x - lineStart.x, rise = lineStart.y - lineEnd.y;
    if (std::fabs(width) < kAxisTolerance)
        return point.x - lineStart.x;
    if (std::fabs(rise) < kAxisTolerance)
        return lineStart.y - point.y;
    return width * (lineStart.y - point.y) - rise * (point.x - lineStart.x);
}

CrkFloatPoint CrkMathUtilities::GetPolylineMidpoint(const CrkFloatPoint* points, int count) noexcept {
    if (!points)
        return {};
    float total = 0;
    for (int i = 1; i < count; ++i)
        total += Length(points[i - 1], points[i]);

    const float half = total * 0.5f;
    float before = 0;
    for (int i = 1; i < count; ++i) {
        const CrkFloatPoint &start = points[i - 1], &end = points[i];
        const float length = Length(start, end);
        if (before + length > half) {
            const float f = (half - before) / length;
            return {start.x + f * (end.x - start.x), start.y + f * (end.y - start.y)};
        }
        before += length;
    }
    return {};
}

bool CrkMathUtilities::IsPolylineCrossingRect(const CrkFloatPoint* points, int count,
                                              const CrkFloatRect& rectangle) noexcept {
    return AnySegment(points, count, [&](const CrkFloatPoint& start, const CrkFloatPoint& end) {
        return IsLineCrossingRect(start, end, rectangle);
    });
}
