#pragma once

#include "mindmap/layout/BoxTree.h"

#include <array>
#include <cstdint>
#include <limits>

namespace mindmap {

constexpr double kGridStep = 4;
constexpr double kCorridor = 12;   // above what lines reach from the left; they run in the middle
constexpr double kBelowGap = 8;    // between a box and what stands below it
constexpr double kBesideGap = 16;  // between a box and packed children beside it
constexpr double kCentralGap = 52;
constexpr double kMaximumRatio = 2.2;
constexpr double kNoBound = std::numeric_limits<double>::max();

enum class Kind : std::uint8_t {
    Box,       // alone
    Beside,    // a box and its children beside it
    Below,     // a box and its children below it
    Split,     // a box, the first of its children beside it and the others below it
    Followed,  // an item of a flow and, beside it, the later siblings of its box
    Flow,      // the heavy path from a box on
    Columns,   // parts in columns
    Over,      // two parts above each other
    Side,      // two parts beside each other
};

/// One way to draw a branch or a group of branches, and the size that it gets.
struct Form {
    double width = 0;
    double height = 0;
    double middle = 0;  // of the box, from the top; of a group's first box
    Kind kind = Kind::Box;
    int first = -1;  // the forms of the parts
    int second = -1;
    double lastMiddle = 0;  // of a group's last box, if it is one column
    double bound = 0;       // no part is wider, if it has a form of that width
    int columnCount = 0;
};

/// The best form of each proportion. A class ends where the width is this multiple of the height.
constexpr std::array<double, 27> kClassEnds = {0.0625, 0.125,  0.1875, 0.25,  0.3125, 0.375, 0.4375, 0.5, 0.5625,
                                               0.625,  0.6875, 0.75,   0.875, 1,      1.125, 1.25,   1.5, 1.75,
                                               2,      2.5,    3,      3.5,   4,      6,     8,      16,  kNoBound};

class BestForms {
public:
    void Offer(const Form& form) {
        std::size_t i = 0;
        while (form.width > kClassEnds[i] * form.height)
            ++i;
        if (m_forms[i].height == 0 || form.width * form.height < m_forms[i].width * m_forms[i].height)
            m_forms[i] = form;
    }
    void MoveTo(std::vector<Form>& forms) const {
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

/// Neighbours among the children of a box, which share the line that comes from it, or on a heavy path, where a line
/// leads from each to the next. A part of a group is a box (its index) or a smaller group (~ its index).
struct Group {
    std::size_t firstMember;  // in Packing::members
    std::size_t lastMember;
    bool isPath;
    bool isSplit = false;  // into two parts; they may stand in columns all the same
    int first = 0;
    int second = 0;
    FormRange forms{};
};

/// A box of a flow with those of its children that come before the heavy one, and with its own later siblings.
struct FlowItem {
    FormRange forms{};
    double weight = 0;
    int before = 0;  // the part that the children are
    int later = 0;   // the part that the siblings are
};

/// What stands on a side of the centre; a form of -1 is nothing.
struct SidePart {
    int part = -1;
    int form = -1;
};

/// All forms of all branches, and the sizes of forms that are made of others.
struct Packing {
    Packing(const BoxTree& allBoxes, bool isSheetLarge);

    FormRange RangeOf(int part, bool isItem) const;
    /// The flattest form that is no wider than the bound; the narrowest form when all are wider.
    int FormWithin(int part, bool isItem, double bound) const;
    FormRange Add(const BestForms& best);

    Form FormBeside(int i, int area) const;
    Form FormBelow(int i, int area, double indent) const;
    Form FormSplit(int i, int beside, int below, double indent) const;
    Form FormFollowed(int item, int later) const;
    Form FormOver(const Group& group, int first, int second) const;
    Form FormSide(const Group& group, int first, int second) const;

    bool IsColumn(int form) const;
    double GapIn(const Group& group) const { return tree.Box(members[group.lastMember - 1]).siblingGap; }
    /// A box and an area beside it, in which the line goes straight into the first box or the corridor: how much lower
    /// the area begins; how much higher, when negative.
    double DropBeside(int i, int area) const;
    double TopOfSecond(int i, int beside) const;
    /// What stands below a box is indented, for the line beside it. A single branch is not indented below a box that is
    /// no item of a flow, since the line ends there.
    static double Indent(int part, bool isItem) { return part >= 0 && !isItem ? 0 : kGutter; }

    const BoxTree& tree;
    const bool isPacked;
    std::vector<int> members;  // the tree's, and behind them those of each flow
    std::vector<Form> forms;
    std::vector<Group> groups;
    std::vector<int> areas;  // the part that all children of a box are, or the whole path of a flow's first box
    std::vector<FormRange> ranges;
    std::vector<FlowItem> items;
    SidePart right;
    SidePart left;
};

/// Finds the forms of all branches, from the leaves to the centre, and those of the two sides that make the best sheet.
/// When `isPacked` is false every branch has one form, its children in a column beside it.
Packing FindForms(const BoxTree& tree, bool isPacked);

/// Places boxes and lines by the forms that were chosen for the two sides, from the centre to the leaves.
Placement PlaceByForms(const Packing& packing);

}  // namespace mindmap
