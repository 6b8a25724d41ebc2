#include "mindmap/layout/Columns.h"

#include <algorithm>

namespace mindmap {

namespace {

constexpr double kSheetRatio = 4.0 / 3;
constexpr std::size_t kSmall = 8;

class FormFinder {
public:
    FormFinder(const BoxTree& tree, bool isPacked) : m_tree(tree), m_packing(tree, isPacked) {}

    Packing Find() {
        for (int i = m_tree.Count(); i-- > 1;)
            FindForms(i);
        if (m_tree.Count() > 1)
            ChooseSides();
        return std::move(m_packing);
    }

private:
    const Form& At(int form) const { return mindmap::At(m_packing.forms, form); }
    Group& GroupOf(int part) { return mindmap::At(m_packing.groups, ~part); }
    std::size_t FirstChild(int i) const { return mindmap::At(m_tree.firstChild, i); }

    double WeightOf(std::size_t member, bool isPath) const {
        const int i = m_packing.members[member];
        return isPath ? mindmap::At(m_packing.items, i).weight : mindmap::At(m_tree.weights, i);
    }
    double WeightOf(std::size_t first, std::size_t last, bool isPath) const {
        double weight = 0;
        for (; first < last; ++first)
            weight += WeightOf(first, isPath);
        return weight;
    }

    /// Where neighbours are cut in two of about the same weight.
    std::size_t HalfWay(std::size_t first, std::size_t last, bool isPath) const {
        const double total = WeightOf(first, last, isPath);
        std::size_t split = first;
        double weight = 0;
        while (split + 1 < last && 2 * weight + WeightOf(split, isPath) < total)
            weight += WeightOf(split++, isPath);
        return std::max(split, first + 1);
    }

    /// Makes one part of neighbours, and finds its forms.
    int MakeGroup(std::size_t first, std::size_t last, bool isPath) {
        if (last - first == 1)
            return m_packing.members[first];
        Group group{first, last, isPath};
        std::size_t heaviest = first;
        for (std::size_t m = first; m < last; ++m) {
            const bool isAlone = At(m_packing.RangeOf(m_packing.members[m], isPath).first).kind == Kind::Box;
            group.isSplit = group.isSplit || (m_packing.isPacked && (!isAlone || (!isPath && last - first <= kSmall)));
            heaviest = WeightOf(m, isPath) > WeightOf(heaviest, isPath) ? m : heaviest;
        }
        const bool isLopsided = 2 * WeightOf(heaviest, isPath) >= WeightOf(first, last, isPath);
        BestForms best;
        if (Columns columns(m_packing, group); !m_packing.isPacked)
            best.Offer(columns.Arrange(kNoBound, 1));
        else if (!group.isSplit || !isLopsided || last - first == 2)
            columns.OfferAll(best);
        if (group.isSplit) {
            const std::size_t split = !isLopsided         ? HalfWay(first, last, isPath)
                                      : heaviest == first ? first + 1
                                                          : heaviest;
            group.first = MakeGroup(first, split, isPath);
            group.second = MakeGroup(split, last, isPath);
            ForEachPair(m_packing.RangeOf(group.first, isPath), m_packing.RangeOf(group.second, isPath),
                        [&](int f, int s) {
                            best.Offer(m_packing.FormOver(group, f, s));
                            best.Offer(m_packing.FormSide(group, f, s));
                        });
        }
        group.forms = m_packing.Add(best);
        m_packing.groups.push_back(group);
        return ~static_cast<int>(m_packing.groups.size() - 1);
    }

    /// Calls `use` for every form of one part with every form of another.
    template <class Use> static void ForEachPair(FormRange firsts, FormRange seconds, Use use) {
        for (int f = firsts.first; f < firsts.last; ++f)
            for (int s = seconds.first; s < seconds.last; ++s)
                use(f, s);
    }

    void FindForms(int i) {
        if (m_packing.isPacked && mindmap::At(m_tree.isInFlow, i) != 0) {
            FindItemForms(i);
            if (m_tree.IsPathHead(i))
                FindFlowForms(i);
            return;
        }
        BestForms best;
        if (m_tree.IsLeaf(i))
            OfferAlone(i, best);
        else
            OfferWithArea(i, mindmap::At(m_packing.areas, i) = MakeGroup(FirstChild(i), FirstChild(i + 1), false),
                          /*isItem=*/false, best);
        mindmap::At(m_packing.ranges, i) = m_packing.Add(best);
    }

    void OfferAlone(int i, BestForms& best) const {
        const PlainBox& box = m_tree.Box(i);
        best.Offer({box.width, box.height, box.height / 2});
    }

    /// The forms of a box with an area of children.
    void OfferWithArea(int i, int area, bool isItem, BestForms& best) {
        const FormRange range = m_packing.RangeOf(area, /*isItem=*/false);
        for (int f = range.first; f < range.last; ++f) {
            best.Offer(m_packing.FormBeside(i, f));
            if (m_packing.isPacked)
                best.Offer(m_packing.FormBelow(i, f, Packing::Indent(area, isItem)));
        }
        if (area >= 0 || !GroupOf(area).isSplit)
            return;
        const Group& group = GroupOf(area);
        ForEachPair(m_packing.RangeOf(group.first, false), m_packing.RangeOf(group.second, false), [&](int f, int s) {
            best.Offer(m_packing.FormSplit(i, f, s, Packing::Indent(group.second, isItem)));
        });
    }

    void FindItemForms(int i) {
        FlowItem item;
        const int heavy = mindmap::At(m_tree.heavy, i);
        const std::size_t firstBefore = FirstChild(i);
        const std::size_t lastBefore = heavy < 0 ? firstBefore : PositionOf(heavy);
        item.weight = mindmap::At(m_tree.weights, i) - WeightOf(lastBefore, FirstChild(i + 1), false);
        BestForms best;
        if (firstBefore == lastBefore)
            OfferAlone(i, best);
        else
            OfferWithArea(i, item.before = MakeGroup(firstBefore, lastBefore, false), /*isItem=*/true, best);
        item.forms = m_packing.Add(best);

        const std::size_t firstLater = PositionOf(i) + 1;
        const std::size_t lastLater = FirstChild(m_tree.Box(i).parent + 1);
        if (!m_tree.IsPathHead(i) && firstLater < lastLater) {
            item.weight += WeightOf(firstLater, lastLater, false);
            item.later = MakeGroup(firstLater, lastLater, false);
            BestForms followed;
            ForEachPair(item.forms, m_packing.RangeOf(item.later, false),
                        [&](int f, int s) { followed.Offer(m_packing.FormFollowed(f, s)); });
            item.forms = m_packing.Add(followed);
        }
        mindmap::At(m_packing.items, i) = item;
    }

    /// Where a box stands among its parent's children.
    std::size_t PositionOf(int i) const {
        const int parent = m_tree.Box(i).parent;
        const auto first = m_tree.members.begin() + static_cast<std::ptrdiff_t>(FirstChild(parent));
        const auto last = m_tree.members.begin() + static_cast<std::ptrdiff_t>(FirstChild(parent + 1));
        return static_cast<std::size_t>(std::lower_bound(first, last, i) - m_tree.members.begin());
    }

    void FindFlowForms(int head) {
        const std::size_t first = m_packing.members.size();
        for (int i = head; i >= 0; i = mindmap::At(m_tree.heavy, i))
            m_packing.members.push_back(i);
        mindmap::At(m_packing.areas, head) = MakeGroup(first, m_packing.members.size(), true);
        const FormRange path = m_packing.RangeOf(mindmap::At(m_packing.areas, head), false);
        FormRange& range = mindmap::At(m_packing.ranges, head);
        range.first = static_cast<int>(m_packing.forms.size());
        for (int f = path.first; f < path.last; ++f) {
            const Form& form = At(f);
            m_packing.forms.push_back({form.width, form.height, form.middle, Kind::Flow, f});
        }
        range.last = static_cast<int>(m_packing.forms.size());
    }

    /// Deals the main topics to two sides, as evenly as it gets.
    void ChooseSides() {
        const std::size_t last = FirstChild(1);
        if (last == 1) {
            ForEachPair(m_packing.RangeOf(m_packing.members[0], false), {-1, 0},
                        [&](int r, int l) { Try({m_packing.members[0], r}, {-1, l}); });
            return;
        }
        const std::size_t half = HalfWay(0, last, false);
        for (std::size_t split = half; split <= half + 1 && split < last; ++split) {
            const int right = MakeGroup(0, split, false);
            const int left = MakeGroup(split, last, false);
            ForEachPair(m_packing.RangeOf(right, false), m_packing.RangeOf(left, false),
                        [&](int r, int l) { Try({right, r}, {left, l}); });
        }
    }

    void Try(SidePart right, SidePart left) {
        const double sheet = SheetFor(right.form, left.form);
        if (sheet >= m_bestSheet)
            return;
        m_bestSheet = sheet;
        m_packing.right = right;
        m_packing.left = left;
    }

    /// The width of the 4 : 3 sheet that is needed, doubled for a longish map; the height alone of an unpacked map.
    double SheetFor(int rightForm, int leftForm) const {
        const PlainBox& centre = m_tree.Box(0);
        const Form right = At(rightForm);
        const Form left = leftForm < 0 ? Form{-kCentralGap} : At(leftForm);
        if (!m_packing.isPacked)
            return std::max(right.height, left.height);
        const double width = centre.width + kCentralGap + right.width + kCentralGap + left.width;
        const double height = std::max({centre.height, right.height, left.height});
        const bool isLongish = width > kMaximumRatio * height || height > kMaximumRatio * width;
        return std::max(width, height * kSheetRatio) * (isLongish ? 2 : 1);
    }

    const BoxTree& m_tree;
    Packing m_packing;
    double m_bestSheet = kNoBound;
};

}  // namespace

Packing FindForms(const BoxTree& tree, bool isPacked) { return FormFinder(tree, isPacked).Find(); }

}  // namespace mindmap
