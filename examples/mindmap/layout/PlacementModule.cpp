// PlaceBoxes for the script of a live map: functions of plain numbers, which `write/page/compile` makes a WebAssembly
// module of. Here they are compiled with everything else, so that nothing breaks unseen.
#include "mindmap/layout/Placement.h"

#include <array>

namespace {

using namespace mindmap;

constexpr std::size_t kBoxNumbers = 5;    // width, height, parent, sibling gap, child gap
constexpr std::size_t kPlaceNumbers = 6;  // x, y, is left, is curved, first point, point count

std::vector<double> numbers;   // boxes, then places
std::vector<double> points;    // x and y
std::array<double, 4> bounds;  // left, top, right, bottom

std::vector<PlainBox> Boxes() {
    std::vector<PlainBox> boxes;
    boxes.reserve(numbers.size() / kBoxNumbers);
    for (std::size_t i = 0; i < numbers.size(); i += kBoxNumbers)
        boxes.push_back({numbers[i], numbers[i + 1], static_cast<int>(numbers[i + 2]), numbers[i + 3], numbers[i + 4]});
    return boxes;
}

void Keep(const Placement& placement) {
    bounds = {placement.left, placement.top, placement.right, placement.bottom};
    numbers.clear();
    numbers.reserve(kPlaceNumbers * placement.places.size());
    for (const PlainPlace& place : placement.places)
        numbers.insert(numbers.end(), {place.x, place.y, place.isLeft ? 1.0 : 0.0, place.isCurved ? 1.0 : 0.0,
                                       static_cast<double>(place.firstPoint), static_cast<double>(place.pointCount)});
    points.clear();
    points.reserve(2 * placement.points.size());
    for (const PlainPoint& point : placement.points)
        points.insert(points.end(), {point.x, point.y});
}

}  // namespace

extern "C" {

/// Where the numbers of this many boxes go.
double* placementBoxes(int boxCount) {
    numbers.assign(kBoxNumbers * static_cast<std::size_t>(boxCount), 0);
    return numbers.data();
}

/// Places these boxes; returns the numbers of their places.
const double* placeBoxes() {
    Keep(PlaceBoxes(Boxes()));
    return numbers.data();
}

const double* placedPoints() { return points.data(); }

int placedPointCount() { return static_cast<int>(points.size() / 2); }

const double* placedBounds() { return bounds.data(); }
}
