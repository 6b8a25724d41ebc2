#include "mindmap/layout/Columns.h"

#include <algorithm>
#include <cmath>

namespace mindmap {

namespace {

/// A corner of a line and the corner before it; lines to neighbours share them.
struct Corner {
    PlainPoint point;
    int before;
};

/// Until all is placed x grows away from the centre on both sides.
class Placer {
public:
    explicit Placer(const Packing& packing)
        : m_packing(packing), m_tree(packing.tree), m_chosen(m_tree.boxes.size()), m_isItem(m_tree.boxes.size()),
          m_laterCorner(m_tree.boxes.size(), -1), m_x(m_tree.boxes.size()), m_y(m_tree.boxes.size()) {
        m_placement.places.resize(m_tree.boxes.size());
    }

    Placement Place() {
        m_x[0] = -m_tree.Box(0).width / 2;
        m_y[0] = -m_tree.Box(0).height / 2;
        PlaceSide(m_packing.right, false);
        PlaceSide(m_packing.left, true);
        for (int i = 1; i < m_tree.Count(); ++i)
            PlaceChildren(i);
        Finish();
        return std::move(m_placement);
    }

private:
    const Form& FormAt(int form) const { return At(m_packing.forms, form); }
    const Group& GroupOf(int part) const { return At(m_packing.groups, ~part); }

    void PlaceSide(SidePart side, bool isLeft) {
        if (side.form < 0)
            return;
        const double edge = m_tree.Box(0).width / 2;
        const double top = std::floor(-FormAt(side.form).height / 2 / kGridStep) * kGridStep;
        m_isLeft = isLeft;
        m_isCurved = m_packing.IsColumn(side.form);
        const int start = Bend(edge, 0, -1);
        PlacePart(side.part, side.form, edge + kCentralGap, top,
                  m_isCurved ? start : Bend(edge + kCentralGap - kGutter / 2, 0, start));
    }
    int Bend(double x, double y, int before) {
        m_corners.push_back({{x, y}, before});
        return static_cast<int>(m_corners.size()) - 1;
    }

    /// Places a box, or the parts of a group; `corner` is the last corner of the lines that lead there.
    void PlacePart(int part, int formIndex, double x, double y, int corner) {
        const Form& form = FormAt(formIndex);
        if (part >= 0) {
            PlaceBox(part, formIndex, x, y);
            if (corner >= 0)
                DrawLine(part, corner);
            return;
        }
        const Group& group = GroupOf(part);
        if (form.kind == Kind::Columns) {
            PlaceColumns(group, form, x, y, corner);
            return;
        }
        m_areItems = group.isPath;
        const double below = y + FormAt(form.first).height;
        const double beside = x + FormAt(form.first).width + kGutter;
        if (form.kind == Kind::Over) {
            PlacePart(group.first, form.first, x, y, corner);
            PlacePart(group.second, form.second, x, below + m_packing.GapIn(group), corner);
        } else if (group.isPath) {
            PlacePart(group.first, form.first, x, y, corner);
            PlacePart(group.second, form.second, beside, y, corner);
        } else {
            PlacePart(group.first, form.first, x, y + kCorridor, corner);
            PlacePart(group.second, form.second, beside, y + kCorridor, Along(x, beside, y, corner));
        }
        if (group.isPath) {
            const std::size_t next =
                group.first < 0 ? GroupOf(group.first).lastMember : group.firstMember + 1;  // where the second begins
            DrawNext(m_packing.members[next - 1], m_packing.members[next], below, form.kind == Kind::Over);
        }
    }

    /// Lines go along a corridor whose top is y, from the gutter left of one part to that of another.
    int Along(double from, double to, double y, int corner) {
        const double middle = y + kCorridor / 2;
        return Bend(to - kGutter / 2, middle, Bend(from - kGutter / 2, middle, corner));
    }

    void PlaceColumns(const Group& group, const Form& form, double x, double y, int corner) {
        Columns columns(m_packing, group);
        columns.Arrange(form.bound, form.columnCount);
        const std::vector<Part>& parts = columns.Parts();
        m_areItems = group.isPath;
        int way = corner;
        for (std::size_t i = 0; i < parts.size(); ++i) {
            const Part& p = parts[i];
            const bool isNewColumn = i > 0 && p.column != parts[i - 1].column;
            PlaceBox(p.part, p.form, x + p.x, y + p.y);
            if (group.isPath) {
                if (i > 0)
                    DrawNext(parts[i - 1].part, p.part, y + parts[i - 1].y + parts[i - 1].height, !isNewColumn);
                continue;
            }
            if (isNewColumn)
                way = Along(x, x + p.x, y, corner);
            DrawLine(p.part, way);
        }
    }

    /// The line from a topic of a path to the next topic, below or beside it, around all that stands above `bottom`.
    /// Lines to the later siblings of the next topic leave this line in the corridor above that topic's box.
    void DrawNext(int from, int to, double bottom, bool isBelow) {
        const double start = At(m_x, from) + kGutter / 2;
        const double turn = bottom + kBelowGap / 2;
        const double x = At(m_x, to) + (isBelow ? kGutter / 2 : -kGutter / 2);
        const double middle = MiddleOfBox(to);
        m_line.assign({{start, MiddleOfBox(from) + m_tree.Box(from).height / 2}, {start, turn}, {x, turn}});
        if (FormAt(At(m_chosen, to)).kind == Kind::Followed) {
            int& corner = At(m_laterCorner, to);
            for (const PlainPoint& point : m_line)
                corner = Bend(point.x, point.y, corner);
            corner = Bend(x, At(m_y, to) + kCorridor / 2, corner);
        }
        if (isBelow)
            m_line.push_back({x, middle - m_tree.Box(to).height / 2});
        else
            m_line.insert(m_line.end(), {{x, middle}, {x + kGutter / 2, middle}});
        KeepLine(to);
    }

    void PlaceBox(int i, int form, double x, double y) {
        At(m_x, i) = x;
        At(m_y, i) = y;
        At(m_chosen, i) = form;
        At(m_isItem, i) = m_areItems ? 1 : 0;
        At(m_placement.places, i).isLeft = m_isLeft;
    }

    double MiddleOfBox(int i) const { return At(m_y, i) + FormAt(At(m_chosen, i)).middle; }

    /// The line to a box whose branch is placed: along the corners, down or up the gutter beside the box, and into it.
    void DrawLine(int i, int corner) {
        const double x = At(m_x, i);
        const double y = MiddleOfBox(i);
        m_line.assign({{x, y}});
        if (!m_isCurved)
            m_line.push_back({x - kGutter / 2, y});
        for (; corner >= 0; corner = At(m_corners, corner).before)
            m_line.push_back(At(m_corners, corner).point);
        std::reverse(m_line.begin(), m_line.end());
        KeepLine(i);
    }

    /// Leaves out the points where a line goes straight on.
    void KeepLine(int i) {
        PlainPlace& place = At(m_placement.places, i);
        place.isCurved = m_isCurved;
        std::vector<PlainPoint>& points = m_placement.points;
        place.firstPoint = points.size();
        for (const PlainPoint& point : m_line) {
            const std::size_t count = points.size() - place.firstPoint;
            if (count >= 1 && points.back().x == point.x && points.back().y == point.y)
                continue;
            const auto isStraight = [&](double PlainPoint::* along) {
                return points[points.size() - 2].*along == point.*along && points.back().*along == point.*along;
            };
            if (count >= 2 && (isStraight(&PlainPoint::x) || isStraight(&PlainPoint::y)))
                points.back() = point;
            else
                points.push_back(point);
        }
        place.pointCount = points.size() - place.firstPoint;
    }

    void PlaceChildren(int i) {
        const PlainBox& box = m_tree.Box(i);
        const bool isItem = At(m_isItem, i) != 0;
        Form form = FormAt(At(m_chosen, i));
        const double x = At(m_x, i);
        double y = At(m_y, i);
        const double middle = y + form.middle;
        m_isLeft = At(m_placement.places, i).isLeft;
        m_isCurved = false;
        m_areItems = false;
        if (form.kind == Kind::Flow) {
            PlacePart(At(m_packing.areas, i), form.first, x, y, -1);
            PlaceChildren(i);  // the first topic of the path, as an item
            return;
        }
        if (form.kind == Kind::Followed) {
            const double beside = x + FormAt(form.first).width + kGutter;
            const int corner = Bend(beside - kGutter / 2, y + kCorridor / 2, At(m_laterCorner, i));
            y += kCorridor;
            PlacePart(At(m_packing.items, i).later, form.second, beside, y, corner);
            form = FormAt(form.first);
        }
        const int area = isItem ? At(m_packing.items, i).before : At(m_packing.areas, i);
        const double besidePacked = x + box.width + kBesideGap;
        const double lower = form.first < 0 ? 0 : std::max(0.0, m_packing.DropBeside(i, form.first));
        switch (form.kind) {
        case Kind::Beside: {
            m_isCurved = m_packing.IsColumn(form.first);
            const double gap = m_isCurved && !m_packing.isPacked ? box.childGap : kBesideGap;
            const double top = m_isCurved ? (form.height - FormAt(form.first).height) / 2 : lower;
            PlacePart(area, form.first, x + box.width + gap, y + top, Beside(x + box.width, middle, gap));
            break;
        }
        case Kind::Below:
            PlaceBelow(i, area, form.first, middle + box.height / 2, y + box.height + kBelowGap);
            break;
        case Kind::Split:
            PlacePart(GroupOf(area).first, form.first, besidePacked, y + lower,
                      Beside(x + box.width, middle, kBesideGap));
            PlaceBelow(i, GroupOf(area).second, form.second, middle + box.height / 2,
                       y + m_packing.TopOfSecond(i, form.first));
            break;
        default:
            break;
        }
        At(m_y, i) = middle - box.height / 2;  // from now on the box, no longer its branch
    }

    void PlaceBelow(int i, int part, int form, double bottom, double top) {
        const double indent = Packing::Indent(part, At(m_isItem, i) != 0);
        const double trunk = At(m_x, i) + kGutter / 2;
        m_isCurved = false;
        PlacePart(part, form, At(m_x, i) + indent, top, indent > 0 ? Bend(trunk, bottom, -1) : -1);
        if (indent > 0)
            return;
        m_line.assign({{trunk, bottom}, {trunk, MiddleOfBox(part) - m_tree.Box(part).height / 2}});
        KeepLine(part);
    }

    /// The corner of lines that leave the side of a box.
    int Beside(double x, double y, double gap) {
        const int start = Bend(x, y, -1);
        return m_isCurved ? start : Bend(x + gap - kGutter / 2, y, start);
    }

    /// Turns the left side around and measures the whole.
    void Finish() {
        for (int i = 0; i < m_tree.Count(); ++i) {
            PlainPlace& place = At(m_placement.places, i);
            const PlainBox& box = m_tree.Box(i);
            place.x = place.isLeft ? -At(m_x, i) - box.width : At(m_x, i);
            place.y = At(m_y, i);
            for (std::size_t p = 0; place.isLeft && p < place.pointCount; ++p)
                m_placement.points[place.firstPoint + p].x *= -1;
            m_placement.left = std::min(m_placement.left, place.x);
            m_placement.top = std::min(m_placement.top, place.y);
            m_placement.right = std::max(m_placement.right, place.x + box.width);
            m_placement.bottom = std::max(m_placement.bottom, place.y + box.height);
        }
    }

    const Packing& m_packing;
    const BoxTree& m_tree;
    std::vector<int> m_chosen;
    std::vector<char> m_isItem;
    std::vector<int> m_laterCorner;  // where lines to a box's later siblings leave the line to that box
    std::vector<double> m_x;         // of a branch, then of its box
    std::vector<double> m_y;
    bool m_areItems = false;  // what is placed are items of a flow
    bool m_isLeft = false;
    bool m_isCurved = false;
    std::vector<Corner> m_corners;
    std::vector<PlainPoint> m_line;
    Placement m_placement;
};

}  // namespace

Placement PlaceByForms(const Packing& packing) { return Placer(packing).Place(); }

}  // namespace mindmap
