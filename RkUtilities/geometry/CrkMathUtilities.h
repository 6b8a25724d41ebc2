#pragma once

#include "RkUtilities/RkExport.h"
#include "RkUtilities/geometry/CGAffineTransform.h"
#include "RkUtilities/geometry/CrkFloatPoint.h"
#include "RkUtilities/geometry/CrkFloatRect.h"
#include "RkUtilities/geometry/CrkFloatSize.h"

#include <climits>
#include <cmath>
#include <numbers>
#include <span>

/// Geometry of shapes and lines: rounding, angles, rotation, edge points, hit tests, crossings, bounding boxes.
///
/// Coordinates are those of CrkFloatPoint: single precision, y down. An angle is in radians and double precision unless
/// a member says degrees; a direction's angle is clockwise on the screen from straight up: right is π/2, down is π.
///
/// A rectangle stands for its bounds, so a negative size counts as its mirror image, unless a member speaks of the raw
/// fields. Points go in as a `std::span` (a `CAtlArray`, a `std::vector`, an array), of which the first INT_MAX are
/// read, or as pointer and count, read from index 0; a count of 0 or less, or a null pointer, means no points.
///
/// No member throws or reports an error, and every argument is legal: infinities and not-a-numbers take the course of
/// IEEE 754 arithmetic and of comparisons that are false. A member whose result type cannot hold the value says what it
/// gives instead. Results are formed in the stated precision, without fused operations: they are the same on every
/// machine, except where the C library's sine, cosine and arc tangent differ. Safe from any thread; all members except
/// RandomInRange depend on their arguments alone.
class RK_EXPORT CrkMathUtilities {
public:
    static constexpr float Epsilon = 0.01f;  ///< A tolerance in drawing units for callers; no member uses it.

    static constexpr double Pi() noexcept { return std::numbers::pi; }  ///< π

    // --- Rounding

    /// The nearest whole number, halves away from zero: 2.5 gives 3, -2.5 gives -3, -0.4 gives 0.
    /// The sum value ± 0.5 is cut, so 0.49999999999999994, whose sum rounds to 1, gives 1. Values beyond int,
    /// infinities too, give INT_MAX or INT_MIN; not a number gives 0.
    static int RoundToNearestInt(double value) noexcept;

    /// The nearest multiple of `step`, halves away from zero: 7.4 by 5 gives 5, 7.5 gives 10, -7.5 gives -10.
    /// A negative step acts as its magnitude, 0 gives any value back; else an infinite value or step gives no number.
    static double RoundToNearest(double value, double step) noexcept;

    /// RoundToNearest for an angle and a step in the same unit, degrees or radians.
    static double SnapAngle(double angle, double step) noexcept { return RoundToNearest(angle, step); }

    // --- Comparison

    /// Whether |a - b| is strictly less than a tolerance: 2^-23 for floats, 2^-51 for doubles, or the given tolerance.
    /// The tolerance is absolute, so neighbouring floats from 1 on are different. A tolerance of 0 always gives false;
    /// so do an argument that is not a number and two equal infinities.
    static bool FloatsEqual(float a, float b) noexcept { return FloatsEqual(a, b, 0x1p-23f); }
    /// With a tolerance.
    static bool FloatsEqual(float a, float b, float tolerance) noexcept { return std::fabs(a - b) < tolerance; }
    static bool FloatsEqual(double a, double b) noexcept { return FloatsEqual(a, b, 0x1p-51); }  ///< For doubles.
    /// For doubles with a tolerance.
    static bool FloatsEqual(double a, double b, double tolerance) noexcept { return std::fabs(a - b) < tolerance; }

    /// Whether the width grew at least as much as the height, or shrank at most as much: from (100, 100) to (130, 120),
    /// (90, 80) or (120, 90). False when the sizes are equal or a field is not a number.
    static bool WidthChangedMore(const CrkFloatSize& oldSize, const CrkFloatSize& newSize) noexcept;

    // --- Angles

    /// angle · 180 / π
    static constexpr double RadiansToDegrees(double angle) noexcept { return angle * 180.0 / Pi(); }
    /// angle · π / 180
    static constexpr double DegreesToRadians(double angle) noexcept { return angle * Pi() / 180.0; }

    /// The angle of the direction (x, y), clockwise from straight up; its length does not matter.
    ///
    ///     right (1, 0)  ->  π/2         up and right    ->  between 0 and π/2
    ///     down (0, 1)   ->  π           down and right  ->  between π/2 and π
    ///     up (0, -1)    ->  2π          down and left   ->  between π and 3π/2
    ///     left (-1, 0)  ->  7π/2        up and left     ->  between 3π/2 and 2π
    ///     (0, 0)        ->  5π/2
    ///
    /// A full turn is added where neither coordinate is above 0: in the upper left quadrant and on its two axes. Left
    /// with a y of -0 and (-0, -0) give 3π/2, (-0, 0) gives 7π/2. NormalizeAngle(angle, 0, 2π) leaves one value for a
    /// direction. The arc tangent is single precision: good to about 1e-7, and as far outside its range at most.
    static double CalculateAngle(float x, float y) noexcept;
    /// The angle of the direction (x, y) of a point.
    static double CalculateAngle(const CrkFloatPoint& direction) noexcept {
        return CalculateAngle(direction.x, direction.y);
    }

    /// The clockwise angle at `centre` from `from` to `to`: a quarter turn from right to down. Good to about 1e-6, but
    /// equal rays may give 2π instead of 0, three quarters of a turn 7π/2; a `to` at the centre gives 5π/2.
    static double CalculateAngle(const CrkFloatPoint& from, const CrkFloatPoint& to, CrkFloatPoint centre) noexcept;

    /// The value in [low, high) that differs from `angle` by a multiple of high - low: by (0, 360), 360 gives 0, -1
    /// gives 359. Rounding may give `high` itself or a value just outside; low = high gives not a number.
    static double NormalizeAngle(double angle, double low, double high) noexcept;

    // --- Rotation about a centre, by degrees clockwise on the screen
    // (1, 0) turned by 90 about (0, 0) becomes (0, 1) up to rounding.

    /// Turns a point in single precision.
    static void RotatePoint(CrkFloatPoint* point, float degrees, CrkFloatPoint centre) noexcept;

    /// Turns each point in double precision, narrowed at the end: some last bits are more exact than RotatePoint's.
    static void RotatePointsAt(CrkFloatPoint* points, int count, float degrees, CrkFloatPoint centre) noexcept;
    /// The same for a span.
    static void RotatePointsAt(std::span<CrkFloatPoint> points, float degrees, CrkFloatPoint centre) noexcept {
        RotatePointsAt(points.data(), CountOf(points), degrees, centre);
    }
    /// `RotatePointsAt` for one point.
    static void RotatePointAt(CrkFloatPoint* point, float degrees, CrkFloatPoint centre) noexcept {
        RotatePointsAt(point, 1, degrees, centre);
    }

    // --- Lengths

    /// The distance of two points: their difference in single precision, its length in double, narrowed.
    static float Length(CrkFloatPoint a, CrkFloatPoint b) noexcept { return Length({b.x - a.x, b.y - a.y}); }
    /// The length of a vector, formed in double precision and narrowed.
    static float Length(CrkFloatPoint vector) noexcept {
        return static_cast<float>(Length(double{vector.x}, vector.y));
    }
    /// The square root of x² + y²; infinite from about 1e154 on, where the squares leave the range, and 0 below 1e-162.
    static double Length(double x, double y) noexcept;
    /// The length of a vector cut to a whole number: (3, 4) gives 5, (1, 1) gives 1.
    /// Exact for every argument, INT_MIN included; a length beyond INT_MAX gives INT_MAX.
    static int Length(int x, int y) noexcept;

    // --- Numbers

    /// A random number between `low` and `high`, both included; `high` itself comes about once in 2^31 draws. Computed
    /// as low + (high - low)·r / (2^31 - 1), cut toward low, from the next r of the C library's `random`, which the
    /// whole process shares and the library never seeds. The arguments may span all of int and stand in either order.
    static int RandomInRange(int low, int high) noexcept;

    /// The roots of a·x² + b·x + c = 0 in single precision, formed so that nearly equal numbers are not subtracted.
    /// The first root is (-b + s) / 2a, the second (-b - s) / 2a, s being the square root of b² - 4ac. Roots that are
    /// not real are not a number. With a = 0 the root -c/b comes first for b > 0, else second, and the other root is
    /// infinite or not a number. With b = c = 0 the first is 0, or not a number where a = 0 too, the second not a
    /// number. Writes nothing when either pointer is null.
    static void SolveQuadraticEquation(float a, float b, float c, float* firstRoot, float* secondRoot) noexcept;

    // --- Edge points
    // The result is where the ray from `origin` into `direction` (a vector, not a target) meets the
    // outline of a shape that was grown by `offset` on every side; a negative offset shrinks the shape. Without an
    // origin the ray starts at the middle of the rectangle. A shape that the offset shrinks away and
    // the null rectangle have no edge: the result is the origin.

    /// The edge point of a rectangle.
    /// An exactly horizontal or vertical direction gives the middle of that side, wherever the origin is; (0, 0) counts
    /// as down. A direction through a corner gives the corner. An origin on or outside the outline is treated like an
    /// origin inside: the result lies on the line through the origin, but need not lie on the rectangle.
    static CrkFloatPoint GetRectangleEdgePoint(CrkFloatRect rectangle, CrkFloatPoint direction, CrkFloatPoint origin,
                                               float offset) noexcept;
    /// From the rectangle's centre.
    static CrkFloatPoint GetRectangleEdgePoint(CrkFloatRect rectangle, CrkFloatPoint direction, float offset) noexcept;

    /// The edge point of the ellipse inscribed in a rectangle.
    /// The result is the origin where the ray meets no edge: when the origin lies on or outside the outline, when the
    /// direction is (0, 0), and when rectangle or origin are not finite. A ray from the centre always meets the edge,
    /// and so does a vertical ray from any point inside. A slanted ray from another point is followed for the length
    /// of its direction, or for half the shape's width and half its height if that is further; a ray that is still
    /// inside then counts as meeting no edge. A direction longer than the shape's diagonal always suffices. Single
    /// precision also loses slanted rays some hundred times steeper than wide, and directions below 1e-36.
    static CrkFloatPoint GetEllipseEdgePoint(CrkFloatRect rectangle, CrkFloatPoint direction, CrkFloatPoint origin,
                                             float offset) noexcept;
    /// From the rectangle's centre.
    static CrkFloatPoint GetEllipseEdgePoint(CrkFloatRect rectangle, CrkFloatPoint direction, float offset) noexcept;

    // --- Points and rectangles

    /// The point of the rectangle closest to `point`.
    static CrkFloatPoint ClampPoint(const CrkFloatPoint& point, const CrkFloatRect& rectangle) noexcept;

    /// Whether x <= point.x <= x + width and y <= point.y <= y + height, by the raw fields: true on all four edges,
    /// false for every point when the width or height is negative.
    static bool IsPointInRect(const CrkFloatPoint& point, const CrkFloatRect& rectangle) noexcept;

    // --- Points and lines: a tolerance is a distance in drawing units

    /// The distance to the infinite line through both points; the distance to the start when the points are equal.
    /// Single precision: for lines shorter than about 1e-22 or longer than about 1e19, whose squared length leaves the
    /// range of float, the result is another distance, infinite or not a number.
    static float CalculateDistanceToLine(const CrkFloatPoint& point, const CrkFloatPoint& lineStart,
                                         const CrkFloatPoint& lineEnd) noexcept;

    /// Whether the point lies in the bounding box of the segment grown by the tolerance, and no further than the
    /// tolerance from its line. Where CalculateDistanceToLine gives not a number, the box alone decides.
    /// So (12, 0) is on (0, 0)-(10, 0) with a tolerance of 2, not with 1. A negative tolerance and an infinite
    /// tolerance always give false.
    static bool IsPointOnLine(const CrkFloatPoint& point, const CrkFloatPoint& lineStart, const CrkFloatPoint& lineEnd,
                              float tolerance) noexcept;

    /// Whether IsPointOnLine holds for a segment between two neighbouring points; false for fewer than two points.
    static bool IsPointOnPolyline(const CrkFloatPoint& point, const CrkFloatPoint* points, int count,
                                  float tolerance) noexcept;
    /// The same for a span.
    static bool IsPointOnPolyline(const CrkFloatPoint& point, std::span<const CrkFloatPoint> points,
                                  float tolerance) noexcept {
        return IsPointOnPolyline(point, points.data(), CountOf(points), tolerance);
    }

    /// On which side of the line the point lies: a value above 0, 0, or below 0.
    /// "Above" and "right of" are the same value; "below" and "left of" are its negative. The value is positive for a
    /// point above a horizontal line or right of a vertical line, whichever way the line is drawn, and for a point
    /// above a slanted line that is drawn to the right; for a slanted line that is drawn to the left, the sign is
    /// reversed. The value is 0 for a point within 2^-23 of an end of the line in x and in y. Beside a horizontal or
    /// vertical line (ends less than 2^-23 apart in y or x) the value is the distance, elsewhere a multiple of it.
    static float IsPointAboveLine(const CrkFloatPoint& point, const CrkFloatPoint& lineStart,
                                  const CrkFloatPoint& lineEnd) noexcept;
    /// The value of `IsPointAboveLine`.
    static float IsPointRightOfLine(const CrkFloatPoint& point, const CrkFloatPoint& lineStart,
                                    const CrkFloatPoint& lineEnd) noexcept {
        return IsPointAboveLine(point, lineStart, lineEnd);
    }
    /// Its negative.
    static float IsPointBelowLine(const CrkFloatPoint& point, const CrkFloatPoint& lineStart,
                                  const CrkFloatPoint& lineEnd) noexcept {
        return -IsPointAboveLine(point, lineStart, lineEnd);
    }
    /// Its negative.
    static float IsPointLeftOfLine(const CrkFloatPoint& point, const CrkFloatPoint& lineStart,
                                   const CrkFloatPoint& lineEnd) noexcept {
        return -IsPointAboveLine(point, lineStart, lineEnd);
    }

    /// The point halfway along a polyline: (10, 0) for (0, 0), (10, 0), (10, 10).
    /// (0, 0) for fewer than two points, for points that are all equal, and for a polyline whose length is not finite.
    static CrkFloatPoint GetPolylineMidpoint(const CrkFloatPoint* points, int count) noexcept;
    /// The same for a span.
    static CrkFloatPoint GetPolylineMidpoint(std::span<const CrkFloatPoint> points) noexcept {
        return GetPolylineMidpoint(points.data(), CountOf(points));
    }

    // --- Crossings
    // Touching counts, unless a member says otherwise. Lines are segments from start to end.

    /// Whether two segments cross or touch.
    /// Vertical segments on the same x always cross, whatever their y extents; other parallel segments never cross, not
    /// even on the same line. The crossing point is formed in single precision, with the y of the first segment. So
    /// pass a horizontal segment first: as the second segment it is missed when the point rounds to another y.
    static bool IsLineCrossingLine(const CrkFloatPoint& firstStart, const CrkFloatPoint& firstEnd,
                                   const CrkFloatPoint& secondStart, const CrkFloatPoint& secondEnd) noexcept;

    /// Whether an end is inside the rectangle (by the raw fields) or the segment crosses a side by IsLineCrossingLine.
    /// Therefore a vertical segment exactly in line with the left or right side always crosses.
    static bool IsLineCrossingRect(const CrkFloatPoint& lineStart, const CrkFloatPoint& lineEnd,
                                   const CrkFloatRect& rectangle) noexcept;

    /// Whether IsLineCrossingRect holds for a segment between two neighbouring points; false for fewer than two points.
    static bool IsPolylineCrossingRect(const CrkFloatPoint* points, int count, const CrkFloatRect& rectangle) noexcept;
    /// The same for a span.
    static bool IsPolylineCrossingRect(std::span<const CrkFloatPoint> points, const CrkFloatRect& rectangle) noexcept {
        return IsPolylineCrossingRect(points.data(), CountOf(points), rectangle);
    }

    /// Whether a segment parallel to an axis crosses a rectangle; a slanted segment (by 2^-23 or more) never crosses.
    /// A segment along an edge crosses; a segment that only reaches a side with its end does not. The rectangle reaches
    /// from its raw origin to its MaxX and MaxY.
    static bool IsRightAngleLineCrossingRect(CrkFloatPoint lineStart, CrkFloatPoint lineEnd,
                                             CrkFloatRect rectangle) noexcept;

    // --- Bounding boxes

    /// The smallest rectangle around points: (-2, 0, 5, 4) for (3, 1), (-2, 4), (0, 0); all 0 for no points.
    /// A coordinate that is not a number is passed over, except in the first of several points, where it makes the
    /// bounds of its dimension not numbers. A single point has size 0. The sign of a bound that is 0 is unspecified.
    static CrkFloatRect CalculatePointsBoundingRectangle(const CrkFloatPoint* points, int count) noexcept;
    /// The same for a span.
    static CrkFloatRect CalculatePointsBoundingRectangle(std::span<const CrkFloatPoint> points) noexcept {
        return CalculatePointsBoundingRectangle(points.data(), CountOf(points));
    }

    /// The smallest rectangle around the four mapped corners of a rectangle.
    /// Each corner is mapped in double precision and narrowed; then CalculatePointsBoundingRectangle from (MinX, MinY)
    /// on. The identity gives the rectangle as it is, a negative size included.
    static CrkFloatRect CalculateTransformedRectBoundingRectangle(const CrkFloatRect& rectangle,
                                                                  const CGAffineTransform& transform) noexcept;

private:
    static constexpr int CountOf(std::span<const CrkFloatPoint> points) noexcept {
        return points.size() < INT_MAX ? static_cast<int>(points.size()) : INT_MAX;
    }

    /// IsLineCrossingLine of segments whose bounds meet.
    static bool IsCrossingWithinBounds(rk::FloatPair start, rk::FloatPair end, rk::FloatPair otherStart,
                                       rk::FloatPair otherEnd) noexcept;
};

inline int CrkMathUtilities::RoundToNearestInt(double value) noexcept {
    const double sum = value + std::copysign(0.5, value);
    if (sum > -2147483649.0 && sum < 2147483648.0)
        return static_cast<int>(sum);
    return sum > 0 ? INT_MAX : sum < 0 ? INT_MIN : 0;
}

inline bool CrkMathUtilities::IsLineCrossingLine(const CrkFloatPoint& firstStart, const CrkFloatPoint& firstEnd,
                                                 const CrkFloatPoint& secondStart,
                                                 const CrkFloatPoint& secondEnd) noexcept {
    // Most segments of a mind map lie apart. Such segments are told here, before any arithmetic and without a call.
    using rk::FloatPair, rk::LoadPair, rk::Smaller, rk::Larger;
    const FloatPair start = LoadPair(&firstStart.x), end = LoadPair(&firstEnd.x);
    const FloatPair otherStart = LoadPair(&secondStart.x), otherEnd = LoadPair(&secondEnd.x);
    const auto isApart =
        (Larger(start, end) < Smaller(otherStart, otherEnd)) | (Larger(otherStart, otherEnd) < Smaller(start, end));
    if (rk::HoldsForEither(isApart))
        return firstStart.x == firstEnd.x && secondStart.x == secondEnd.x && firstStart.x == secondStart.x;
    return IsCrossingWithinBounds(start, end, otherStart, otherEnd);
}

inline bool CrkMathUtilities::IsPointInRect(const CrkFloatPoint& point, const CrkFloatRect& rectangle) noexcept {
    return rectangle.x <= point.x && point.x <= rectangle.x + rectangle.width && rectangle.y <= point.y &&
           point.y <= rectangle.y + rectangle.height;
}
