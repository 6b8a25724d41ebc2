#include "mindmap/write/BranchColors.h"
#include "tests/mindmap/MapInvariants.h"
#include "tests/support/Test.h"

using namespace mindmap;

namespace {

double Luminance(std::uint32_t rgb) {
    constexpr std::array<double, 3> kWeights = {0.0722, 0.7152, 0.2126};
    double sum = 0;
    for (const double weight : kWeights) {
        const double channel = (rgb & 255) / 255.0;
        sum += weight * (channel <= 0.03928 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4));
        rgb >>= 8;
    }
    return sum;
}

double Contrast(std::uint32_t a, std::uint32_t b) {
    const auto [darker, lighter] = std::minmax({Luminance(a), Luminance(b)});
    return (lighter + 0.05) / (darker + 0.05);
}

Outline Mains(int count) {
    OutlineBuilder builder;
    for (int i = 0; i < count; ++i) {
        constexpr const char16_t* kTexts[] = {u"ملاحظات اليوم", u"Minutes\nof a day that did not end", u"議事録"};
        builder.At(builder.Add(0, {})).text = kTexts[i % 3];
    }
    return builder.Finish(u"Centre");
}

}  // namespace

TEST(Look, KeepsTextsReadableAndLinesVisibleInEveryTheme) {
    for (std::size_t themeIndex = 0; themeIndex < kThemeNames.size(); ++themeIndex) {
        const auto theme = static_cast<Theme>(themeIndex);
        const Page& page = PageOf(theme);
        for (const std::uint32_t ground : {page.paper, page.boxFill})
            for (const std::uint32_t ink : {page.ink, page.quietInk})
                EXPECT_GE(Contrast(ink, ground), 4.5) << kThemeNames[themeIndex];
        for (int branch = 0; branch < 8; ++branch) {
            SCOPED_TRACE(testing::Message() << kThemeNames[themeIndex] << " branch " << branch);
            EXPECT_GE(Contrast(LineColorOf(theme, branch), page.paper), 3);
            std::uint32_t above = page.paper;
            for (int level = 0; level < 6; ++level) {
                const Look look = LookOf(theme, level, branch);
                for (const std::uint32_t ink : {look.title, look.detail, look.accent})
                    EXPECT_GE(Contrast(ink, look.fill), 4.5) << level;
                EXPECT_EQ(look.fill == above, level == 5) << "levels differ until the deepest shade";
                above = look.fill;
            }
        }
    }
}

TEST(Legend, LiesBelowTheMapAndHoldsItsTexts) {
    for (const int count : {1, 2, 5, 8, 9, 300}) {
        const Outline outline = Mains(count);
        MapLayout map = LayOut(outline);
        const Legend legend = MakeLegend(outline, map);
        ASSERT_EQ(legend.entries.size(), std::min<std::size_t>(outline.topics.size() - 1, 8)) << count;
        const Box box(legend.box), whole(legend.bounds);
        EXPECT_GE(box.top, Box(map.bounds).bottom);
        EXPECT_EQ(std::pair(whole.Holds(box), whole.Holds(Box(map.bounds))), std::pair(true, true)) << count;
        std::vector<CrkFloatRect> cells;
        for (const LegendEntry& entry : legend.entries) {
            const int width = std::max(TextWidth(entry.name, kLegendFont), TextWidth(entry.topics, kDetailFont));
            CrkFloatRect cell{entry.origin.x, entry.origin.y, static_cast<float>(kSwatchSize + kSwatchGap + width),
                              kLegendRowHeight};
            EXPECT_TRUE(box.Holds(Box(cell))) << count;
            cells.push_back(cell);
            for (std::size_t i = 0; i + 1 < cells.size(); ++i)
                EXPECT_FALSE(CrkFloatRect::Intersect(cell, cells.back(), cells[i])) << count;
        }
        EXPECT_EQ(ParseXml(SvgOf(outline, map)).attributes["g id"].count("legend"), 1U);
    }
}

TEST(Legend, NamesColorsInTheUsersLanguage) {
    constexpr std::pair<const char*, std::array<const char16_t*, 8>> kNames[] = {
        {"en_GB", {u"Blue", u"Brick red", u"Green", u"Violet", u"Ochre", u"Teal", u"Raspberry", u"Slate"}},
        {"de_AT", {u"Blau", u"Ziegelrot", u"Grün", u"Violett", u"Ocker", u"Petrol", u"Himbeerrot", u"Schiefergrau"}},
        {"ja_JP", {u"青", u"れんが色", u"緑", u"紫", u"黄土色", u"青緑", u"紅紫", u"スレート色"}},
    };
    const Outline outline = Mains(8);
    const MapLayout map = LayOut(outline);
    EXPECT_EQ(MakeLegend(outline, map).entries[0].name, u"{2B,6C,B0}");  // no table is set
    const ScopedColorNames names;
    for (const auto& [language, expected] : kNames) {
        const ScopedUserLocale locale(language);
        const Legend legend = MakeLegend(outline, map);
        for (std::size_t i = 0; i < 8; ++i)
            EXPECT_EQ(legend.entries[i].name, expected[i]);
    }
}
