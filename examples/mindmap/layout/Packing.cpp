#include "mindmap/layout/Packing.h"

#include <algorithm>

namespace mindmap {

Packing::Packing(const BoxTree& allBoxes, bool isSheetLarge)
    : tree(allBoxes), isPacked(isSheetLarge), members(allBoxes.members), areas(allBoxes.boxes.size()),
      ranges(allBoxes.boxes.size()), items(allBoxes.boxes.size()) {}

FormRange Packing::RangeOf(int part, bool isItem) const {
    return part < 0 ? At(groups, ~part).forms : isItem ? At(items, part).forms : At(ranges, part);
}

int Packing::FormWithin(int part, bool isItem, double bound) const {
    const FormRange range = RangeOf(part, isItem);
    int best = -1;
    int narrowest = range.first;
    for (int f = range.first; f < range.last; ++f) {
        const Form& form = At(forms, f);
        if (form.width < At(forms, narrowest).width)
            narrowest = f;
        if (form.width <= bound && (best < 0 || form.height < At(forms, best).height))
            best = f;
    }
    return best < 0 ? narrowest : best;
}

FormRange Packing::Add(const BestForms& best) {
    const int first = static_cast<int>(forms.size());
    best.MoveTo(forms);
    return {first, static_cast<int>(forms.size())};
}

Form Packing::FormBeside(int i, int area) const {
    const PlainBox& box = tree.Box(i);
    const Form& a = At(forms, area);
    Form form{0, 0, box.height / 2, Kind::Beside, area};
    if (IsColumn(area)) {
        const double centre = a.kind == Kind::Columns ? (a.middle + a.lastMiddle) / 2 : a.middle;
        form.width = box.width + (isPacked ? kBesideGap : box.childGap) + a.width;
        form.height = std::max(box.height, a.height);
        form.middle = std::clamp((form.height - a.height) / 2 + centre, form.middle, form.height - form.middle);
    } else {
        const double drop = DropBeside(i, area);
        form.width = box.width + kBesideGap + a.width;
        form.height = std::max(box.height + std::max(0.0, -drop), std::max(0.0, drop) + a.height);
        form.middle += std::max(0.0, -drop);
    }
    return form;
}

Form Packing::FormBelow(int i, int area, double indent) const {
    const PlainBox& box = tree.Box(i);
    const Form& a = At(forms, area);
    return {std::max(box.width, indent + a.width), box.height + kBelowGap + a.height, box.height / 2, Kind::Below,
            area};
}

Form Packing::FormSplit(int i, int beside, int below, double indent) const {
    const PlainBox& box = tree.Box(i);
    const Form& a = At(forms, beside);
    const Form& b = At(forms, below);
    const double drop = DropBeside(i, beside);
    return {std::max(box.width + kBesideGap + a.width, indent + b.width),
            TopOfSecond(i, beside) + b.height,
            box.height / 2 + std::max(0.0, -drop),
            Kind::Split,
            beside,
            below};
}

Form Packing::FormFollowed(int item, int later) const {
    const Form& a = At(forms, item);
    const Form& b = At(forms, later);
    return {a.width + kGutter + b.width,
            kCorridor + std::max(a.height, b.height),
            kCorridor + a.middle,
            Kind::Followed,
            item,
            later};
}

Form Packing::FormOver(const Group& group, int first, int second) const {
    const Form& a = At(forms, first);
    const Form& b = At(forms, second);
    return {std::max(a.width, b.width), a.height + GapIn(group) + b.height, a.middle, Kind::Over, first, second};
}

Form Packing::FormSide(const Group& group, int first, int second) const {
    const Form& a = At(forms, first);
    const Form& b = At(forms, second);
    const double corridor = group.isPath ? 0 : kCorridor;
    const double turn = group.isPath ? kBelowGap : 0;
    return {a.width + kGutter + b.width,
            corridor + std::max(a.height + turn, b.height),
            corridor + a.middle,
            Kind::Side,
            first,
            second};
}

bool Packing::IsColumn(int form) const {
    const Form& f = At(forms, form);
    return f.kind <= Kind::Flow || (f.kind == Kind::Columns && f.columnCount == 1);
}

double Packing::DropBeside(int i, int area) const {
    const Form& a = At(forms, area);
    const bool hasCorridor = a.kind == Kind::Side || (a.kind == Kind::Columns && a.columnCount > 1);
    return tree.Box(i).height / 2 - (hasCorridor ? kCorridor / 2 : a.middle);
}

double Packing::TopOfSecond(int i, int beside) const {
    const double drop = DropBeside(i, beside);
    return std::max(tree.Box(i).height + std::max(0.0, -drop), std::max(0.0, drop) + At(forms, beside).height) +
           kBelowGap;
}

}  // namespace mindmap
