#include "RkUtilities/geometry/CrkMathUtilities.h"

double CrkMathUtilities::CalculateAngle(float x, float y) noexcept {
    const double angle = std::atan2(y, x) + Pi() / 2;
    return x <= 0 && y <= 0 ? angle + 2 * Pi() : angle;
}

double CrkMathUtilities::CalculateAngle(const CrkFloatPoint& from, const CrkFloatPoint& to,
                                        CrkFloatPoint centre) noexcept {
    const auto degrees = static_cast<float>(RadiansToDegrees(CalculateAngle(from.x - centre.x, from.y - centre.y)));
    CrkFloatPoint turned{to.x - centre.x, to.y - centre.y};
    RotatePoint(&turned, -degrees, {0, 0});
    return CalculateAngle(turned);
}

double CrkMathUtilities::NormalizeAngle(double angle, double low, double high) noexcept {
    const double range = high - low;
    const double distance = angle - low;
    return distance - std::floor(distance / range) * range + low;
}

void CrkMathUtilities::RotatePoint(CrkFloatPoint* point, float degrees, CrkFloatPoint centre) noexcept {
    if (!point)
        return;
    const auto angle = static_cast<float>(DegreesToRadians(degrees));
    const float sine = std::sin(angle), cosine = std::cos(angle);
    const float dx = point->x - centre.x, dy = point->y - centre.y;
    *point = {cosine * dx - sine * dy + centre.x, cosine * dy + sine * dx + centre.y};
}

void CrkMathUtilities::RotatePointsAt(CrkFloatPoint* points, int count, float degrees, CrkFloatPoint centre) noexcept {
    if (!points)
        return;
    const auto toCentre = CGAffineTransformMakeTranslation(centre.x, centre.y);
    const auto turned = CGAffineTransformRotate(toCentre, DegreesToRadians(degrees));
    const auto [a, b, c, d, tx, ty] = CGAffineTransformTranslate(turned, -centre.x, -centre.y);
    for (int i = 0; i < count; ++i) {
        const double x = points[i].x, y = points[i].y;
        points[i] = {static_cast<float>(a * x + c * y + tx), static_cast<float>(b * x + d * y + ty)};
    }
}
