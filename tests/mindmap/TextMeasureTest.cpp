#include "mindmap/measure/TextMeasure.h"
#include "tests/support/Test.h"

using namespace mindmap;
using namespace testing;

constexpr Font kFont = {10, Weight::Regular};

TEST(Wrap, BreaksWhereReadersExpectIt) {
    constexpr std::tuple<const char16_t*, int, int, const char*> kCases[] = {
        {u"", 100, 5, ""},
        {u"aaaa bbbb cccc", 70, 5, "aaaa|bbbb cccc"},  // evenly: not "aaaa bbbb|cccc" and not three lines
        {u"one\n\ntwo", 100, 5, "one||two"},
        {u"well-known 2027-06-01", 50, 5, "well-|known|2027-|06-01"},
        {u"Donaudampfschiff", 40, 9, "Donaud|ampfsc|hiff"},
        {u"海冰厚度，与积雪「观测」", 45, 9, "海冰厚|度，与积|雪「观|测」"},
        {u"e\u0301e\u0301e\u0301e\u0301e\u0301e\u0301", 20, 9, "e\u0301e\u0301e\u0301|e\u0301e\u0301e\u0301"},
        {u"👩‍🔬👩‍🔬🇳🇴🇸🇪", 30, 9, "👩‍🔬|👩‍🔬|🇳🇴|🇸🇪"},
        {u"one two three four five", 42, 2, "one two|three…"},
        {u"https://example.org/a", 80, 9, "https://|example.org/a"},
        {u"a_long_name.of?some=file&more", 60, 9, "a_long_|name.of?|some=|file&more"},
        {u"e.g. 3.14", 100, 9, "e.g. 3.14"},
    };
    for (const auto& [text, width, lineCount, lines] : kCases) {
        const std::vector<CString> shown = Wrap(text, kFont, width, lineCount).lines;
        EXPECT_EQ(CrkStringUtilities::Combine(u"|", shown.data(), shown.size(), /*skipEmptyParts=*/false), lines)
            << CString(text);
    }
}

TEST(Wrap, KeepsEveryLineInItsWidthAndEveryCharacterInOrder) {
    std::mt19937 random(11);
    constexpr char16_t kUnits[] = {u'a',   u'0',   u' ',   u'-',   0x300,  0x5D0,  0x627,  0x4E00,
                                   0xAC00, 0x3001, 0xD83D, 0xDE00, 0xD83C, 0xDDE6, 0x200D, u'\n'};
    for (int round = 0; round < 3000; ++round) {
        CString drawable = DrawableText(AnyText(random, {kUnits, std::size(kUnits)}, 60));
        const int width = 40 + static_cast<int>(random() % 100);
        const WrappedText wrapped = Wrap(drawable, kFont, width, 1000);
        CString together;
        for (const CString& line : wrapped.lines) {
            const bool isOneCluster = Wrap(line, kFont, 1, 1000).lines.size() <= 1;
            ASSERT_LE(TextWidth(line, kFont), isOneCluster ? INT_MAX : width) << line;
            ASSERT_LE(TextWidth(line, kFont), wrapped.width);
            together += line;
        }
        for (const char16_t space : {u' ', u'\n'}) {
            together.Remove(space);
            drawable.Remove(space);
        }
        ASSERT_EQ(together, drawable);
        ASSERT_FALSE(wrapped.isShortened);
    }
}

TEST(DrawableText, HoldsNothingThatCannotBeDrawn) {
    for (unsigned unit = 0; unit < 0x10000; ++unit)
        for (const char16_t drawn : DrawableText(std::u16string{u'a', static_cast<char16_t>(unit), u'a'}))
            ASSERT_THAT(drawn, AnyOf(u'\n', AllOf(Ge(0x20), Lt(0x7F)), AllOf(Ge(0xA0), Lt(0xD800)),
                                     AllOf(Ge(0xE000), Lt(0xFFFE))));
    EXPECT_EQ(DrawableText(u"a\r\nb\rc\td"), u"a\nb\nc d");
    EXPECT_EQ(DrawableText(u"e\u0301\u0302\u0303\u0304\u0305\u0306x"), u"e\u0301\u0302\u0303\u0304x");
    EXPECT_TRUE(Wrap(DrawableText(std::u16string(1'000'000, u'W')), kFont, 100, 3).isShortened);
}

TEST(DirectionOf, IsThatOfTheFirstLetter) {
    constexpr std::pair<const char16_t*, Direction> kCases[] = {
        {u"", Direction::LeftToRight},           {u"12 שלום abc", Direction::RightToLeft},
        {u"(abc) שלום", Direction::LeftToRight}, {u"\u200Fabc", Direction::RightToLeft},
        {u"٣ abc", Direction::LeftToRight},      {u"🚢 𞤀𞤁", Direction::RightToLeft},
    };
    for (const auto& [text, direction] : kCases)
        EXPECT_EQ(DirectionOf(text), direction) << CString(text);
}
