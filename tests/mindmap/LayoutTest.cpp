#include "MapInvariants.h"
#include "mindmap/layout/MapCheck.h"
#include "tests/support/Test.h"

#include <functional>

using namespace mindmap;

namespace {

std::mt19937 randomNumbers(7);

template <class Count> Count Any(Count count) {
    return static_cast<Count>(randomNumbers() % static_cast<std::size_t>(count));
}

Topic Named(const CString& text) {
    Topic topic;
    topic.text = text;
    return topic;
}

const std::vector<CString> kHostile = {
    u"",
    u"A topic of several words that needs more than one line to be shown",
    u"海冰厚度与积雪观测站点的年度计划，二〇二七年",
    u"د. ليلى حداد، كيمياء البحار",
    u"Donaudampfschifffahrtsgesellschaftskapitänsmützenfabrik",
    u"🐻‍❄️🇳🇴1️⃣ 👩‍🔬",
    u"\xD83D lone \xDE00",
    u"one\ntwo\r\nthree",
    u"https://x.org/\xFFFE\x01\xDC00&",
    u"﷽",
};

Topic Hostile() {
    Topic topic = Named(kHostile[Any(kHostile.size())]);
    for (CString Topic::* detail : {&Topic::note, &Topic::link, &Topic::date, &Topic::amount})
        if (Any(3) == 0)
            topic.*detail = kHostile[Any(kHostile.size())];
    return topic;
}

/// Topic i, which is at least 1, hangs on an earlier one.
struct Tree {
    const char* name;
    int count;
    std::function<int(int)> parentOf;
};

/// Topic i hangs on the one of which Fibonacci's word says so: a branch of the size of the one before, and one of that before it.
std::vector<int> Fibonacci() {
    std::vector<int> parents = {0, 0};
    for (int size = 2, before = 1; parents.size() < 4000; std::swap(size, before), size += before) {
        const auto root = static_cast<int>(parents.size());
        parents.push_back(0);
        for (std::size_t i = 1; i < static_cast<std::size_t>(size); ++i)
            parents.push_back(parents[i] == 0 && i > 1 ? root : parents[i] + root);
    }
    return parents;
}
const std::vector<int> kFibonacci = Fibonacci();

const Tree kTrees[] = {
    {"two", 2, [](int) { return 0; }},
    {"five", 6, [](int) { return 0; }},
    {"wide", 10'000, [](int) { return 0; }},
    {"list in one topic", 424, [](int i) { return i == 1 ? 0 : 1; }},
    {"deep", 20'000, [](int i) { return i - 1; }},
    {"binary", 2047, [](int i) { return (i - 1) / 2; }},
    {"Fibonacci", static_cast<int>(kFibonacci.size()), [](int i) { return kFibonacci[static_cast<std::size_t>(i)]; }},
    {"one giant branch", 3000, [](int i) { return i < 10   ? 0
                                                  : i < 60 ? 3
                                                           : 10 + Any(i - 10); }},
    {"random", 10'000, [](int i) { return Any(i); }},
    {"random, small", 150, [](int i) { return Any(i); }},
    {"random, deep", 5000, [](int i) { return std::max(0, i - 1 - Any(12)); }},
    {"a leaf at each of many levels", 4000, [](int i) { return std::max(0, i % 2 == 0 ? i - 1 : i - 2); }},
    {"a branch before and a leaf behind each of many levels", 5000,
     [](int i) { return i % 5 == 2 ? i - 1 : std::max(0, i - i % 5 - (i % 5 == 0 ? 3 : 2)); }},
};

Outline Grown(int count, const std::function<int(int)>& parentOf, const std::function<Topic()>& topic) {
    std::vector<std::vector<int>> children(static_cast<std::size_t>(count));
    for (int i = 1; i < count; ++i)
        children[static_cast<std::size_t>(parentOf(i))].push_back(i);
    OutlineBuilder builder;
    std::vector<std::pair<int, int>> open = {{0, 0}};  // a topic, and the index of its parent in the outline
    while (!open.empty()) {
        const auto [next, parent] = open.back();
        open.pop_back();
        const int index = builder.Add(parent, topic());
        const std::vector<int>& below = children[static_cast<std::size_t>(next)];
        for (auto child = below.rbegin(); child != below.rend(); ++child)
            open.emplace_back(*child, index);
    }
    return builder.Finish(u"Centre");
}

/// A topic that stands neither below nor further out than each of its earlier sisters on its side; 0 for none.
std::size_t FirstOutOfOrder(const Outline& outline, const MapLayout& map) {
    std::vector<std::vector<std::size_t>> children(outline.topics.size());
    for (std::size_t i = 1; i < outline.topics.size(); ++i) {
        std::vector<std::size_t>& sisters = children[static_cast<std::size_t>(outline.topics[i].parent)];
        const Box box(map.shapes[i].bounds);
        for (const std::size_t earlier : sisters) {
            const Box other(map.shapes[earlier].bounds);
            const bool isOut = map.shapes[i].side == Side::Left ? box.right <= other.left : box.left >= other.right;
            if (map.shapes[i].side == map.shapes[earlier].side && box.top < other.bottom && !isOut)
                return i;
        }
        sisters.push_back(i);
    }
    return 0;
}

void MoveBy(CrkFloatPoint& point, float distance) { point = {point.x + distance, point.y + distance}; }

}  // namespace

TEST(Layout, KeepsTopicsApartAndLinesOnEdgesForEveryShapeOfTree) {
    for (const Tree& tree : kTrees)
        for (int round = 0; round < 6; ++round) {
            SCOPED_TRACE(testing::Message() << tree.name << ", round " << round);
            const Outline outline = Grown(std::min(tree.count, 120), tree.parentOf, Hostile);
            const MapLayout map = LayOut(outline);
            ASSERT_TRUE(std::ranges::all_of(map.shapes, TextStaysInShape));
            ASSERT_EQ(FirstOutOfOrder(outline, map), 0U);
            ASSERT_TRUE(CheckMap(outline, map).AreNone());
            ASSERT_TRUE(ParseXml(SvgOf(outline, map)).isWellFormed);
        }
}

TEST(Layout, DealsMainTopicsToBothSidesFromTopToBottom) {
    const Outline outline = Grown(7, kTrees[0].parentOf, [] { return Named(u"Beside"); });
    const MapLayout map = LayOut(outline);
    for (std::size_t i = 1; i <= 6; ++i) {
        EXPECT_EQ(map.shapes[i].side, i <= 3 ? Side::Right : Side::Left) << i;
        EXPECT_EQ(map.shapes[i].branch, static_cast<int>(i) - 1);
        if (i % 3 != 1) {
            EXPECT_GT(map.shapes[i].bounds.y, map.shapes[i - 1].bounds.y) << i;
        }
    }
    EXPECT_EQ(map.bounds.x, -(map.bounds.x + map.bounds.width));
    EXPECT_EQ(map.bounds.y, -(map.bounds.y + map.bounds.height));
}

TEST(Layout, FitsEveryTreeIntoAFullSheet) {
    const std::vector<std::vector<CString>> texts = {
        {u"A", u"Two", u"III"},
        {u"Topic", u"Minutes of the last meeting", u"Budget",
         u"A topic of several words that needs more than one line"},
        {u"د. ليلى حداد، كيمياء البحار", u"🐻‍❄️🇳🇴 👩‍🔬", u"海冰厚度与积雪观测站点的年度计划",
         u"ملاحظات"},
    };
    for (const Tree& tree : kTrees)
        for (const std::vector<CString>& words : texts) {
            SCOPED_TRACE(testing::Message() << tree.name << ", " << words[0]);
            const Outline outline = Grown(tree.count, tree.parentOf, [&] { return Named(words[Any(words.size())]); });
            const MapLayout map = LayOut(outline);
            EXPECT_TRUE(CheckMap(outline, map).AreNone());
            const CrkFloatRect page = MakeLegend(outline, map).bounds;
            EXPECT_LE(std::max(page.width, page.height), 2.5F * std::min(page.width, page.height));
            EXPECT_LE(std::max(page.width, page.height), 32'767);
            EXPECT_GE(FillOf(outline, map), 0.45);
            EXPECT_EQ(FirstOutOfOrder(outline, map), 0U);
        }
}

TEST(Layout, TakesAHundredThousandLevelsAndAsManyTopicsSideBySide) {
    for (const auto& parentOf : {kTrees[2].parentOf, kTrees[4].parentOf}) {
        const Outline outline = Grown(100'000, parentOf, [] { return Named(u"Deeper"); });
        const MapLayout map = LayOut(outline);
        EXPECT_TRUE(CheckMap(outline, map).AreNone());
    }
}

TEST(MapCheck, FindsEveryKindOfFault) {
    const Outline outline = Grown(60, kTrees[8].parentOf, Hostile);
    const MapLayout good = LayOut(outline);
    const auto faultsAfter = [&](auto change) {
        MapLayout map = good;
        change(map);
        return CheckMap(outline, map);
    };
    for (std::size_t i = 1; i < 60; ++i) {
        SCOPED_TRACE(i);
        const auto other = i % 59 + 1;
        EXPECT_GT(faultsAfter([&](MapLayout& map) { map.shapes[i].bounds = map.shapes[other].bounds; }).overlapCount,
                  0);
        EXPECT_EQ(faultsAfter([&](MapLayout& map) { MoveBy(map.connections[i].points.back(), -2); }).looseEndCount, 1);
        EXPECT_EQ(faultsAfter([&](MapLayout& map) { MoveBy(map.connections[i].points.front(), 500); }).looseEndCount,
                  1);
        // A straight line into another topic crosses that one.
        const CrkFloatRect& r = good.shapes[other].bounds;
        const CrkFloatPoint inside = {r.x + r.width / 2, r.y + r.height / 2};
        const auto straighten = [&](MapLayout& map) {
            map.connections[i] = {false, {map.connections[i].points.front(), inside}};
        };
        if (static_cast<int>(other) != outline.topics[i].parent) {
            EXPECT_GT(faultsAfter(straighten).crossingCount, 0);
        }
    }
}
