#include "mindmap/layout/BoxTree.h"

namespace mindmap {

BoxTree::BoxTree(const std::vector<PlainBox>& allBoxes)
    : boxes(allBoxes), weights(allBoxes.size()), heavy(allBoxes.size(), -1), isInFlow(allBoxes.size()) {
    FindChildren();
    FindHeavyChildren();
    FindFlows();
}

void BoxTree::FindChildren() {
    firstChild.assign(boxes.size() + 1, 0);
    for (int i = 1; i < Count(); ++i)
        ++At(firstChild, Box(i).parent + 1);
    for (int i = 0; i < Count(); ++i)
        At(firstChild, i + 1) += At(firstChild, i);
    members.resize(boxes.size() - 1);
    std::vector<std::size_t> next(firstChild.begin(), firstChild.end() - 1);
    for (int i = 1; i < Count(); ++i)
        members[At(next, Box(i).parent)++] = i;
}

void BoxTree::FindHeavyChildren() {
    for (int i = Count(); i-- > 0;) {
        const PlainBox& box = Box(i);
        At(weights, i) += (box.width + kGutter) * (box.height + box.siblingGap);
        if (box.parent < 0)
            continue;
        At(weights, box.parent) += At(weights, i);
        int& heaviest = At(heavy, box.parent);
        if (heaviest < 0 || At(weights, i) >= At(weights, heaviest))
            heaviest = i;
    }
}

void BoxTree::FindFlows() {
    constexpr int kLongestPath = 24;  // that is not made a flow
    for (int head = 1; head < Count(); ++head) {
        if (!IsPathHead(head))
            continue;
        int length = 0;
        for (int i = head; i >= 0; i = At(heavy, i))
            ++length;
        for (int i = head; i >= 0 && length > kLongestPath; i = At(heavy, i))
            At(isInFlow, i) = 1;
    }
}

}  // namespace mindmap
