#pragma once

#include "mindmap/layout/Packing.h"

namespace mindmap {

/// A part that stands in columns.
struct Part {
    int part = 0;
    int form = 0;
    int column = 0;
    double width = 0;
    double height = 0;
    double gap = 0;  // below it
    double x = 0;
    double y = 0;
};

/// The members of a group in columns.
class Columns {
public:
    Columns(const Packing& packing, const Group& group);

    /// The parts get their forms and their places.
    Form Arrange(double bound, int columnCount);
    /// Offers arrangements from narrow to wide.
    void OfferAll(BestForms& best);

    const std::vector<Part>& Parts() const { return m_parts; }

private:
    void Deal(int columnCount);
    bool Fits(int columnCount, double limit);
    double MiddleOf(const Part& part) const { return part.y + At(m_packing.forms, part.form).middle; }

    const Packing& m_packing;
    const bool m_areItems;
    std::vector<Part> m_parts;
};

}  // namespace mindmap
