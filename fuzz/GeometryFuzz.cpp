// On any floats: what is computed for x and y at once agrees with the plain steps, and results stay where their headers say.
#include "fuzz/Require.h"
#include "tests/geometry/Agreement.h"

#include <cstdint>
#include <cstring>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using Math = CrkMathUtilities;
    std::vector<CrkFloatPoint> points(std::max<std::size_t>(size / sizeof(CrkFloatPoint), 7));
    std::memcpy(static_cast<void*>(points.data()), data, size / sizeof(CrkFloatPoint) * sizeof(CrkFloatPoint));
    const int count = static_cast<int>(points.size());
    const CrkFloatPoint p = points[0], q = points[1], f = points[4], g = points[5], h = points[6];
    Require(plain::AgreesOn({p, q, points[2], points[3]}, {f.x, f.y, g.x, g.y, h.x, h.y}));
    Require(plain::SameRect(Math::CalculatePointsBoundingRectangle(points.data(), count),
                            plain::BoundsOf(points.data(), count)));

    const double value = double{p.x} * q.x;
    Require(std::fabs(Math::RoundToNearestInt(value) - value) <= 0.5 || !(std::fabs(value) < 2147483647));
    Require(!Math::IsPointOnLine(p, q, f, -1) && !Math::IsPointOnPolyline(p, &q, 1, f.x));
    const CrkFloatRect r{f.x, f.y, std::fabs(g.x), std::fabs(g.y)};
    if (p == p && !std::isnan(r.MaxX()) && !std::isnan(r.MaxY())) {
        Require(Math::IsPointInRect(Math::ClampPoint(p, r), r));
        Require(Math::GetEllipseEdgePoint(r, {0, 0}, p, h.x) == p);
        Require(Math::GetRectangleEdgePoint(CrkFloatRect::Null(), q, p, h.x) == p);
    }
    Math::GetPolylineMidpoint(points.data(), count);
    return 0;
}
