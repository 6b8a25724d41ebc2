#include "mindmap/layout/MapCheck.h"
#include "tests/mindmap/MapInvariants.h"
#include "tests/support/Test.h"

using namespace mindmap;

namespace {

std::mt19937 randomNumbers(7);

int Any(int count) { return static_cast<int>(randomNumbers() % static_cast<unsigned>(count)); }

/// Topic i, which is at least 1, hangs on an earlier one.
struct Tree {
    const char* name;
    int count;
    int (*parentOf)(int);
};

constexpr Tree kTrees[] = {
    {"two", 2, [](int) { return 0; }},
    {"wide", 10'000, [](int) { return 0; }},
    {"list in one topic", 424, [](int i) { return i == 1 ? 0 : 1; }},
    {"deep", 50'000, [](int i) { return i - 1; }},
    {"one giant branch", 3000, [](int i) { return i < 10 ? 0 : 9 + Any(i - 9); }},
    {"random", 10'000, [](int i) { return Any(i); }},
    {"random, deep", 5000, [](int i) { return std::max(0, i - 1 - Any(12)); }},
    {"a leaf at each of many levels", 4000, [](int i) { return std::max(0, i % 2 == 0 ? i - 1 : i - 2); }},
    {"a branch before and a leaf behind each of many levels", 5000,
     [](int i) { return i % 5 == 2 ? i - 1 : std::max(0, i - i % 5 - (i % 5 == 0 ? 3 : 2)); }},
};

using Words = std::vector<CString>;
const Words kTexts[] = {
    {u"A", u"Two", u"III"},
    {u"Topic", u"Minutes of the last meeting", u"A topic of several words that needs more than one line"},
    {u"د. ليلى حداد، كيمياء البحار", u"🐻‍❄️🇳🇴 👩‍🔬", u"海冰厚度与积雪观测站点的年度计划",
     u"Donaudampfschifffahrtsgesellschaftskapitänsmützenfabrik", u"one\ntwo\r\nthree"},
};

Outline Grown(const Tree& tree, const Words& texts) {
    std::vector<std::vector<int>> children(static_cast<std::size_t>(tree.count));
    for (int i = tree.count - 1; i > 0; --i)
        children[static_cast<std::size_t>(tree.parentOf(i))].push_back(i);
    OutlineBuilder builder;
    std::vector<std::pair<int, int>> open = {{0, 0}};  // a topic, and the index of its parent in the outline
    while (!open.empty()) {
        const auto [next, parent] = open.back();
        open.pop_back();
        Topic topic;
        topic.text = texts[randomNumbers() % texts.size()];
        const int index = builder.Add(parent, std::move(topic));
        for (const int child : children[static_cast<std::size_t>(next)])
            open.emplace_back(child, index);
    }
    return builder.Finish(u"Centre");
}

/// A topic that stands neither below nor further out than its elder sister on its side; 0 when all do.
std::size_t FirstOutOfOrder(const Outline& outline, const MapLayout& map) {
    std::map<std::pair<int, Side>, Box> lastOf;  // by parent and side
    for (std::size_t i = 1; i < outline.topics.size(); ++i) {
        const Side side = map.shapes[i].side;
        const Box box(map.shapes[i].bounds);
        const auto [elder, isFirst] = lastOf.try_emplace({outline.topics[i].parent, side}, box);
        const bool isOut = side == Side::Left ? box.right <= elder->second.left : box.left >= elder->second.right;
        if (!isFirst && box.top < elder->second.bottom && !isOut)
            return i;
        elder->second = box;
    }
    return 0;
}

}  // namespace

TEST(Layout, KeepsEveryTreeSoundAndFitsItIntoAFullSheet) {
    for (const Tree& tree : kTrees)
        for (const Words& texts : kTexts) {
            SCOPED_TRACE(testing::Message() << tree.name << ", " << texts[0]);
            const Outline outline = Grown(tree, texts);
            const MapLayout map = LayOut(outline);
            EXPECT_TRUE(CheckMap(outline, map).AreNone());
            EXPECT_TRUE(std::ranges::all_of(map.shapes, TextStaysInShape));
            EXPECT_EQ(FirstOutOfOrder(outline, map), 0U);
            EXPECT_GE(FillOf(outline, map), 0.45);
            const CrkFloatRect page = MakeLegend(outline, map).bounds;
            EXPECT_LE(std::max(page.width, page.height), 2.5F * std::min(page.width, page.height));
        }
}

TEST(Layout, DealsMainTopicsToBothSidesFromTopToBottom) {
    const MapLayout map = LayOut(Grown({"six", 7, kTrees[0].parentOf}, kTexts[0]));
    for (std::size_t i = 1; i <= 6; ++i) {
        const TopicShape& shape = map.shapes[i];
        EXPECT_EQ(shape.side, i <= 3 ? Side::Right : Side::Left) << i;
        EXPECT_EQ(shape.branch, static_cast<int>(i) - 1);
        EXPECT_GT(shape.bounds.y, i % 3 == 1 ? -HUGE_VALF : map.shapes[i - 1].bounds.y) << i;
    }
    EXPECT_EQ(map.bounds.x, -(map.bounds.x + map.bounds.width));
    EXPECT_EQ(map.bounds.y, -(map.bounds.y + map.bounds.height));
}

TEST(MapCheck, FindsEveryKindOfFault) {
    const Outline outline = Grown({"random", 60, &Any}, kTexts[2]);
    const MapLayout good = LayOut(outline);
    for (std::size_t i = 1; i < 60; ++i) {
        SCOPED_TRACE(i);
        const auto other = i % 59 + 1;
        const CrkFloatRect& bounds = good.shapes[other].bounds;
        MapLayout map = good;
        std::vector<CrkFloatPoint>& line = map.connections[i].points;
        line.front() = {5000, 5000};
        EXPECT_EQ(CheckMap(outline, map).looseEndCount, 1);
        line.back() = {line.back().x - 2, line.back().y - 2};
        EXPECT_EQ(CheckMap(outline, map).looseEndCount, 2);
        map.shapes[i].bounds = bounds;
        EXPECT_GT(CheckMap(outline, map).overlapCount, 0);
        // A straight line into another topic crosses that topic.
        map = good;
        map.connections[i] = {
            false, {good.connections[i].points.front(), {bounds.x + bounds.width / 2, bounds.y + bounds.height / 2}}};
        EXPECT_GT(CheckMap(outline, map).crossingCount, static_cast<int>(other) == outline.topics[i].parent ? -1 : 0);
    }
}
