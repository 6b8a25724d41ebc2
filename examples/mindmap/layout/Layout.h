#pragma once

#include "mindmap/layout/Progress.h"
#include "mindmap/measure/TopicText.h"
#include "mindmap/read/Outline.h"

#include <RkUtilities/geometry/CrkFloatPoint.h>
#include <RkUtilities/geometry/CrkFloatRect.h>

#include <cstddef>
#include <vector>

namespace mindmap {

enum class Side { Centre, Right, Left };

/// Where a topic stands. The central one is the ellipse inscribed in `bounds`, all others are the rectangle itself.
struct TopicShape {
    CrkFloatRect bounds;
    Side side = Side::Centre;
    int branch = 0;  ///< which main topic it belongs to, from 0
    TopicText text;
    CrkFloatPoint textOrigin;  ///< the top of the text block, on the side where its lines begin
};

/// The line from a topic's parent to the topic. Both ends lie on the edges of the shapes.
struct Connection {
    bool isCurve = false;               ///< the points are those of one cubic curve; otherwise corners at right angles
    std::vector<CrkFloatPoint> points;  ///< no two are the same
};

/// A map with the centre of the central topic at (0, 0); y grows downwards.
struct MapLayout {
    std::vector<TopicShape> shapes;       ///< one for each topic of the outline, in its order
    std::vector<Connection> connections;  ///< connections[i] leads to topic i; the first is unused
    std::vector<BranchSum> sums;          ///< what the figures below each topic come to
    CrkFloatRect bounds;                  ///< of all shapes, with a margin
};

/// Composes the text of every topic and places it (Placement.h).
///
/// @throws OutlineError when the map would reach further than kMaximumExtent from the centre.
MapLayout LayOut(const Outline& outline, const ProgressHook& progress = {});

/// The straight pieces of a line; a curve becomes `segmentCount` of them.
std::vector<CrkFloatPoint> Flatten(const Connection& connection, int segmentCount);

}  // namespace mindmap
