#pragma once

#include "mindmap/layout/Layout.h"

#include <RkUtilities/geometry/CrkFloatPoint.h>
#include <RkUtilities/geometry/CrkFloatRect.h>

#include <cstdint>
#include <vector>

namespace mindmap {

/// A color of the legend: a square of it, its name and below that the main topics that have it.
struct LegendEntry {
    std::uint32_t color;  ///< 0xRRGGBB
    CString name;
    CString topics;
    CrkFloatPoint origin;  ///< the upper left corner
};

/// The box that names the branches' colors. It lies below the map and touches nothing of it.
struct Legend {
    std::vector<LegendEntry> entries;  ///< empty for a map without branches
    CrkFloatRect box;
    CrkFloatRect bounds;  ///< of map and box together, with a margin; no side is longer than
                          ///< kMaximumSideRatio times the other
};

/// The legend of a map, its names in the user's language (ScopedColorNames).
Legend MakeLegend(const Outline& outline, const MapLayout& map);

}  // namespace mindmap
