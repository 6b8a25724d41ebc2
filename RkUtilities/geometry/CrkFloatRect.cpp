#include "RkUtilities/geometry/CrkFloatRect.h"

#include "RkUtilities/geometry/CrkFloatSize.h"

#include <ostream>

CrkFloatRect CrkFloatRect::Moved(float dx, float dy) const noexcept {
    return IsNull() ? *this : CrkFloatRect{x + dx, y + dy, width, height};
}

CrkFloatRect CrkFloatRect::Inflated(float dx, float dy) const noexcept {
    if (IsNull())
        return *this;
    const double left = width < 0 ? double{x} + width : x;
    const double top = height < 0 ? double{y} + height : y;
    const double grownWidth = (width < 0 ? -double{width} : width) + 2.0 * dx;
    const double grownHeight = (height < 0 ? -double{height} : height) + 2.0 * dy;
    if (grownWidth < 0 || grownHeight < 0)
        return Null();
    return {static_cast<float>(left - dx), static_cast<float>(top - dy), static_cast<float>(grownWidth),
            static_cast<float>(grownHeight)};
}

std::ostream& operator<<(std::ostream& stream, const CrkFloatPoint& point) {
    return stream << '(' << point.x << ", " << point.y << ')';
}

std::ostream& operator<<(std::ostream& stream, const CrkFloatSize& size) {
    return stream << size.width << " x " << size.height;
}

std::ostream& operator<<(std::ostream& stream, const CrkFloatRect& rectangle) {
    return stream << '(' << rectangle.x << ", " << rectangle.y << ", " << rectangle.width << " x " << rectangle.height
                  << ')';
}
