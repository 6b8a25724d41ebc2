#pragma once

#include "mindmap/layout/Placement.h"

#include <cstddef>
#include <vector>

namespace mindmap {

constexpr double kGutter = 12;  // left of what a line reaches from above or below; the line runs in the middle

/// An element by its number; boxes, forms and corners are numbered by int, as -1 stands for no box, form or corner.
template <class Values> auto& At(Values& values, int i) { return values[static_cast<std::size_t>(i)]; }

/// The tree that boxes make, and its heavy paths. The heavy child of a box is the child with the largest branch; a
/// heavy path goes on from a box to its heavy child.
struct BoxTree {
    explicit BoxTree(const std::vector<PlainBox>& boxes);

    int Count() const { return static_cast<int>(boxes.size()); }
    const PlainBox& Box(int i) const { return At(boxes, i); }
    bool IsLeaf(int i) const { return At(heavy, i) < 0; }
    /// The centre is on no path.
    bool IsPathHead(int i) const { return Box(i).parent == 0 || At(heavy, Box(i).parent) != i; }

    const std::vector<PlainBox>& boxes;
    std::vector<std::size_t> firstChild;  ///< in `members`; that of the next box is where the children end
    std::vector<int> members;             ///< the children of every box, in their order
    std::vector<double> weights;          ///< the area that a branch needs at least
    std::vector<int> heavy;               ///< -1 for leaves
    std::vector<char> isInFlow;           ///< on a heavy path of more than 24 levels

private:
    void FindChildren();
    void FindHeavyChildren();
    void FindFlows();
};

}  // namespace mindmap
