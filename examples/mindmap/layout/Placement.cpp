#include "mindmap/layout/Placement.h"

#include "mindmap/layout/Packing.h"

#include <algorithm>

namespace mindmap {

namespace {

constexpr double kSmallSheet = 640;     // no tree is packed that fits it
constexpr double kLargestSheet = 2800;  // a larger tree is packed
constexpr double kLeastFill = 0.25;     // of its box

}  // namespace

Placement PlaceBoxes(const std::vector<PlainBox>& boxes) {
    const BoxTree tree(boxes);
    Placement plain = PlaceByForms(FindForms(tree, /*isPacked=*/false));
    const auto [shorter, longer] = std::minmax({plain.right - plain.left, plain.bottom - plain.top});
    double area = 0;
    for (const PlainBox& box : boxes)
        area += (box.width + box.childGap) * (box.height + box.siblingGap);
    const bool isFull = area >= kLeastFill * shorter * longer;
    if (longer <= kSmallSheet || (longer <= kLargestSheet && longer <= kMaximumRatio * shorter && isFull))
        return plain;
    return PlaceByForms(FindForms(tree, /*isPacked=*/true));
}

}  // namespace mindmap
