#include "mindmap/layout/Forms.h"

#include <algorithm>

namespace mindmap {

Packing::Packing(const BoxTree& allBoxes, bool isSheetLarge)
    : tree(allBoxes), isPacked(isSheetLarge), members(allBoxes.members), areas(allBoxes.boxes.size()),
      ranges(allBoxes.boxes.size()), items(allBoxes.boxes.size())
{}

FormRange Packing::RangeOf(int part, bool isItem) const
{
    return part < 0 ? At(groups, ~part).forms : isItem ? At(items, part).forms : At(ranges, part);
}

int Packing::FormWithin(int part, bool isItem, double bound) const
{
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

FormRange Packing::Add(const BestForms& best)
{
    const int first = static_cast<int>(forms.size());
    best.MoveTo(forms);
    return {first, static_cast<int>(forms.size())};
}

Form Packing::FormBeside(int i, int area) const
{
    const PlainBox& box = tree.Box(i);
    const Form& a = At(forms, area);
    Form form{.middle = box.height / 2, .first = area, .kind = Kind::Beside};
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

Form Packing::FormBelow(int i, int area, double indent) const
{
    const PlainBox& box = tree.Box(i);
    const Form& a = At(forms, area);
    return {.width = std::max(box.width, indent + a.width),
            .height = box.height + kBelowGap + a.height,
            .middle = box.height / 2,
            .first = area,
            .kind = Kind::Below};
}

Form Packing::FormSplit(int i, int beside, int below, double indent) const
{
    const PlainBox& box = tree.Box(i);
    const Form& a = At(forms, beside);
    const Form& b = At(forms, below);
    const double drop = DropBeside(i, beside);
    return {.width = std::max(box.width + kBesideGap + a.width, indent + b.width),
            .height = TopOfSecond(i, beside) + b.height,
            .middle = box.height / 2 + std::max(0.0, -drop),
            .first = beside,
            .second = below,
            .kind = Kind::Split};
}

Form Packing::FormFollowed(int item, int later) const
{
    const Form& a = At(forms, item);
    const Form& b = At(forms, later);
    return {.width = a.width + kGutter + b.width,
            .height = kCorridor + std::max(a.height, b.height),
            .middle = kCorridor + a.middle,
            .first = item,
            .second = later,
            .kind = Kind::Followed};
}

Form Packing::FormOver(const Group& group, int first, int second) const
{
    const Form& a = At(forms, first);
    const Form& b = At(forms, second);
    return {.width = std::max(a.width, b.width),
            .height = a.height + GapIn(group) + b.height,
            .middle = a.middle,
            .first = first,
            .second = second,
            .kind = Kind::Over};
}

Form Packing::FormSide(const Group& group, int first, int second) const
{
    const Form& a = At(forms, first);
    const Form& b = At(forms, second);
    const double corridor = group.isPath ? 0 : kCorridor;
    const double turn = group.isPath ? kBelowGap : 0;
    return {.width = a.width + kGutter + b.width,
            .height = corridor + std::max(a.height + turn, b.height),
            .middle = corridor + a.middle,
            .first = first,
            .second = second,
            .kind = Kind::Side};
}

bool Packing::IsColumn(int form) const
{
    const Form& f = At(forms, form);
    return f.kind <= Kind::Flow || (f.kind == Kind::Columns && f.columnCount == 1);
}

double Packing::DropBeside(int i, int area) const
{
    const Form& a = At(forms, area);
    const bool hasCorridor = a.kind == Kind::Side || (a.kind == Kind::Columns && a.columnCount > 1);
    return tree.Box(i).height / 2 - (hasCorridor ? kCorridor / 2 : a.middle);
}

double Packing::TopOfSecond(int i, int beside) const
{
    const double drop = DropBeside(i, beside);
    return std::max(tree.Box(i).height + std::max(0.0, -drop), std::max(0.0, drop) + At(forms, beside).height) +
           kBelowGap;
}

}  // namespace mindmap
