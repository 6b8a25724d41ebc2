#include "RkUtilities/geometry/CrkMathUtilities.h"

#include <cmath>

namespace {

constexpr double kHalfTurnDegrees = 180.0;
constexpr double kQuarterTurn = 1.5707963267948966;
constexpr double kFullTurn = 6.283185307179586;

/// The vector turned by an angle, clockwise on the screen.
CrkFloatPoint Turned(CrkFloatPoint vector, float radians) noexcept
{
    const float sine = std::sin(radians);
    const float cosine = std::cos(radians);
    return {cosine * vector.x - sine * vector.y, cosine * vector.y + sine * vector.x};
}

/// Moves `centre` to the origin, turns, and moves back.
CGAffineTransform RotationAbout(CrkFloatPoint centre, double radians) noexcept
{
    const double sine = std::sin(radians);
    const double cosine = std::cos(radians);
    const auto x = static_cast<double>(centre.x);
    const auto y = static_cast<double>(centre.y);
    return {cosine, sine, -sine, cosine, -x * cosine - y * -sine + x, -x * sine - y * cosine + y};
}

}  // namespace

double CrkMathUtilities::RadiansToDegrees(double angle) noexcept
{
    return angle * kHalfTurnDegrees / Pi();
}

double CrkMathUtilities::DegreesToRadians(double angle) noexcept
{
    return angle * Pi() / kHalfTurnDegrees;
}

double CrkMathUtilities::CalculateAngle(float x, float y) noexcept
{
    const double angle = static_cast<double>(std::atan2(y, x)) + kQuarterTurn;
    return x <= 0 && y <= 0 ? angle + kFullTurn : angle;
}

double CrkMathUtilities::CalculateAngle(const CrkFloatPoint& direction) noexcept
{
    return CalculateAngle(direction.x, direction.y);
}

double CrkMathUtilities::CalculateAngle(const CrkFloatPoint& from, const CrkFloatPoint& to,
                                        CrkFloatPoint centre) noexcept
{
    const double fromAngle = CalculateAngle(from.x - centre.x, from.y - centre.y);
    const float degrees = -static_cast<float>(RadiansToDegrees(fromAngle));
    const auto radians = static_cast<float>(DegreesToRadians(static_cast<double>(degrees)));
    return CalculateAngle(Turned({to.x - centre.x, to.y - centre.y}, radians));
}

double CrkMathUtilities::NormalizeAngle(double angle, double low, double high) noexcept
{
    const double range = high - low;
    const double distance = angle - low;
    return distance - std::floor(distance / range) * range + low;
}

void CrkMathUtilities::RotatePoint(CrkFloatPoint* point, float degrees, CrkFloatPoint centre) noexcept
{
    if (point == nullptr)
        return;
    const auto radians = static_cast<float>(DegreesToRadians(static_cast<double>(degrees)));
    const CrkFloatPoint turned = Turned({point->x - centre.x, point->y - centre.y}, radians);
    *point = {turned.x + centre.x, turned.y + centre.y};
}

void CrkMathUtilities::RotatePointAt(CrkFloatPoint* point, float degrees, CrkFloatPoint centre) noexcept
{
    RotatePointsAt(point, 1, degrees, centre);
}

void CrkMathUtilities::RotatePointsAt(CrkFloatPoint* points, int count, float degrees, CrkFloatPoint centre) noexcept
{
    if (points == nullptr || count <= 0)
        return;
    const CGAffineTransform t = RotationAbout(centre, DegreesToRadians(static_cast<double>(degrees)));
    for (int i = 0; i < count; ++i) {
        const auto x = static_cast<double>(points[i].x);
        const auto y = static_cast<double>(points[i].y);
        points[i] = {static_cast<float>(t.a * x + t.c * y + t.tx), static_cast<float>(t.b * x + t.d * y + t.ty)};
    }
}
