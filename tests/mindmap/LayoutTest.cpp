#include "MapInvariants.h"

#include "mindmap/layout/MapCheck.h"
#include "mindmap/measure/Style.h"

#include <gtest/gtest.h>

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

Topic Named(const CString& text)
{
    Topic topic;
    topic.text = text;
    return topic;
}

/// `deepening` goes from 0, which hangs all on the centre, to 10, which makes chains.
Outline RandomOutline(std::mt19937& random, int topicCount, int deepening)
{
    OutlineBuilder builder;
    const auto any = [&](int count) { return static_cast<int>(random() % static_cast<unsigned>(count)); };
    int last = builder.Add(0, Named(u"Centre"));
    for (int i = 1; i < topicCount; ++i) {
        int parent = last;
        while (parent > 1 && any(10) >= deepening)
            parent = builder.At(parent).parent;
        Topic topic = Named(kTexts[any(std::size(kTexts))]);
        for (CString Topic::*detail : {&Topic::note, &Topic::link, &Topic::date, &Topic::amount})
            if (any(3) == 0)
                topic.*detail = kTexts[any(std::size(kTexts))];
        last = builder.Add(parent, std::move(topic));
    }
    return builder.Finish(u"");
}

Outline Chain(int levelCount, const CString& text = u"Deeper")
{
    OutlineBuilder builder;
    for (int i = 0; i < levelCount; ++i)
        builder.Add(i, Named(text));
    return builder.Finish(u"");
}

Outline Row(int topicCount)
{
    OutlineBuilder builder;
    for (int i = 0; i < topicCount; ++i)
        builder.Add(0, Named(u"Beside"));
    return builder.Finish(u"Centre");
}

}  // namespace

TEST(Layout, KeepsTopicsApartAndLinesOnEdgesForEveryShapeOfTree)
{
    constexpr std::pair<int, int> kShapes[] = {{1, 5}, {4, 5}, {120, 0}, {150, 5}, {120, 9}, {80, 10}};
    std::mt19937 random(7);
    for (const auto& [topicCount, deepening] : kShapes)
        for (int round = 0; round < 12; ++round) {
            SCOPED_TRACE(testing::Message() << topicCount << " topics, " << deepening << ", round " << round);
            const Outline outline = RandomOutline(random, topicCount, deepening);
            const MapLayout map = LayOut(outline);
            ASSERT_EQ(FaultOf(outline, map), "");
            ASSERT_TRUE(CheckMap(outline, map).AreNone());
            ASSERT_TRUE(ParseXml(SvgOf(outline, map)).isWellFormed);
        }
}

TEST(Layout, BalancesTheSidesClockwise)
{
    const Outline outline = Row(6);
    const MapLayout map = LayOut(outline);
    for (std::size_t i = 1; i <= 6; ++i) {
        EXPECT_EQ(map.shapes[i].side, i <= 3 ? Side::Right : Side::Left) << i;
        EXPECT_EQ(map.shapes[i].branch, static_cast<int>(i) - 1);
        if (i % 3 != 1) {  // down on the right, up on the left
            EXPECT_EQ(map.shapes[i].bounds.y > map.shapes[i - 1].bounds.y, i <= 3) << i;
        }
    }
    EXPECT_EQ(map.bounds.x, -(map.bounds.x + map.bounds.width));
    EXPECT_EQ(map.bounds.y, -(map.bounds.y + map.bounds.height));
}

TEST(Layout, TakesAHundredThousandLevelsAndAsManyTopicsSideBySide)
{
    for (const Outline& outline : {Chain(100'000), Row(100'000)}) {
        const MapLayout map = LayOut(outline);
        EXPECT_TRUE(CheckMap(outline, map).AreNone());
        for (std::size_t i = 1; i < map.shapes.size(); ++i)
            ASSERT_TRUE(EndsOnEdges(map.connections[i], map.shapes[static_cast<std::size_t>(outline.topics[i].parent)],
                                    map.shapes[i]))
                << i;
    }
    EXPECT_THROW(LayOut(Chain(170'000, u"WWWWWWWWWWWW")), OutlineError);  // it would lose its exactness
}

TEST(MapCheck, FindsEveryKindOfFault)
{
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
        EXPECT_EQ(faultsAfter([&](MapLayout& map) { map.connections[i].end.x += 2; }).looseEndCount, 1) << i;
        EXPECT_EQ(faultsAfter([&](MapLayout& map) { map.connections[i].start.y += 500; }).looseEndCount, 1) << i;
        // A straight line into another topic crosses that one.
        const CrkFloatRect& r = good.shapes[other].bounds;
        const CrkFloatPoint inside = {r.x + r.width / 2, r.y + r.height / 2};
        const auto straighten = [&](MapLayout& map) {
            map.connections[i].firstControl = map.connections[i].secondControl = map.connections[i].end = inside;
        };
        if (static_cast<int>(other) != outline.topics[i].parent) {
            EXPECT_GT(faultsAfter(straighten).crossingCount, 0) << i;
        }
    }
}
