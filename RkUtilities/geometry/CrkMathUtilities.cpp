#include "RkUtilities/geometry/CrkMathUtilities.h"

#include <climits>
#include <cmath>
#include <cstdint>
#include <cstdlib>

namespace {

constexpr float kFloatTolerance = 1.1920928955078125e-07F;  // 2^-23
constexpr double kDoubleTolerance = 4.440892098500626e-16;  // 2^-51

int SaturatedInt(double value) noexcept
{
    if (std::isnan(value))
        return 0;
    if (value >= static_cast<double>(INT_MAX))
        return INT_MAX;
    return value <= static_cast<double>(INT_MIN) ? INT_MIN : static_cast<int>(value);
}

}  // namespace

int CrkMathUtilities::RoundToNearestInt(double value) noexcept
{
    return SaturatedInt(value + std::copysign(0.5, value));  // the conversion cuts toward zero
}

double CrkMathUtilities::RoundToNearest(double value, double step) noexcept
{
    if (step == 0)
        return value;
    const double moved = value + std::copysign(std::fabs(step) / 2, value);
    return moved - std::fmod(moved, step);
}

double CrkMathUtilities::SnapAngle(double angle, double step) noexcept
{
    return RoundToNearest(angle, step);
}

bool CrkMathUtilities::FloatsEqual(float a, float b) noexcept
{
    return FloatsEqual(a, b, kFloatTolerance);
}

bool CrkMathUtilities::FloatsEqual(float a, float b, float tolerance) noexcept
{
    return std::fabs(a - b) < tolerance;
}

bool CrkMathUtilities::FloatsEqual(double a, double b) noexcept
{
    return FloatsEqual(a, b, kDoubleTolerance);
}

bool CrkMathUtilities::FloatsEqual(double a, double b, double tolerance) noexcept
{
    return std::fabs(a - b) < tolerance;
}

int CrkMathUtilities::RandomInRange(int low, int high) noexcept
{
    constexpr std::int64_t kLargestDraw = 2147483647;
    const std::int64_t range = std::int64_t{high} - low;
    return static_cast<int>(low + range * random() / kLargestDraw);
}

void CrkMathUtilities::SolveQuadraticEquation(const float& a, const float& b, const float& c, float* firstRoot,
                                              float* secondRoot) noexcept
{
    if (firstRoot == nullptr || secondRoot == nullptr)
        return;
    const float root = std::sqrt((-4 * a) * c + b * b);
    const float first = b > 0 ? (-2 * c) / (b + root) : (root - b) / (2 * a);
    const float second = b > 0 ? (-b - root) / (2 * a) : (-2 * c) / (b - root);
    *firstRoot = first;
    *secondRoot = second;
}

float CrkMathUtilities::Length(CrkFloatPoint a, CrkFloatPoint b) noexcept
{
    return Length(CrkFloatPoint{a.x - b.x, a.y - b.y});
}

float CrkMathUtilities::Length(CrkFloatPoint vector) noexcept
{
    return static_cast<float>(Length(static_cast<double>(vector.x), static_cast<double>(vector.y)));
}

double CrkMathUtilities::Length(double x, double y) noexcept
{
    return std::sqrt(x * x + y * y);
}

int CrkMathUtilities::Length(int x, int y) noexcept
{
    return SaturatedInt(Length(static_cast<double>(x), static_cast<double>(y)));
}

bool CrkMathUtilities::WidthChangedMore(const CrkFloatSize& oldSize, const CrkFloatSize& newSize) noexcept
{
    const float widthChange = newSize.width - oldSize.width;
    const float heightChange = newSize.height - oldSize.height;
    if (widthChange <= 0 && heightChange >= 0)
        return false;
    if (widthChange >= 0 && heightChange <= 0)
        return true;
    if (widthChange < 0 && heightChange < 0)
        return std::fabs(heightChange) >= std::fabs(widthChange);
    return std::fabs(widthChange) >= std::fabs(heightChange);
}
