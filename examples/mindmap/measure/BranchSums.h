#pragma once

#include "mindmap/read/Outline.h"

#include <vector>

namespace mindmap {

/// What the figures below a topic come to, one sum for each unit, in the order in which the units first occur.
struct BranchSum {
    std::vector<Figure> figures;
    /// False when there would be more than kMaximumUnitCount figures, or a figure is too large to be added up exactly.
    /// Then this topic has no sum, and no topic above it, up to the first topic with a figure of its own.
    bool isKnown = true;
};

inline constexpr std::size_t kMaximumUnitCount = 8;

/// The sums of all topics, in the outline's order. A topic with a figure of its own counts with that figure, whatever
/// is below it; any other topic with the sum of its branch.
std::vector<BranchSum> SumBranches(const Outline& outline);

/// What a topic is worth in the user's locale: its own figure; or its amount as it was written; or "Σ" and the sums of
/// its branch; "" without a figure, an amount and a sum.
CString ShownAmount(const Topic& topic, const BranchSum& sum);

/// "Σ" and the sums of a branch in the user's locale; "" for a branch without figures.
CString ShownSum(const BranchSum& sum);

}  // namespace mindmap
