#include "mindmap/layout/Placement.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <limits>

namespace mindmap {

namespace {

constexpr double kGrid = 4;
constexpr double kGutter = 12;     // left of what a line reaches from above or below; the line runs in the middle
constexpr double kCorridor = 12;   // above what lines reach from the left; they run in the middle
constexpr double kBelowGap = 8;    // between a box and what stands below it
constexpr double kBesideGap = 16;  // between a box and packed children beside it
constexpr double kCentralGap = 52;
constexpr double kSheetRatio = 4.0 / 3;
constexpr double kMaximumRatio = 2.2;
constexpr double kSmallSheet = 640;     // no tree is packed that fits it
constexpr double kLargestSheet = 2800;  // a larger tree is packed
constexpr double kLeastFill = 0.25;     // of its box
constexpr double kNoBound = std::numeric_limits<double>::max();
constexpr std::size_t kSmall = 8;
constexpr int kLongestPath = 24;  // that is not made a flow

enum class Kind : std::uint8_t {
    Box,      // alone
    Beside,   // a box and its children beside it
    Below,    // a box and its children below it
    Split,    // a box, the first of its children beside it and the others below it
    Flow,     // the heavy path from a box on
    Columns,  // parts in columns
    Over,     // two parts above each other
    Side,     // two parts beside each other
};

/// One way to draw a branch or a group of branches, and the size that it gets.
struct Form {
    double width = 0;
    double height = 0;
    double middle = 0;      // of the box, from the top; of a group's first box
    double lastMiddle = 0;  // of a group's last box, if it is one column
    double bound = 0;       // no part is wider, where it has a form that narrow
    int columnCount = 0;
    int first = -1;  // the forms of the parts
    int second = -1;
    Kind kind = Kind::Box;
};

/// The best form of each proportion. A class ends where the width is so many times the height.
constexpr std::array<double, 27> kClassEnds = {0.0625, 0.125,  0.1875, 0.25,  0.3125, 0.375, 0.4375, 0.5, 0.5625,
                                               0.625,  0.6875, 0.75,   0.875, 1,      1.125, 1.25,   1.5, 1.75,
                                               2,      2.5,    3,      3.5,   4,      6,     8,      16,  kNoBound};

class Forms {
public:
    void Offer(const Form& form)
    {
        std::size_t i = 0;
        while (form.width > kClassEnds[i] * form.height)
            ++i;
        if (m_forms[i].height == 0 || form.width * form.height < m_forms[i].width * m_forms[i].height)
            m_forms[i] = form;
    }
    void MoveTo(std::vector<Form>& forms) const
    {
        for (const Form& form : m_forms)
            if (form.height > 0)
                forms.push_back(form);
    }

private:
    std::array<Form, kClassEnds.size()> m_forms{};
};

/// The forms of one thing in the list of all.
struct FormRange {
    int first = 0;
    int last = 0;
};

/// Neighbours among the children of a box, which share the line that comes from it, or on a heavy path, where a line leads
/// from each to the next. A part of a group is a box (its index) or a smaller group (its index, all bits turned over).
struct Group {
    std::size_t firstMember;
    std::size_t lastMember;
    bool isPath;
    bool isSplit = false;  // into two parts; they may stand in columns all the same
    int first = 0;
    int second = 0;
    FormRange forms{};
};

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

/// A corner of a line and the one before it; lines to neighbours share them.
struct Corner {
    PlainPoint point;
    int before;
};

class Placer {
public:
    Placer(const std::vector<PlainBox>& boxes, bool isPacked)
        : m_boxes(boxes), m_isPacked(isPacked), m_weights(boxes.size()), m_heavy(boxes.size(), -1),
          m_pathLength(boxes.size(), 1), m_area(boxes.size()), m_ranges(boxes.size()), m_itemRanges(boxes.size()),
          m_itemArea(boxes.size()), m_chosen(boxes.size()), m_isItem(boxes.size()), m_x(boxes.size()), m_y(boxes.size())
    {
        m_placement.places.resize(boxes.size());
        FindChildren();
        FindHeavyPaths();
    }

    Placement Place()
    {
        for (int i = Count(); i-- > 1;)
            FindForms(i);
        PlaceCentre();
        for (int i = 1; i < Count(); ++i)
            PlaceChildren(i);
        Finish();
        return std::move(m_placement);
    }

private:
    [[nodiscard]] int Count() const { return static_cast<int>(m_boxes.size()); }
    template <class Values>
    static auto& At(Values& values, int i)
    {
        return values[static_cast<std::size_t>(i)];
    }
    const PlainBox& Box(int i) const { return At(m_boxes, i); }

    // The tree.

    void FindChildren()
    {
        m_firstChild.assign(m_boxes.size() + 1, 0);
        for (int i = 1; i < Count(); ++i)
            ++At(m_firstChild, Box(i).parent + 1);
        for (int i = 0; i < Count(); ++i)
            At(m_firstChild, i + 1) += At(m_firstChild, i);
        m_members.resize(m_boxes.size() - 1);
        std::vector<std::size_t> next(m_firstChild.begin(), m_firstChild.end() - 1);
        for (int i = 1; i < Count(); ++i)
            m_members[At(next, Box(i).parent)++] = i;
    }

    /// The heavy child of a box is the one with the largest branch; the heavy path goes on to it.
    void FindHeavyPaths()
    {
        for (int i = Count(); i-- > 0;) {
            const PlainBox& box = Box(i);
            At(m_weights, i) += (box.width + kGutter) * (box.height + box.siblingGap);
            if (At(m_heavy, i) >= 0)
                At(m_pathLength, i) = At(m_pathLength, At(m_heavy, i)) + 1;
            if (box.parent < 0)
                continue;
            At(m_weights, box.parent) += At(m_weights, i);
            int& heavy = At(m_heavy, box.parent);
            if (heavy < 0 || At(m_weights, i) >= At(m_weights, heavy))
                heavy = i;
        }
    }

    // Forms, from the leaves to the centre.

    FormRange Add(const Forms& forms)
    {
        const int first = static_cast<int>(m_forms.size());
        forms.MoveTo(m_forms);
        return {first, static_cast<int>(m_forms.size())};
    }

    FormRange RangeOf(int part) const
    {
        return part < 0 ? At(m_groups, ~part).forms : m_areItems ? At(m_itemRanges, part) : At(m_ranges, part);
    }

    /// The flattest form that is no wider than the bound; the narrowest when there is none.
    int FormWithin(int part, double bound) const
    {
        const FormRange range = RangeOf(part);
        int best = -1;
        int narrowest = range.first;
        for (int f = range.first; f < range.last; ++f) {
            const Form& form = At(m_forms, f);
            if (form.width < At(m_forms, narrowest).width)
                narrowest = f;
            if (form.width <= bound && (best < 0 || form.height < At(m_forms, best).height))
                best = f;
        }
        return best < 0 ? narrowest : best;
    }

    /// Deals m_parts to columns, in their order and as evenly as it gets.
    void Deal(int columnCount)
    {
        double total = 0;
        double tallest = 0;
        for (const Part& part : m_parts) {
            total += part.height + part.gap;
            tallest = std::max(tallest, part.height);
        }
        const auto fits = [&](double limit) {
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
        };
        double enough = total / columnCount + (columnCount > 1 ? tallest : 0);
        double tooLow = std::max(tallest, total / columnCount - m_parts.back().gap) - kGrid;
        while (enough - tooLow > kGrid) {
            const double middle = (enough + tooLow) / 2;
            (middle >= tallest && fits(middle) ? enough : tooLow) = middle;
        }
        fits(enough);
    }

    /// Arranges m_parts in columns; they get their forms and their places.
    Form Arrange(double bound, int columnCount)
    {
        for (Part& part : m_parts) {
            part.form = FormWithin(part.part, bound);
            part.width = At(m_forms, part.form).width;
            part.height = At(m_forms, part.form).height;
            part.gap = Box(part.part).siblingGap;
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
    double MiddleOf(const Part& part) const { return part.y + At(m_forms, part.form).middle; }

    /// Calls `use` for arrangements of m_parts from narrow to wide.
    template <class Use>
    void TryArrangements(Use use)
    {
        double narrowest = 0;
        double widest = 0;
        for (const Part& part : m_parts) {
            const FormRange range = RangeOf(part.part);
            narrowest = std::max(narrowest, At(m_forms, FormWithin(part.part, 0)).width);
            for (int f = range.first; f < range.last; ++f)
                widest = std::max(widest, At(m_forms, f).width);
        }
        const int partCount = static_cast<int>(m_parts.size());
        for (double bound = narrowest;; bound = std::min(bound * 1.375, widest)) {
            for (int columnCount = 1; columnCount <= partCount; columnCount += std::max(1, columnCount / 5))
                use(Arrange(bound, columnCount));
            if (bound >= widest)
                break;
        }
    }

    void Collect(const Group& group)
    {
        m_parts.clear();
        for (std::size_t m = group.firstMember; m < group.lastMember; ++m)
            m_parts.push_back({m_members[m]});
        m_areItems = group.isPath;
    }

    double WeightOf(std::size_t member, bool isPath) const
    {
        const int i = m_members[member];
        return At(m_weights, i) - (isPath && At(m_heavy, i) >= 0 ? At(m_weights, At(m_heavy, i)) : 0);
    }

    /// Makes one part of neighbours, and finds its forms.
    int MakeGroup(std::size_t first, std::size_t last, bool isPath)
    {
        if (last - first == 1)
            return m_members[first];
        Group group{first, last, isPath};
        double total = 0;
        std::size_t heaviest = first;
        for (std::size_t m = first; m < last; ++m) {
            const int i = m_members[m];
            const bool isAlone =
                At(m_heavy, i) < 0 || (isPath && At(m_forms, At(m_itemRanges, i).first).kind == Kind::Box);
            group.isSplit = group.isSplit || (m_isPacked && (!isAlone || (!isPath && last - first <= kSmall)));
            total += WeightOf(m, isPath);
            heaviest = WeightOf(m, isPath) > WeightOf(heaviest, isPath) ? m : heaviest;
        }
        const bool isLopsided = 2 * WeightOf(heaviest, isPath) >= total;
        Forms forms;
        Collect(group);
        if (!m_isPacked)
            forms.Offer(Arrange(kNoBound, 1));
        else if (!group.isSplit || !isLopsided || last - first == 2)
            TryArrangements([&](const Form& area) { forms.Offer(area); });
        if (group.isSplit) {
            const std::size_t split = !isLopsided         ? HalfWay(first, last, total, isPath)
                                      : heaviest == first ? first + 1
                                                          : heaviest;
            group.first = MakeGroup(first, split, isPath);
            group.second = MakeGroup(split, last, isPath);
            Combine(group, forms);
        }
        group.forms = Add(forms);
        m_groups.push_back(group);
        return ~static_cast<int>(m_groups.size() - 1);
    }

    /// Where neighbours are cut in two of about the same weight.
    std::size_t HalfWay(std::size_t first, std::size_t last, double total, bool isPath) const
    {
        std::size_t split = first;
        double weight = 0;
        while (split + 1 < last && 2 * weight + WeightOf(split, isPath) < total)
            weight += WeightOf(split++, isPath);
        return std::max(split, first + 1);
    }

    void Combine(const Group& group, Forms& forms)
    {
        m_areItems = group.isPath;
        const double gap = GapIn(group);
        const double corridor = group.isPath ? 0 : kCorridor;
        const double turn = group.isPath ? kBelowGap : 0;
        const FormRange firsts = RangeOf(group.first);
        const FormRange seconds = RangeOf(group.second);
        for (int f = firsts.first; f < firsts.last; ++f)
            for (int s = seconds.first; s < seconds.last; ++s) {
                const Form& a = At(m_forms, f);
                const Form& b = At(m_forms, s);
                forms.Offer({.width = std::max(a.width, b.width),
                             .height = a.height + gap + b.height,
                             .middle = a.middle,
                             .first = f,
                             .second = s,
                             .kind = Kind::Over});
                forms.Offer({.width = a.width + kGutter + b.width,
                             .height = corridor + std::max(a.height + turn, b.height),
                             .middle = corridor + a.middle,
                             .first = f,
                             .second = s,
                             .kind = Kind::Side});
            }
    }
    double GapIn(const Group& group) const { return Box(m_members[group.lastMember - 1]).siblingGap; }

    bool IsColumn(int form) const
    {
        const Form& f = At(m_forms, form);
        return f.kind <= Kind::Flow || (f.kind == Kind::Columns && f.columnCount == 1);
    }
    bool HasCorridor(int form) const
    {
        const Form& f = At(m_forms, form);
        return f.kind == Kind::Side || (f.kind == Kind::Columns && f.columnCount > 1);
    }

    /// A box and an area beside it, in which the line goes straight into the first box or the corridor: how much lower
    /// the area begins; how much higher, when negative.
    double DropBeside(int i, int area) const
    {
        const Form& a = At(m_forms, area);
        return Box(i).height / 2 - (HasCorridor(area) ? kCorridor / 2 : a.middle);
    }

    Form FormBeside(int i, int area) const
    {
        const PlainBox& box = Box(i);
        const Form& a = At(m_forms, area);
        Form form{.middle = box.height / 2, .first = area, .kind = Kind::Beside};
        if (IsColumn(area)) {
            const double centre = a.kind == Kind::Columns ? (a.middle + a.lastMiddle) / 2 : a.middle;
            form.width = box.width + (m_isPacked ? kBesideGap : box.childGap) + a.width;
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

    Form FormBelow(int i, int area, double indent) const
    {
        const PlainBox& box = Box(i);
        const Form& a = At(m_forms, area);
        return {.width = std::max(box.width, indent + a.width),
                .height = box.height + kBelowGap + a.height,
                .middle = box.height / 2,
                .first = area,
                .kind = Kind::Below};
    }

    /// What stands below a box is indented, for the line beside it; only a single branch is not, under a box that is no
    /// item of a flow: below an item the line goes on.
    static double Indent(int part, bool isItem) { return part >= 0 && !isItem ? 0 : kGutter; }

    Form FormSplit(int i, int beside, int below, double indent) const
    {
        const PlainBox& box = Box(i);
        const Form& a = At(m_forms, beside);
        const Form& b = At(m_forms, below);
        const double drop = DropBeside(i, beside);
        return {.width = std::max(box.width + kBesideGap + a.width, indent + b.width),
                .height = TopOfSecond(i, beside) + b.height,
                .middle = box.height / 2 + std::max(0.0, -drop),
                .first = beside,
                .second = below,
                .kind = Kind::Split};
    }
    double TopOfSecond(int i, int beside) const
    {
        const double drop = DropBeside(i, beside);
        return std::max(Box(i).height + std::max(0.0, -drop), std::max(0.0, drop) + At(m_forms, beside).height) +
               kBelowGap;
    }

    /// The forms of a box with an area of children.
    void OfferWithArea(int i, int area, bool isItem, Forms& forms)
    {
        m_areItems = false;
        const FormRange range = RangeOf(area);
        for (int f = range.first; f < range.last; ++f) {
            forms.Offer(FormBeside(i, f));
            if (m_isPacked)
                forms.Offer(FormBelow(i, f, Indent(area, isItem)));
        }
        if (area >= 0 || !At(m_groups, ~area).isSplit)
            return;
        const Group& group = At(m_groups, ~area);
        const FormRange firsts = RangeOf(group.first);
        const FormRange seconds = RangeOf(group.second);
        for (int f = firsts.first; f < firsts.last; ++f)
            for (int s = seconds.first; s < seconds.last; ++s)
                forms.Offer(FormSplit(i, f, s, Indent(group.second, isItem)));
    }

    void FindForms(int i)
    {
        Forms alone;
        alone.Offer({.width = Box(i).width, .height = Box(i).height, .middle = Box(i).height / 2});
        if (At(m_heavy, i) < 0) {
            At(m_ranges, i) = At(m_itemRanges, i) = Add(alone);
            return;
        }
        if (!m_isPacked || At(m_pathLength, i) <= kLongestPath) {
            Forms forms;
            At(m_area, i) = MakeGroup(At(m_firstChild, i), At(m_firstChild, i + 1), false);
            OfferWithArea(i, At(m_area, i), false, forms);
            At(m_ranges, i) = Add(forms);
        }
        const int parent = Box(i).parent;
        const bool isHead = parent == 0 || At(m_heavy, parent) != i;
        const int head = HeadLength(i);
        if (!m_isPacked || head <= kLongestPath)
            return;
        FindItemForms(i, alone);
        if (!isHead)
            return;
        const std::size_t first = m_members.size();
        for (int p = i; p >= 0; p = At(m_heavy, p))
            m_members.push_back(p);
        At(m_area, i) = MakeGroup(first, m_members.size(), true);
        const FormRange path = RangeOf(At(m_area, i));
        At(m_ranges, i).first = static_cast<int>(m_forms.size());
        for (int f = path.first; f < path.last; ++f) {
            const Form& form = At(m_forms, f);
            m_forms.push_back(
                {.width = form.width, .height = form.height, .middle = form.middle, .first = f, .kind = Kind::Flow});
        }
        At(m_ranges, i).last = static_cast<int>(m_forms.size());
    }

    /// How long the heavy path is that a box is on, up to kLongestPath + 1.
    int HeadLength(int i) const
    {
        int length = At(m_pathLength, i);
        while (length <= kLongestPath && Box(i).parent > 0 && At(m_heavy, Box(i).parent) == i) {
            i = Box(i).parent;
            ++length;
        }
        return length;
    }

    /// An item of a flow is a box with all children but the heavy one.
    void FindItemForms(int i, Forms& forms)
    {
        std::size_t first = At(m_firstChild, i);
        const std::size_t last = At(m_firstChild, i + 1);
        if (last - first == 1) {
            At(m_itemRanges, i) = Add(forms);
            return;
        }
        // The heavy child goes to the front, where no group asks for it any more.
        const auto begin = m_members.begin() + static_cast<std::ptrdiff_t>(first);
        const auto heavy = std::find(begin, m_members.begin() + static_cast<std::ptrdiff_t>(last), At(m_heavy, i));
        std::rotate(begin, heavy, heavy + 1);
        At(m_itemArea, i) = MakeGroup(first + 1, last, false);
        Forms withChildren;
        OfferWithArea(i, At(m_itemArea, i), true, withChildren);
        At(m_itemRanges, i) = Add(withChildren);
    }

    // Places, from the centre to the leaves. x grows away from the centre.

    void PlaceCentre()
    {
        const PlainBox& centre = Box(0);
        m_x[0] = -centre.width / 2;
        m_y[0] = -centre.height / 2;
        if (Count() == 1)
            return;
        const std::size_t first = m_firstChild[0];
        const std::size_t last = m_firstChild[1];
        double total = 0;
        for (std::size_t c = first; c < last; ++c)
            total += WeightOf(c, false);
        std::array<int, 2> best{};
        std::array<int, 2> bestParts{};
        double bestSheet = kNoBound;
        const std::size_t half = last - first == 1 ? last : HalfWay(first, last, total, false);
        for (std::size_t split = half; split <= std::min(half + 1, last); ++split) {
            if (split == last && last - first > 1)
                break;
            const int right = MakeGroup(first, split, false);
            const int left = split == last ? right : MakeGroup(split, last, false);
            m_areItems = false;
            const FormRange rights = RangeOf(right);
            const FormRange lefts = split == last ? FormRange{0, 1} : RangeOf(left);
            for (int r = rights.first; r < rights.last; ++r)
                for (int l = lefts.first; l < lefts.last; ++l) {
                    const double sheet = SheetFor(At(m_forms, r), split == last ? nullptr : &At(m_forms, l));
                    if (sheet < bestSheet) {
                        bestSheet = sheet;
                        best = {r, split == last ? -1 : l};
                        bestParts = {right, left};
                    }
                }
        }
        PlaceSide(bestParts[0], best[0], false);
        if (best[1] >= 0)
            PlaceSide(bestParts[1], best[1], true);
    }

    /// The width of the sheet of 4 : 3 that is needed; a longish one counts twice. What is not packed is just balanced.
    double SheetFor(const Form& right, const Form* left) const
    {
        const PlainBox& centre = Box(0);
        if (!m_isPacked)
            return std::max(right.height, left != nullptr ? left->height : 0);
        const double width =
            centre.width + kCentralGap + right.width + (left != nullptr ? kCentralGap + left->width : 0);
        const double height = std::max({centre.height, right.height, left != nullptr ? left->height : 0});
        const bool isLongish = width > kMaximumRatio * height || height > kMaximumRatio * width;
        return std::max(width, height * kSheetRatio) * (isLongish ? 2 : 1);
    }

    void PlaceSide(int part, int form, bool isLeft)
    {
        m_areItems = false;
        const double edge = Box(0).width / 2;
        const double top = std::floor(-At(m_forms, form).height / 2 / kGrid) * kGrid;
        m_isLeft = isLeft;
        m_isCurved = IsColumn(form);
        const int start = Bend(edge, 0, -1);
        PlacePart(part, form, edge + kCentralGap, top,
                  m_isCurved ? start : Bend(edge + kCentralGap - kGutter / 2, 0, start));
    }
    int Bend(double x, double y, int before)
    {
        m_corners.push_back({{x, y}, before});
        return static_cast<int>(m_corners.size()) - 1;
    }

    /// Places a box, or the parts of a group; `corner` is the last one of the lines that lead there.
    void PlacePart(int part, int formIndex, double x, double y, int corner)
    {
        const Form form = At(m_forms, formIndex);
        if (part >= 0) {
            PlaceBox(part, formIndex, x, y);
            if (corner >= 0)
                DrawLine(part, corner);
            return;
        }
        const Group group = At(m_groups, ~part);
        if (form.kind == Kind::Columns) {
            PlaceColumns(group, form, x, y, corner);
            return;
        }
        const double below = y + At(m_forms, form.first).height;
        const double beside = x + At(m_forms, form.first).width + kGutter;
        if (form.kind == Kind::Over) {
            PlacePart(group.first, form.first, x, y, corner);
            PlacePart(group.second, form.second, x, below + GapIn(group), corner);
        } else if (group.isPath) {
            PlacePart(group.first, form.first, x, y, corner);
            PlacePart(group.second, form.second, beside, y, corner);
        } else {
            const double bus = y + kCorridor / 2;
            PlacePart(group.first, form.first, x, y + kCorridor, corner);
            PlacePart(group.second, form.second, beside, y + kCorridor,
                      Bend(beside - kGutter / 2, bus, Bend(x - kGutter / 2, bus, corner)));
        }
        if (group.isPath) {
            const std::size_t next = SecondMember(group);
            DrawNext(m_members[next - 1], m_members[next], below, form.kind == Kind::Over);
        }
    }

    /// Where the second part of a group begins.
    std::size_t SecondMember(const Group& group) const
    {
        return group.first < 0 ? At(m_groups, ~group.first).lastMember : group.firstMember + 1;
    }

    void PlaceColumns(const Group& group, const Form& form, double x, double y, int corner)
    {
        Collect(group);
        Arrange(form.bound, form.columnCount);
        const int bus = m_parts.back().column > 0 ? Bend(x - kGutter / 2, y + kCorridor / 2, corner) : corner;
        int way = corner;
        for (std::size_t i = 0; i < m_parts.size(); ++i) {
            const Part& p = m_parts[i];
            const bool isNewColumn = i > 0 && p.column != m_parts[i - 1].column;
            PlaceBox(p.part, p.form, x + p.x, y + p.y);
            if (group.isPath) {
                if (i > 0)
                    DrawNext(m_parts[i - 1].part, p.part, y + m_parts[i - 1].y + m_parts[i - 1].height, !isNewColumn);
                continue;
            }
            if (isNewColumn)
                way = Bend(x + p.x - kGutter / 2, y + kCorridor / 2, bus);
            DrawLine(p.part, way);
        }
    }

    /// The line from a topic of a path, below which nothing stands down to `bottom`, to the next one below or beside it.
    void DrawNext(int from, int to, double bottom, bool isBelow)
    {
        const double start = At(m_x, from) + kGutter / 2;
        const double turn = bottom + kBelowGap / 2;
        const double x = At(m_x, to);
        const double middle = MiddleOfBox(to);
        m_line.assign({{start, MiddleOfBox(from) + Box(from).height / 2}, {start, turn}});
        if (isBelow)
            m_line.insert(m_line.end(), {{x + kGutter / 2, turn}, {x + kGutter / 2, middle - Box(to).height / 2}});
        else
            m_line.insert(m_line.end(), {{x - kGutter / 2, turn}, {x - kGutter / 2, middle}, {x, middle}});
        KeepLine(to);
    }

    void PlaceBox(int i, int form, double x, double y)
    {
        At(m_x, i) = x;
        At(m_y, i) = y;
        At(m_chosen, i) = form;
        At(m_isItem, i) = m_areItems ? 1 : 0;
        At(m_placement.places, i).isLeft = m_isLeft;
    }

    double MiddleOfBox(int i) const { return At(m_y, i) + At(m_forms, At(m_chosen, i)).middle; }

    /// The line to a box whose branch is placed: along the corners, down or up the gutter beside the box, and into it.
    void DrawLine(int i, int corner)
    {
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

    /// Leaves out corners that are none.
    void KeepLine(int i)
    {
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

    void PlaceChildren(int i)
    {
        const PlainBox& box = Box(i);
        const Form form = At(m_forms, At(m_chosen, i));
        const double x = At(m_x, i);
        const double y = At(m_y, i);
        const double middle = y + form.middle;
        const int area = At(m_isItem, i) ? At(m_itemArea, i) : At(m_area, i);
        m_isLeft = At(m_placement.places, i).isLeft;
        m_isCurved = false;
        m_areItems = false;
        const double below = box.height + kBelowGap;
        switch (form.kind) {
        case Kind::Flow:
            m_areItems = true;
            PlacePart(At(m_area, i), form.first, x, y, -1);
            PlaceChildren(i);  // the first topic of the path, as an item
            return;
        case Kind::Beside: {
            m_isCurved = IsColumn(form.first);
            const Form& a = At(m_forms, form.first);
            const double gap = m_isCurved && !m_isPacked ? box.childGap : kBesideGap;
            const double top = m_isCurved ? (form.height - a.height) / 2 : std::max(0.0, DropBeside(i, form.first));
            PlacePart(area, form.first, x + box.width + gap, y + top, Beside(x + box.width, middle, gap));
            break;
        }
        case Kind::Below:
            PlaceBelow(i, area, form.first, x, middle + box.height / 2, y + below);
            break;
        case Kind::Split: {
            const Group group = At(m_groups, ~area);
            PlacePart(group.first, form.first, x + box.width + kBesideGap, y + std::max(0.0, DropBeside(i, form.first)),
                      Beside(x + box.width, middle, kBesideGap));
            PlaceBelow(i, group.second, form.second, x, middle + box.height / 2, y + TopOfSecond(i, form.first));
            break;
        }
        default:
            break;
        }
        At(m_y, i) = middle - box.height / 2;  // from now on the box, no longer its branch
    }

    void PlaceBelow(int i, int part, int form, double x, double bottom, double top)
    {
        const double indent = Indent(part, At(m_isItem, i) != 0);
        const double trunk = x + kGutter / 2;
        PlacePart(part, form, x + indent, top, indent > 0 ? Bend(trunk, bottom, -1) : -1);
        if (indent > 0)
            return;
        m_line.assign({{trunk, bottom}, {trunk, MiddleOfBox(part) - Box(part).height / 2}});
        KeepLine(part);
    }

    /// The corner of lines that leave the side of a box.
    int Beside(double x, double y, double gap)
    {
        const int start = Bend(x, y, -1);
        return m_isCurved ? start : Bend(x + gap - kGutter / 2, y, start);
    }

    /// Turns the left side around and measures the whole.
    void Finish()
    {
        double left = 0;
        double right = 0;
        double top = 0;
        double bottom = 0;
        for (int i = 0; i < Count(); ++i) {
            PlainPlace& place = At(m_placement.places, i);
            const PlainBox& box = Box(i);
            place.x = place.isLeft ? -At(m_x, i) - box.width : At(m_x, i);
            place.y = At(m_y, i);
            for (std::size_t p = 0; place.isLeft && p < place.pointCount; ++p)
                m_placement.points[place.firstPoint + p].x *= -1;
            left = std::min(left, place.x);
            right = std::max(right, place.x + box.width);
            top = std::min(top, place.y);
            bottom = std::max(bottom, place.y + box.height);
        }
        m_placement.width = right - left;
        m_placement.height = bottom - top;
    }

    const std::vector<PlainBox>& m_boxes;
    const bool m_isPacked;
    std::vector<double> m_weights;
    std::vector<std::size_t> m_firstChild;
    std::vector<int> m_members;
    std::vector<int> m_heavy;
    std::vector<int> m_pathLength;

    std::vector<Form> m_forms;
    std::vector<Group> m_groups;
    std::vector<int> m_area;  // the part that all children of a box are
    std::vector<FormRange> m_ranges;
    std::vector<FormRange> m_itemRanges;
    std::vector<int> m_itemArea;
    std::vector<Part> m_parts;
    bool m_areItems = false;  // m_parts are items of a flow

    std::vector<int> m_chosen;
    std::vector<char> m_isItem;
    std::vector<double> m_x;  // of a branch, then of its box
    std::vector<double> m_y;
    bool m_isLeft = false;
    bool m_isCurved = false;
    std::vector<Corner> m_corners;
    std::vector<PlainPoint> m_line;
    Placement m_placement;
};

}  // namespace

Placement PlaceBoxes(const std::vector<PlainBox>& boxes)
{
    Placement plain = Placer(boxes, false).Place();
    const double longer = std::max(plain.width, plain.height);
    const double shorter = std::min(plain.width, plain.height);
    double area = 0;
    for (const PlainBox& box : boxes)
        area += (box.width + box.childGap) * (box.height + box.siblingGap);
    const bool isFull = area >= kLeastFill * plain.width * plain.height;
    if (longer <= kSmallSheet || (longer <= kLargestSheet && longer <= kMaximumRatio * shorter && isFull))
        return plain;
    return Placer(boxes, true).Place();
}

}  // namespace mindmap
