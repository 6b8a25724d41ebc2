#include "MapInvariants.h"

#include "mindmap/layout/MapCheck.h"
#include "mindmap/measure/Style.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <random>

using namespace mindmap;

namespace {

const char16_t* const kTexts[] = {
    u"",
    u"Topic",
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

Topic Named(const CString& text) {
    Topic topic;
    topic.text = text;
    return topic;
}

/// `deepening` goes from 0, which hangs all on the centre, to 10, which makes chains.
Outline RandomOutline(std::mt19937& random, int topicCount, int deepening) {
    OutlineBuilder builder;
    const auto any = [&](int count) { return static_cast<int>(random() % static_cast<unsigned>(count)); };
    int last = builder.Add(0, Named(u"Centre"));
    for (int i = 1; i < topicCount; ++i) {
        int parent = last;
        while (parent > 1 && any(10) >= deepening)
            parent = builder.At(parent).parent;
        Topic topic = Named(kTexts[any(std::size(kTexts))]);
        for (CString Topic::* detail : {&Topic::note, &Topic::link, &Topic::date, &Topic::amount})
            if (any(3) == 0)
                topic.*detail = kTexts[any(std::size(kTexts))];
        last = builder.Add(parent, std::move(topic));
    }
    return builder.Finish(u"");
}

/// A tree of which each topic but the first has a parent among the earlier ones.
Outline Grown(int count, const std::function<int(int)>& parentOf, const std::function<CString()>& text) {
    std::vector<std::vector<int>> children(static_cast<std::size_t>(count));
    for (int i = 1; i < count; ++i)
        children[static_cast<std::size_t>(parentOf(i))].push_back(i);
    OutlineBuilder builder;
    std::vector<std::pair<int, int>> open = {{0, 0}};  // a topic, and the index of its parent in the outline
    while (!open.empty()) {
        const auto [topic, parent] = open.back();
        open.pop_back();
        const int index = builder.Add(parent, Named(text()));
        const std::vector<int>& below = children[static_cast<std::size_t>(topic)];
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

Outline Chain(int levelCount) {
    OutlineBuilder builder;
    for (int i = 0; i < levelCount; ++i)
        builder.Add(i, Named(u"Deeper"));
    return builder.Finish(u"");
}

void MoveBy(CrkFloatPoint& point, float distance) { point = {point.x + distance, point.y + distance}; }

Outline Row(int topicCount) {
    OutlineBuilder builder;
    for (int i = 0; i < topicCount; ++i)
        builder.Add(0, Named(u"Beside"));
    return builder.Finish(u"Centre");
}

}  // namespace

TEST(Layout, KeepsTopicsApartAndLinesOnEdgesForEveryShapeOfTree) {
    constexpr std::pair<int, int> kShapes[] = {{1, 5}, {4, 5}, {120, 0}, {150, 5}, {120, 9}, {80, 10}};
    std::mt19937 random(7);
    for (const auto& [topicCount, deepening] : kShapes)
        for (int round = 0; round < 12; ++round) {
            SCOPED_TRACE(testing::Message() << topicCount << " topics, " << deepening << ", round " << round);
            const Outline outline = RandomOutline(random, topicCount, deepening);
            const MapLayout map = LayOut(outline);
            ASSERT_TRUE(std::ranges::all_of(map.shapes, TextStaysInShape));
            ASSERT_EQ(FirstOutOfOrder(outline, map), 0U);
            ASSERT_TRUE(CheckMap(outline, map).AreNone());
            ASSERT_TRUE(ParseXml(SvgOf(outline, map)).isWellFormed);
        }
}

TEST(Layout, DealsMainTopicsToBothSidesFromTopToBottom) {
    const Outline outline = Row(6);
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
    std::mt19937 random(11);
    const auto any = [&](int count) { return static_cast<int>(random() % static_cast<unsigned>(count)); };
    struct Tree {
        const char* name;
        int count;
        std::function<int(int)> parentOf;  // of topic i, which is at least 1
    };
    std::vector<int> fibonacci = {0, 0};  // a branch of the size of the one before, and one of that before it
    for (int size = 2, before = 1; static_cast<int>(fibonacci.size()) < 4000; std::swap(size, before), size += before) {
        const int root = static_cast<int>(fibonacci.size());
        fibonacci.push_back(0);
        for (int i = 1; i < size; ++i)
            fibonacci.push_back(fibonacci[static_cast<std::size_t>(i)] == 0 && i > 1
                                    ? root
                                    : fibonacci[static_cast<std::size_t>(i)] + root);
    }
    const Tree trees[] = {
        {"wide", 10'000, [](int) { return 0; }},
        {"list in one topic", 424, [](int i) { return i == 1 ? 0 : 1; }},
        {"deep", 20'000, [](int i) { return i - 1; }},
        {"binary", 2047, [](int i) { return (i - 1) / 2; }},
        {"Fibonacci", static_cast<int>(fibonacci.size()),
         [&](int i) { return fibonacci[static_cast<std::size_t>(i)]; }},
        {"one giant branch", 3000, [&](int i) { return i < 10   ? 0
                                                       : i < 60 ? 3
                                                                : 10 + any(i - 10); }},
        {"random", 10'000, [&](int i) { return any(i); }},
        {"random, small", 150, [&](int i) { return any(i); }},
        {"random, deep", 5000, [&](int i) { return std::max(0, i - 1 - any(12)); }},
        {"a leaf at each of many levels", 4000, [](int i) { return i == 1       ? 0
                                                                   : i % 2 == 0 ? i - 1
                                                                                : i - 2; }},
        {"a branch before and a leaf behind each of many levels", 5000,
         [](int i) { return i % 5 == 2 ? i - 1 : std::max(0, i - i % 5 - (i % 5 == 0 ? 3 : 2)); }},
        {"five", 6, [](int) { return 0; }},
        {"two", 2, [](int) { return 0; }},
    };
    const std::vector<std::vector<CString>> texts = {
        {u"A", u"Two", u"III"},
        {u"Topic", u"Minutes of the last meeting", u"Budget",
         u"A topic of several words that needs more than one line"},
        {u"د. ليلى حداد، كيمياء البحار", u"🐻‍❄️🇳🇴 👩‍🔬", u"海冰厚度与积雪观测站点的年度计划",
         u"ملاحظات"},
    };
    for (const Tree& tree : trees)
        for (const std::vector<CString>& words : texts) {
            SCOPED_TRACE(testing::Message() << tree.name << ", " << words[0]);
            const Outline outline = Grown(tree.count, tree.parentOf, [&] {
                return words[static_cast<std::size_t>(any(static_cast<int>(words.size())))];
            });
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
    for (const Outline& outline : {Chain(100'000), Row(100'000)}) {
        const MapLayout map = LayOut(outline);
        EXPECT_TRUE(CheckMap(outline, map).AreNone());
    }
}

TEST(MapCheck, FindsEveryKindOfFault) {
    std::mt19937 random(3);
    const Outline outline = RandomOutline(random, 60, 5);
    const MapLayout good = LayOut(outline);
    const auto faultsAfter = [&](auto change) {
        MapLayout map = good;
        change(map);
        return CheckMap(outline, map);
    };
    for (std::size_t i = 1; i < 60; ++i) {
        const auto other = i % 59 + 1;
        EXPECT_GT(faultsAfter([&](MapLayout& map) { map.shapes[i].bounds = map.shapes[other].bounds; }).overlapCount, 0)
            << i;
        EXPECT_EQ(faultsAfter([&](MapLayout& map) { MoveBy(map.connections[i].points.back(), -2); }).looseEndCount, 1)
            << i;
        EXPECT_EQ(faultsAfter([&](MapLayout& map) { MoveBy(map.connections[i].points.front(), 500); }).looseEndCount, 1)
            << i;
        // A straight line into another topic crosses that one.
        const CrkFloatRect& r = good.shapes[other].bounds;
        const CrkFloatPoint inside = {r.x + r.width / 2, r.y + r.height / 2};
        const auto straighten = [&](MapLayout& map) {
            map.connections[i] = {false, {map.connections[i].points.front(), inside}};
        };
        if (static_cast<int>(other) != outline.topics[i].parent) {
            EXPECT_GT(faultsAfter(straighten).crossingCount, 0) << i;
        }
    }
}
