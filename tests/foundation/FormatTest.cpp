// Numbers in each layout are compared with C's printf by fuzz/FormatFuzz.cpp.
#include "tests/support/Test.h"

namespace {

using Strings = CrkStringUtilities;

CString FormattedFromList(const CString* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    CString text = u"before";
    try {
        text.FormatV(*format, arguments);
    } catch (const rk::FormatError&) {
        text += u", refused";
    }
    va_end(arguments);
    return text;
}

TEST(Format, PrintsTextsCharactersPointersAndNumbersOfOtherKinds) {
    const unsigned short unit = u'ä';
    const void* const null = nullptr;
    const char unterminated[] = {'a', 'b', 'c'};
    const std::pair<CString, std::u16string_view> rows[] = {
        {Strings::Format(u"%s|%5s|%-5s|%.2s|%.1s", "ü€", "ab", "ab", "ä€", "ä"), u"ü€|   ab|ab   |ä|"},
        {Strings::Format(u"%s|%3s|%.2s|%.1s", CString(u"ü€"), u"ü", std::u16string_view(u"äöü"), u"\U0001F600"),
         u"ü€|  ü|äö|"},
        {Strings::Format(u"%s%s", static_cast<const char*>(nullptr), u"\xD800"), u"(null)\xD800"},
        {Strings::Format(u"%s", static_cast<unsigned short const*>(nullptr)), u"(null)"},
        {Strings::Format(u"%c%c%3c%lc%c", 'a', unit, u'→', 0x1F600, '\xE4'), u"aä  →\U0001F600\uFFFD"},
        {Strings::Format(u"%p %5p %p", null, null, reinterpret_cast<const void*>(0xABC)), u"(nil) (nil) 0xabc"},
        {Strings::Format(u"100%% %s", "→ %d"), u"100% → %d"},
        {Strings::Format(u"%d %d", 1L, static_cast<unsigned char>(2)), u"1 2"},
        {Strings::Format(u"%x %hhd %u", static_cast<signed char>(-1), 300, -1), u"ffffffff 44 4294967295"},
        {Strings::Format(u"%.3s", static_cast<const char*>(unterminated)), u"abc"}};
    for (const auto& [text, expected] : rows)
        EXPECT_EQ(text, expected);
}

TEST(Format, MakesTextsOfEveryLength) {
    std::string text;
    for (int count = 0; count <= 150; ++count, text += "eight ASCII, one not: ß")
        ASSERT_EQ(Strings::Format(u"<%s|%4u>", text, 1), u"<" + CString(text) + u"|   1>") << count;
}

TEST(Format, RefusesWhatItCannotCarryOutAndKeepsTheText) {
    CString text = u"kept";
    const auto refuses = [&](const CString& format, auto... arguments) {
        EXPECT_THROW(text.Format(format, arguments...), rk::FormatError) << format;
        EXPECT_EQ(text, u"kept");
    };
    for (const char16_t* format : {u"%d %d", u"%n", u"%s", u"%f", u"%p", u"%", u"%5", u"%q", u"%Ld", u"%ls", u"%\uFF44",
                                   u"%0$d", u"%3$d", u"%99999999999d", u"%9999999999999999999$d", u"%1$d %d"})
        refuses(format, 1);
    refuses(u"%d", 1.5);
    refuses(u"%f", 5.0L);
    refuses(u"%c", 0x10000);
    refuses(u"%lc", 0x110000);
    refuses(u"%d", 1L << 40);
    refuses(u"%x", -1L);
    refuses(u"%*d", INT_MIN, 1);
    refuses(u"%*d", 1.5, 1);
}

TEST(Format, TakesCArgumentListsAndKeepsThePointInCommaLocales) {
    const CString formats[] = {u"%s %d %ld %g %c %p %%", u"%3$s %1$d %2$.1f", u"%2$d", u"%1$d %1$s", u"%*.*f|%Lg"};
    const ScopedGermanProcess german;
    EXPECT_EQ(FormattedFromList(&formats[0], "ä", -1, 1L << 40, 0.5, 'x', nullptr),
              u"ä -1 1099511627776 0.5 x (nil) %");
    EXPECT_EQ(FormattedFromList(&formats[1], 1, 2.0, "c"), u"c 1 2.0");
    EXPECT_EQ(FormattedFromList(&formats[2], 1, 2), u"before, refused");  // the first one's kind cannot be told
    EXPECT_EQ(FormattedFromList(&formats[3], 1), u"before, refused");
    EXPECT_EQ(FormattedFromList(&formats[4], 6, 2, 1.0, 2.5L), u"  1.00|2.5");
    EXPECT_EQ(Strings::Format(u"%f %g %.1Lf", 1.5, 0.25, 2.5), u"1.500000 0.25 2.5");
}

}  // namespace
