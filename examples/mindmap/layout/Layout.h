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

/// The line from a topic's parent to the topic, a cubic curve. Both ends lie on the edges of the shapes.
struct Connection {
    CrkFloatPoint start;
    CrkFloatPoint firstControl;
    CrkFloatPoint secondControl;
    CrkFloatPoint end;
};

/// A map with the centre of the central topic at (0, 0); y grows downwards.
struct MapLayout {
    std::vector<TopicShape> shapes;       ///< one for each topic of the outline, in its order
    std::vector<Connection> connections;  ///< connections[i] leads to topic i; the first one is unused
    std::vector<BranchSum> sums;          ///< what the figures below each topic come to
    CrkFloatRect bounds;                  ///< of all shapes, with a margin
};

/// Places every topic. Main topics go clockwise around the centre, from the upper right to the upper left, split where
/// both sides become about equally tall; each topic's descendants have a band of the height to themselves, beside it
/// and away from the centre. So no shape overlaps another one and every line stays in the band of the topic it comes
/// from. Linear in the number of topics.
///
/// @throws OutlineError when the map would reach further than kMaximumExtent from the centre.
MapLayout LayOut(const Outline& outline, const ProgressHook& progress = {});

/// The curve as `segmentCount` straight pieces.
std::vector<CrkFloatPoint> Flatten(const Connection& connection, int segmentCount);

}  // namespace mindmap
