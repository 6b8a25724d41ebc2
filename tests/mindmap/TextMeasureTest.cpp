#include "mindmap/measure/TextMeasure.h"
#include "mindmap/read/CodePoints.h"
#include "tests/support/Test.h"

using namespace mindmap;

namespace {

constexpr Font kFont = {10, Weight::Regular};

/// The lines joined with "|".
std::string Joined(const WrappedText& wrapped) {
    CString joined;
    for (const CString& line : wrapped.lines)
        joined += (joined.IsEmpty() ? u"" : u"|") + line;
    return joined.ToUtf8();
}

}  // namespace

TEST(Wrap, BreaksWhereReadersExpectIt) {
    constexpr std::tuple<const char16_t*, int, int, const char*> kCases[] = {
        {u"", 100, 5, ""},
        {u"one two three", 50, 5, "one two|three"},
        {u"aaaa bbbb cccc", 70, 5, "aaaa|bbbb cccc"},  // evenly: not "aaaa bbbb|cccc" and not three lines
        {u"one\n\ntwo", 100, 5, "one||two"},
        {u"well-known 2027-06-01", 50, 5, "well-|known|2027-|06-01"},
        {u"Donaudampfschiff", 40, 9, "Donaud|ampfsc|hiff"},
        {u"海冰厚度，与积雪「观测」", 45, 9, "海冰厚|度，与积|雪「观|测」"},
        {u"e\u0301e\u0301e\u0301e\u0301e\u0301e\u0301", 20, 9, "e\u0301e\u0301e\u0301|e\u0301e\u0301e\u0301"},
        {u"👩‍🔬👩‍🔬🇳🇴🇸🇪", 30, 9, "👩‍🔬|👩‍🔬|🇳🇴|🇸🇪"},
        {u"one two three four five", 42, 2, "one two|three…"},
        {u"https://example.org/a", 80, 9, "https://|example.org/a"},
        {u"developer.zendesk.com/blog", 110, 9, "developer.|zendesk.com/blog"},
        {u"a_long_name.of?some=file&more", 60, 9, "a_long_|name.of?|some=|file&more"},
        {u"e.g. 3.14", 100, 9, "e.g. 3.14"},
    };
    for (const auto& [text, width, lineCount, lines] : kCases)
        EXPECT_EQ(Joined(Wrap(text, kFont, width, lineCount)), lines) << CString(text);
}

TEST(Wrap, KeepsEveryLineInItsWidthAndEveryCharacterInOrder) {
    std::mt19937 random(11);
    constexpr char32_t kFirsts[] = {u'a',   u'0',   u' ',   u'-',    0x300,   0x5D0,  0x627,
                                    0x4E00, 0xAC00, 0x3001, 0x1F600, 0x1F1E6, 0x200D, u'\n'};
    for (int round = 0; round < 3000; ++round) {
        std::u16string text;
        for (auto i = random() % 60; i > 0; --i) {
            const char32_t c = kFirsts[random() % std::size(kFirsts)] + (random() % 4 == 0 ? 1 : 0);
            if (c > 0xFFFF)
                text += static_cast<char16_t>(0xD7C0 + (c >> 10));
            text += static_cast<char16_t>(c > 0xFFFF ? 0xDC00 | (c & 0x3FF) : c);
        }
        const CString drawable = DrawableText(text);
        const int width = 40 + static_cast<int>(random() % 100);
        const WrappedText wrapped = Wrap(drawable, kFont, width, 1000);
        CString together;
        for (const CString& line : wrapped.lines) {
            const bool isOneCluster = Wrap(line, kFont, 1, 1000).lines.size() <= 1;
            ASSERT_TRUE(TextWidth(line, kFont) <= width || isOneCluster) << line;
            ASSERT_LE(TextWidth(line, kFont), wrapped.width);
            together += line;
        }
        const auto withoutSpaces = [](CString s) {
            s.Remove(u' ');
            s.Remove(u'\n');
            return s;
        };
        ASSERT_EQ(withoutSpaces(together), withoutSpaces(drawable));
        ASSERT_FALSE(wrapped.isShortened);
    }
}

TEST(DrawableText, HoldsNothingThatCannotBeDrawn) {
    std::u16string all;
    for (unsigned unit = 0; unit < 0x10000; ++unit)
        all += {static_cast<char16_t>(unit), u'a'};
    for (std::size_t begin = 0; begin < all.size(); begin += 2000) {
        const CString drawable = DrawableText(std::u16string_view(all).substr(begin, 2000));
        for (const char16_t unit : drawable)
            ASSERT_TRUE(unit == u'\n' || (unit >= 0x20 && unit != 0x7F && (unit < 0x80 || unit > 0x9F) &&
                                          unit < 0xFFFE && (unit < 0xD800 || unit > 0xDFFF)))
                << int{unit};
    }
    EXPECT_EQ(DrawableText(u"a\r\nb\rc\td"), u"a\nb\nc d");
    EXPECT_EQ(DrawableText(u"e\u0301\u0302\u0303\u0304\u0305\u0306x"), u"e\u0301\u0302\u0303\u0304x");
    EXPECT_TRUE(Wrap(DrawableText(std::u16string(1'000'000, u'W')), kFont, 100, 3).isShortened);
}

TEST(DirectionOf, IsThatOfTheFirstLetter) {
    constexpr std::pair<const char16_t*, Direction> kCases[] = {
        {u"", Direction::LeftToRight},           {u"12 שלום abc", Direction::RightToLeft},
        {u"(abc) שלום", Direction::LeftToRight}, {u"٣ abc", Direction::LeftToRight},
        {u"🚢 مرحبا", Direction::RightToLeft},   {u"\u200Fabc", Direction::RightToLeft},
        {u"𞤀𞤁", Direction::RightToLeft},         {u"海", Direction::LeftToRight},
    };
    for (const auto& [text, direction] : kCases)
        EXPECT_EQ(DirectionOf(text), direction) << CString(text);
}
