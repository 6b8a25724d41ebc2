#include "mindmap/layout/Columns.h"

#include <algorithm>

namespace mindmap {

Columns::Columns(const Packing& packing, const Group& group) : m_packing(packing), m_areItems(group.isPath) {
    m_parts.reserve(group.lastMember - group.firstMember);
    for (std::size_t m = group.firstMember; m < group.lastMember; ++m)
        m_parts.push_back({packing.members[m]});
}

/// Deals the parts to columns, in their order and as evenly as it gets.
void Columns::Deal(int columnCount) {
    double total = 0;
    double tallest = 0;
    for (const Part& part : m_parts) {
        total += part.height + part.gap;
        tallest = std::max(tallest, part.height);
    }
    double enough = total / columnCount + (columnCount > 1 ? tallest : 0);
    double tooLow = std::max(tallest, total / columnCount - m_parts.back().gap) - kGridStep;
    while (enough - tooLow > kGridStep) {
        const double middle = (enough + tooLow) / 2;
        (middle >= tallest && Fits(columnCount, middle) ? enough : tooLow) = middle;
    }
    Fits(columnCount, enough);
}

bool Columns::Fits(int columnCount, double limit) {
    int column = 0;
    double height = 0;
    for (Part& part : m_parts) {
        if (height > 0 && height + part.height > limit) {
            ++column;
            height = 0;
        }
        height += part.height + part.gap;
        part.column = column;
    }
    return column < columnCount;
}

Form Columns::Arrange(double bound, int columnCount) {
    for (Part& part : m_parts) {
        part.form = m_packing.FormWithin(part.part, m_areItems, bound);
        part.width = At(m_packing.forms, part.form).width;
        part.height = At(m_packing.forms, part.form).height;
        part.gap = m_packing.tree.Box(part.part).siblingGap;
    }
    Deal(columnCount);
    Form area;
    area.kind = Kind::Columns;
    area.bound = bound;
    area.columnCount = columnCount;
    const bool hasCorridor = m_parts.back().column > 0 && !m_areItems;
    double x = 0;
    double y = 0;
    for (std::size_t i = 0; i < m_parts.size(); ++i) {
        Part& part = m_parts[i];
        if (i > 0 && part.column != m_parts[i - 1].column)
            x = area.width + kGutter;
        if (i == 0 || part.column != m_parts[i - 1].column)
            y = hasCorridor ? kCorridor : 0;
        part.x = x;
        part.y = y;
        area.width = std::max(area.width, x + part.width);
        area.height = std::max(area.height, y + part.height);
        y += part.height + part.gap;
    }
    area.middle = MiddleOf(m_parts.front());
    area.lastMiddle = MiddleOf(m_parts.back());
    area.height += m_areItems && m_parts.back().column > 0 ? kBelowGap : 0;
    return area;
}

void Columns::OfferAll(BestForms& best) {
    double narrowest = 0;
    double widest = 0;
    for (const Part& part : m_parts) {
        const FormRange range = m_packing.RangeOf(part.part, m_areItems);
        narrowest =
            std::max(narrowest, At(m_packing.forms, m_packing.FormWithin(part.part, m_areItems, /*bound=*/0)).width);
        for (int f = range.first; f < range.last; ++f)
            widest = std::max(widest, At(m_packing.forms, f).width);
    }
    const int partCount = static_cast<int>(m_parts.size());
    for (double bound = narrowest;; bound = std::min(bound * 1.375, widest)) {
        for (int columnCount = 1; columnCount <= partCount; columnCount += std::max(1, columnCount / 5))
            best.Offer(Arrange(bound, columnCount));
        if (bound >= widest)
            break;
    }
}

}  // namespace mindmap
