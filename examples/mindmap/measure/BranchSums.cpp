#include "mindmap/measure/BranchSums.h"

#include <RkUtilities/strings/CrkStringUtilities.h>

#include <algorithm>

namespace mindmap {

namespace {

/// Adds a figure that stands before those which are already in the sum.
void Add(BranchSum& sum, const Figure& figure) {
    const auto sameUnit = std::find_if(sum.figures.begin(), sum.figures.end(),
                                       [&](const Figure& known) { return known.unit == figure.unit; });
    Figure total = figure;
    if (sameUnit != sum.figures.end()) {
        if (__builtin_add_overflow(sameUnit->value, figure.value, &total.value))
            sum.isKnown = false;
        sum.figures.erase(sameUnit);
    }
    sum.figures.insert(sum.figures.begin(), total);
    sum.isKnown = sum.isKnown && sum.figures.size() <= kMaximumUnitCount;
    if (!sum.isKnown)
        sum.figures.clear();
}

void Add(BranchSum& sum, const Topic& child, const BranchSum& ofChild) {
    if (!sum.isKnown)
        return;
    if (child.figure) {
        Add(sum, *child.figure);
        return;
    }
    sum.isKnown = ofChild.isKnown;
    if (!sum.isKnown)
        sum.figures.clear();
    for (auto figure = ofChild.figures.rbegin(); figure != ofChild.figures.rend() && sum.isKnown; ++figure)
        Add(sum, *figure);
}

}  // namespace

std::vector<BranchSum> SumBranches(const Outline& outline) {
    std::vector<BranchSum> sums(outline.topics.size());
    for (std::size_t i = sums.size(); i-- > 1;)
        Add(sums[static_cast<std::size_t>(outline.topics[i].parent)], outline.topics[i], sums[i]);
    return sums;
}

CString ShownAmount(const Topic& topic, const BranchSum& sum) {
    if (topic.figure)
        return ShownFigure(*topic.figure);
    return topic.amount.IsEmpty() ? ShownSum(sum) : topic.amount;
}

CString ShownSum(const BranchSum& sum) {
    std::vector<CString> parts;
    parts.reserve(sum.figures.size());
    for (const Figure& figure : sum.figures)
        parts.push_back(ShownFigure(figure));
    const CString shown = CrkStringUtilities::Combine(u" + ", parts.data(), parts.size(), /*skipEmptyParts=*/true);
    return shown.IsEmpty() ? shown : u"Σ " + shown;
}

}  // namespace mindmap
