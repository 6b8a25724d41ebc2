#pragma once

#include "RkUtilities/foundation/RkExport.h"
#include "RkUtilities/geometry/CGAffineTransform.h"
#include "RkUtilities/geometry/CrkFloatPoint.h"
#include "RkUtilities/geometry/CrkFloatRect.h"
#include "RkUtilities/geometry/CrkFloatSize.h"

/// Geometry of shapes and of the lines that connect them, in the drawing plane: x to the right, y downwards.
///
/// - Angles are radians unless a name says degrees. The angle of a direction is measured clockwise on the screen from
///   straight up: right is π/2, down is π.
/// - Results follow IEEE 754 in the precision of their types: what the inputs make infinite or not-a-number comes out
/// so,
///   or as false where a comparison decides; nothing is reported and nothing throws. Conversions to `int` are always
///   defined: see the members.
/// - A rectangle's sides are its bounds (`rk::RectBounds`): a negative size counts as its mirror image. "Inside by the
///   stored fields" means x <= point.x <= x + width and the same in y, so nothing is inside a negative size.
/// - A direction is a vector, not a target; its length does not matter. A tolerance is a distance in drawing units. A
/// null
///   pointer or a count of 0 or less is no points at all.
/// - Everything is a pure function but `RandomInRange`; all of it is safe from any thread.
class RK_EXPORT CrkMathUtilities {
public:
    /// A tolerance for callers' own geometry; the members do not use it.
    static constexpr float Epsilon = 0.01F;

    // --- Numbers
    // ----------------------------------------------------------------------------------------------------------

    static constexpr double Pi() noexcept { return 3.141592653589793; }

    /// The nearest integer, halves away from zero: 2.5 gives 3, -2.5 gives -3. Beyond `int` its nearest value; 0 for
    /// not-a-number.
    static int RoundToNearestInt(double value) noexcept;
    /// The nearest multiple of |step|, halves away from zero: 7.5 with 5 gives 10. The value itself for a step of 0;
    /// not-a-number for an infinite value or step.
    static double RoundToNearest(double value, double step) noexcept;
    static double SnapAngle(double angle, double step) noexcept;

    /// Whether the numbers differ by less than the tolerance (2^-23 for floats, 2^-51 for doubles unless given). False
    /// for not-a-number, for two equal infinities and for a tolerance of 0.
    static bool FloatsEqual(float a, float b) noexcept;
    static bool FloatsEqual(float a, float b, float tolerance) noexcept;
    static bool FloatsEqual(double a, double b) noexcept;
    static bool FloatsEqual(double a, double b, double tolerance) noexcept;

    /// A number from `low` to `high`, both included, from C's process-wide generator (`random`), which is never seeded
    /// here. `high` itself comes once in 2^31 draws. With `high` below `low` the bounds change places.
    static int RandomInRange(int low, int high) noexcept;

    /// The real roots of a·x² + b·x + c = 0, without cancellation: (-b + √(b² - 4ac)) / 2a first, then the other.
    /// Single precision. Not-a-number for a negative discriminant; for a = 0 one root is -c/b, the other infinite or
    /// not-a-number. Nothing is written when a pointer is null.
    static void SolveQuadraticEquation(const float& a, const float& b, const float& c, float* firstRoot,
                                       float* secondRoot) noexcept;

    // --- Lengths
    // ----------------------------------------------------------------------------------------------------------

    /// The distance of two points; the length of a vector.
    static float Length(CrkFloatPoint a, CrkFloatPoint b) noexcept;
    static float Length(CrkFloatPoint vector) noexcept;
    static double Length(double x, double y) noexcept;
    /// Cut to an integer: (1, 1) gives 1. Right for all of `int`; INT_MAX where the length is larger.
    static int Length(int x, int y) noexcept;

    /// Whether the width changed more than the height: it grew more, or shrank less. On a tie of two changes of the
    /// same direction true; false when nothing changed, or when only one of both grew and that was the height.
    static bool WidthChangedMore(const CrkFloatSize& oldSize, const CrkFloatSize& newSize) noexcept;

    // --- Angles
    // -----------------------------------------------------------------------------------------------------------

    static double RadiansToDegrees(double angle) noexcept;
    static double DegreesToRadians(double angle) noexcept;

    /// The angle of a direction, between 0 and 2π. On the axes that border the upper left quadrant it is 2π for
    /// straight up, 7π/2 for left with y = +0, 3π/2 for left with y = -0, and 5π/2 for (0, 0).
    static double CalculateAngle(float x, float y) noexcept;
    static double CalculateAngle(const CrkFloatPoint& direction) noexcept;
    /// The clockwise angle at `centre` from the ray towards `from` to the ray towards `to`.
    static double CalculateAngle(const CrkFloatPoint& from, const CrkFloatPoint& to, CrkFloatPoint centre) noexcept;
    /// The angle moved by whole ranges into [low, high). Not-a-number when `high` equals `low`.
    static double NormalizeAngle(double angle, double low, double high) noexcept;

    /// Turns a point about `centre`, clockwise on the screen for positive degrees; in single precision.
    static void RotatePoint(CrkFloatPoint* point, float degrees, CrkFloatPoint centre) noexcept;
    /// The same in double precision, for one and for many points; may differ from `RotatePoint` in the last bit.
    static void RotatePointAt(CrkFloatPoint* point, float degrees, CrkFloatPoint centre) noexcept;
    static void RotatePointsAt(CrkFloatPoint* points, int count, float degrees, CrkFloatPoint centre) noexcept;

    // --- Edges of shapes
    // ----------------------------------------------------------------------------------------------------

    /// Where a ray from `origin` (without one, from the rectangle's centre) meets the rectangle, which is first grown
    /// by `offset` on each side (shrunk when negative).
    ///
    /// A ray exactly along an axis ends in the middle of the side, wherever the origin; (0, 0) counts as downwards.
    /// From an origin on or outside the rectangle the result need not lie on it. The origin itself when nothing is left
    /// of the rectangle.
    static CrkFloatPoint GetRectangleEdgePoint(CrkFloatRect rect, CrkFloatPoint direction, CrkFloatPoint origin,
                                               float offset) noexcept;
    static CrkFloatPoint GetRectangleEdgePoint(CrkFloatRect rect, CrkFloatPoint direction, float offset) noexcept;
    /// Where the ray meets the ellipse inscribed in the rectangle, grown by `offset`. The origin itself for an origin
    /// on or outside the ellipse, for the direction (0, 0) and when nothing is left of the ellipse.
    static CrkFloatPoint GetEllipseEdgePoint(CrkFloatRect rect, CrkFloatPoint direction, CrkFloatPoint origin,
                                             float offset) noexcept;
    static CrkFloatPoint GetEllipseEdgePoint(CrkFloatRect rect, CrkFloatPoint direction, float offset) noexcept;

    // --- Points and rectangles
    // ----------------------------------------------------------------------------------------------

    /// The point of the rectangle nearest to `point`.
    static CrkFloatPoint ClampPoint(const CrkFloatPoint& point, const CrkFloatRect& rect) noexcept;
    /// Whether the point is inside by the stored fields, edges included.
    static bool IsPointInRect(const CrkFloatPoint& point, const CrkFloatRect& rect) noexcept;
    /// The smallest rectangle around the points; (0, 0, 0, 0) for none. A coordinate that is not-a-number is passed
    /// over unless the first point has it.
    static CrkFloatRect CalculatePointsBoundingRectangle(const CrkFloatPoint* points, int count) noexcept;
    /// The smallest rectangle around the transformed corners; with the identity, the rectangle as it is stored.
    static CrkFloatRect CalculateTransformedRectBoundingRectangle(const CrkFloatRect& rect,
                                                                  CGAffineTransform transform) noexcept;

    // --- Points and lines
    // -----------------------------------------------------------------------------------------------------

    /// The distance to the endless line through two points; to the point itself when both are equal.
    static float CalculateDistanceToLine(const CrkFloatPoint& point, const CrkFloatPoint& start,
                                         const CrkFloatPoint& end) noexcept;
    /// Whether the point lies within `tolerance` of the line between two points / of one of a polyline's segments. Ends
    /// are square: the box around the segment grows by the tolerance. Never with a negative tolerance.
    static bool IsPointOnLine(const CrkFloatPoint& point, const CrkFloatPoint& start, const CrkFloatPoint& end,
                              float tolerance) noexcept;
    static bool IsPointOnPolyline(const CrkFloatPoint& point, const CrkFloatPoint* points, int count,
                                  float tolerance) noexcept;
    /// On which side of a line a point lies: 0 within 2^-23 of an end or on the line; positive above a horizontal line,
    /// right of a vertical one, and above a slanted one drawn from left to right; the sign of a slanted line drawn from
    /// right to left is reversed. The two members give the same value.
    static float IsPointAboveLine(const CrkFloatPoint& point, const CrkFloatPoint& start,
                                  const CrkFloatPoint& end) noexcept;
    static float IsPointRightOfLine(const CrkFloatPoint& point, const CrkFloatPoint& start,
                                    const CrkFloatPoint& end) noexcept;
    /// `IsPointAboveLine` negated.
    static float IsPointBelowLine(const CrkFloatPoint& point, const CrkFloatPoint& start,
                                  const CrkFloatPoint& end) noexcept;
    static float IsPointLeftOfLine(const CrkFloatPoint& point, const CrkFloatPoint& start,
                                   const CrkFloatPoint& end) noexcept;
    /// The point halfway along a polyline; (0, 0) when it has no length.
    static CrkFloatPoint GetPolylineMidpoint(const CrkFloatPoint* points, int count) noexcept;

    // --- Crossings
    // ------------------------------------------------------------------------------------------------------------

    /// Whether two segments have a point in common, ends included. Two vertical ones do when they lie on the same x,
    /// however far apart; parallel slanted ones never do.
    static bool IsLineCrossingLine(const CrkFloatPoint& firstStart, const CrkFloatPoint& firstEnd,
                                   const CrkFloatPoint& secondStart, const CrkFloatPoint& secondEnd) noexcept;
    /// Whether a segment ends inside the rectangle (by the stored fields) or crosses one of its sides.
    static bool IsLineCrossingRect(const CrkFloatPoint& start, const CrkFloatPoint& end,
                                   const CrkFloatRect& rect) noexcept;
    static bool IsPolylineCrossingRect(const CrkFloatPoint* points, int count, const CrkFloatRect& rect) noexcept;
    /// Whether a horizontal or vertical segment crosses the rectangle: it may run along a side, but must reach inside
    /// in its own direction. False for a slanted one.
    static bool IsRightAngleLineCrossingRect(CrkFloatPoint start, CrkFloatPoint end, CrkFloatRect rect) noexcept;
};
