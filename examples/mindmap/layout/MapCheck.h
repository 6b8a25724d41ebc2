#pragma once

#include "mindmap/layout/Layout.h"

namespace mindmap {

/// What is wrong with a map that has been laid out. Only a map without faults is written.
struct MapFaults {
    int overlapCount = 0;   ///< pairs of topics whose shapes share an area
    int crossingCount = 0;  ///< lines that run through a topic they do not belong to, or along its edge
    int looseEndCount = 0;  ///< line ends that are not on the edge of their shape

    [[nodiscard]] bool AreNone() const { return overlapCount + crossingCount + looseEndCount == 0; }
};

/// Looks for all faults with the library's bounding boxes and hit tests. The central ellipse counts as its whole
/// rectangle.
///
/// Takes n log n steps for maps as LayOut makes them, and finds the faults of any other map as well.
MapFaults CheckMap(const Outline& outline, const MapLayout& map, const ProgressHook& progress = {});

}  // namespace mindmap
