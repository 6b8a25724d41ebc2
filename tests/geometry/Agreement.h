#pragma once

#include "benchmarks/PlainGeometry.h"

#include <array>
#include <cmath>

inline constexpr float kInfinity = INFINITY, kNan = NAN;

namespace plain {

/// Equal, or both not a number, in every field.
inline bool SameRect(const CrkFloatRect& a, const CrkFloatRect& b)
{
    const auto same = [](float f, float g) { return f == g || (std::isnan(f) && std::isnan(g)); };
    return same(a.x, b.x) && same(a.y, b.y) && same(a.width, b.width) && same(a.height, b.height);
}

/// Whether the library agrees on four points, as two lines or two rectangles too, and a transform.
inline bool AgreesOn(const std::array<CrkFloatPoint, 4>& p, const CGAffineTransform& transform)
{
    const CrkFloatRect a{p[0].x, p[0].y, p[1].x, p[1].y}, b{p[2].x, p[2].y, p[3].x, p[3].y};
    const bool hasNan = std::isnan(a.MaxX()) || std::isnan(a.MaxY()) || std::isnan(b.MaxX()) || std::isnan(b.MaxY());
    CrkFloatRect expected, result = a;
    const bool meet = Intersect(expected, a, b);
    return CrkFloatRect::Intersect(result, result, b) == (meet && !hasNan) && (hasNan || SameRect(result, expected)) &&
           CrkMathUtilities::IsLineCrossingLine(p[0], p[1], p[2], p[3]) == IsLineCrossingLine(p[0], p[1], p[2], p[3]) &&
           CrkMathUtilities::IsLineCrossingRect(p[0], p[1], b) == IsLineCrossingRect(p[0], p[1], b) &&
           SameRect(CrkMathUtilities::CalculatePointsBoundingRectangle(p.data(), 4), BoundsOf(p.data(), 4)) &&
           (CGAffineTransformIsIdentity(transform) ||
            SameRect(CrkMathUtilities::CalculateTransformedRectBoundingRectangle(a, transform),
                     TransformedBounds(a, transform)));
}

}  // namespace plain
