#include "RkUtilities/geometry/CrkMathUtilities.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>

double CrkMathUtilities::RoundToNearest(double value, double step) noexcept {
    if (step == 0)
        return value;
    const double sum = value + std::copysign(step / 2, value);
    return sum - std::fmod(sum, step);
}

bool CrkMathUtilities::WidthChangedMore(const CrkFloatSize& oldSize, const CrkFloatSize& newSize) noexcept {
    const float widthChange = newSize.width - oldSize.width;
    const float heightChange = newSize.height - oldSize.height;
    return widthChange >= heightChange && (widthChange != 0 || heightChange != 0);
}

double CrkMathUtilities::Length(double x, double y) noexcept { return std::sqrt(x * x + y * y); }

int CrkMathUtilities::Length(int x, int y) noexcept {
    const auto square =
        static_cast<std::uint64_t>(std::int64_t{x} * x) + static_cast<std::uint64_t>(std::int64_t{y} * y);
    // Beyond 2^53 the sum as a double is rounded, and its root may be too large by one; it is never too small.
    auto root = static_cast<std::uint64_t>(std::sqrt(static_cast<double>(square)));
    if (root * root > square)
        --root;
    return static_cast<int>(std::min<std::uint64_t>(root, INT_MAX));
}

int CrkMathUtilities::RandomInRange(int low, int high) noexcept {
    // At most (2^32 - 1)(2^31 - 1), which 64 bits hold.
    const std::int64_t product = (std::int64_t{high} - low) * random();
    return static_cast<int>(low + product / 2147483647);
}

void CrkMathUtilities::SolveQuadraticEquation(float a, float b, float c, float* firstRoot, float* secondRoot) noexcept {
    if (!firstRoot || !secondRoot)
        return;
    const float s = std::sqrt(-4 * a * c + b * b);
    if (b > 0) {
        *firstRoot = -2 * c / (b + s);
        *secondRoot = (-b - s) / (2 * a);
    } else {
        *firstRoot = (s - b) / (2 * a);
        *secondRoot = -2 * c / (b - s);
    }
}
