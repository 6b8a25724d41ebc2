#pragma once

#include <cstddef>
#include <vector>

namespace mindmap {

/// Where boxes of a tree stand and which way the lines between them take: arithmetic on sizes alone, which a script can
/// repeat to the last bit. Everything is a multiple of 4 where the sizes and gaps are, lines of 2.

/// A box to place. Boxes stand in the order of the outline: a parent before its children, descendants without a gap.
struct PlainBox {
    double width;
    double height;
    int parent;         ///< -1 for the first box, the centre
    double siblingGap;  ///< below it, to its next sibling's branch
    double childGap;    ///< beside it, to its children
};

struct PlainPoint {
    double x;
    double y;
};

/// The upper left corner of a box, and the line that leads to it from its parent.
struct PlainPlace {
    double x = 0;
    double y = 0;
    bool isLeft = false;         ///< of the centre: its children go on to the left
    bool isCurved = false;       ///< the line bends from its first point to its last; otherwise it has corners
    std::size_t firstPoint = 0;  ///< in Placement::points
    std::size_t pointCount = 0;  ///< 2 to 7; 0 for the centre
};

struct Placement {
    std::vector<PlainPlace> places;  ///< one for each box
    std::vector<PlainPoint> points;  ///< a line that comes out of the centre's side begins there
    double left = 0;                 // of all boxes
    double top = 0;
    double right = 0;
    double bottom = 0;
};

/// Places the boxes; the middle of the first box is (0, 0).
///
/// A tree that fits a sheet stands as people draw it: the main topics right and left of the centre, children beside
/// their parent in one column. A larger tree is packed. Each branch gets several forms, from narrow to wide, each made
/// of the forms of its parts (Stockmeyer's shape functions of slicing floorplans): children beside their parent, below
/// it (tip-over trees) or the first beside and the others below, in columns, or in two groups above or beside each
/// other. The form of the whole that needs the smallest sheet of 4 : 3 decides the others.
///
/// A path of more than 24 levels flows on below, and from column to column (BoxTree::isInFlow). Children stand in their
/// order from top to bottom, column by column; those that come after the next topic of a flow stand beside it.
///
/// Takes time and memory as n log n.
Placement PlaceBoxes(const std::vector<PlainBox>& boxes);

}  // namespace mindmap
