#include "tests/support/Test.h"

namespace {

using Strings = CrkStringUtilities;

constexpr std::pair<unsigned long, const char16_t*> kByteRows[] = {  // cut behind three digits, or rounded to six
    {999, u"999 bytes"},         {1000, u"0.97 KB"},    {10240, u"10.0 KB"},   {102400, u"100 KB"},
    {1023999, u"999 KB"},        {1024000, u"0.97 MB"}, {1048575, u"0.99 MB"}, {1073741823999, u"1000 GB"},
    {1099511627775, u"1.00 TB"}, {1099511627776, u""}};
constexpr std::tuple<const char16_t*, int, const char16_t*> kShortRows[] = {
    {u"abcdefgh", 5, u"ab..."}, {u"abc", 3, u"abc"},     {u"abcd", 3, u"..."},
    {u"abcd", 2, u".."},        {u"abcd", INT_MIN, u""}, {u"", -1, u""}};
constexpr std::pair<std::size_t, int> kSerialRows[] = {{254, 512}, {255, 516}, {65533, 131072}, {65534, 131078}};

TEST(Formatting, CountsMeasuresAndShortens) {
    EXPECT_EQ(Strings::Format(u"%d %d", 1), u"");
    EXPECT_EQ(Strings::AppendInt(u"% a\xD800", INT_MIN), u"% a\uFFFD-2147483648");
    for (const auto& [count, text] : kByteRows)
        EXPECT_EQ(Strings::MakeByteString(count), text) << count;
    for (const auto& [text, length, result] : kShortRows)
        EXPECT_EQ(Strings::ShortenString(text, length), result) << length;
    for (const auto& [length, bytes] : kSerialRows)
        EXPECT_EQ(Strings::StringSerializeSize(std::u16string(length, u'x')), bytes);
}

/// The wrap as it is defined, on the text itself.
CString Wrapped(CString text, const CString& separator, int width, int lines) {
    while (text.Find(u"\n") >= 0 && Strings::IsBlank(text.Left(text.Find(u"\n"))))
        text.Delete(0, text.Find(u"\n") + 1);
    int cut = 0, start = 0;
    for (int line = 0; line < lines; ++line) {
        if (start >= text.GetLength()) {
            cut = start;
            break;
        }
        int end = text.Find(u"\n", start + 1);
        end = end < 0 ? text.GetLength() : end;
        const bool last = line == lines - 1;
        if (end - start > width) {
            const int space = text.Mid(start, width).ReverseFind(u" ");
            int at = start + (space > 0 ? space + 1 : width);
            if (last) {
                text.Insert(at - 1, u"...");
                at += 3;
            }
            text.Insert(at, separator);
            cut = start = at;
        } else {
            cut = end;
            if (last && !Strings::IsBlank(text.Mid(end))) {
                text.Insert(end, u"...");
                cut += 3;
            }
            if (cut < text.GetLength()) {
                text.Insert(cut, separator);
                cut += separator.GetLength();
            }
            start = cut;
        }
    }
    text = text.Left(cut).TrimRight();
    return Strings::IsBlank(text) ? CString() : text;
}

CString Wrap(CString text, const CString& separator, int width, int lines) {
    Strings::InsertLineSeparators(&text, separator, width, lines);
    return text;
}

constexpr std::tuple<const char16_t*, int, int, const char16_t*> kWrapRows[] = {
    {u"hello world foo bar", 8, 2, u"hello /world..."},
    {u"text", 8, INT_MIN, u""},
    {u"ab cd", 1, INT_MAX, u"ab cd"},
    {u"ab cd\nef", INT_MIN, 9, u"ab cd/\nef"},
    {u"ab cd", INT_MAX, INT_MAX, u"ab cd"}};

TEST(Wrapping, KeepsToItsExamplesAndItsStepsAndEndsSoon) {
    for (const auto& [text, width, lines, result] : kWrapRows)
        EXPECT_EQ(Wrap(text, u"/", width, lines), result) << CString(text) << width;
    std::mt19937 random(13);
    const CString separators[] = {u"/", u"\r\n", u"\n", u"", u"<br />", u" "};
    for (int round = 0; round < 20000; ++round) {
        const std::u16string units = AnyText(random, u"abc  \n\r\t", 60);
        const CString& separator = separators[random() % std::size(separators)];
        const int width = separator.GetLength() + 1 + static_cast<int>(random() % 12);
        const int lines = static_cast<int>(random() % 8);
        ASSERT_EQ(Wrap(units, separator, width, lines), Wrapped(units, separator, width, lines))
            << CString(units) << "|" << separator << "|" << width << "|" << lines;
    }
    const std::u16string word(1U << 20U, u'x');
    EXPECT_GT(Wrap(word, u"<br />", 7, INT_MAX).GetLength(), 0);  // breaks inside its separators
    EXPECT_EQ(Wrap(word, u"/", 2, INT_MAX).GetLength(), (2 << 20) - 2);
    CString itself = u"a b c d";
    Strings::InsertLineSeparators(&itself, itself, 9, 3);
    Strings::InsertLineSeparators(nullptr, u"/", 9, 3);
    EXPECT_EQ(itself, u"a b c d");
    EXPECT_EQ(Strings::GetLinesCount(u"a\r\n\r\nb\r\n"), 2);
}

TEST(Lists, JoinAndSort) {
    const CString parts[] = {u"a", u"", u"b"};
    const std::pair<CString, std::u16string_view> joined[] = {
        {Strings::Combine(u", ", parts, 3, true), u"a, b"},
        {Strings::Combine(u", ", parts, 3, false), u"a, , b"},
        {Strings::Combine(u", ", u"", u"a", true), u"a"},
        {Strings::Combine(u"-", u"", u"", u"x", u"", false), u"--x-"},
        {Strings::Combine(u"-", u"1", u"2", u"3", true), u"1-2-3"},
        {Strings::Combine(u", ", nullptr, 3, true), u""},
        {Strings::Combine(u", ", parts, 0, true), u""}};
    for (const auto& [text, expected] : joined)
        EXPECT_EQ(text, expected);
    const auto takes = [](const auto&... arguments) { return requires { Strings::Combine(arguments...); }; };
    EXPECT_EQ(std::pair(takes(u"-", u"1", u"2", u"3"), takes(u"-", u"1", u"2", u"3", parts[0])),
              std::pair(false, false));
    CAtlList<CString> list{u"b", u"A", u"a", u"C", u"ab", u"abcde", u"ABCDF"};
    Strings::SortStringList(list, true);
    EXPECT_EQ(list, (CAtlList<CString>{u"A", u"a", u"ab", u"abcde", u"ABCDF", u"b", u"C"}));
    Strings::SortStringList(list, false);
    EXPECT_EQ(list, (CAtlList<CString>{u"C", u"b", u"ABCDF", u"abcde", u"ab", u"a", u"A"}));
}

constexpr std::tuple<const char16_t*, long, double> kNumberRows[] = {  // a text, as an integer and as a number
    {u" -42x", -42, -42}, {u"\u22121", 0, 0}, {u"30000000000000000000", INT_MAX, 3e19},
    {u"1,5", 1, 1},       {u"\u0661", 0, 0},  {u"-2147483648", INT_MIN, INT_MIN},
    {u"0.9", 0, 0.9},     {u"inf", 0, 0},     {u"-10000000000", -INT_MAX, -1e10}};

TEST(Numbers, AreReadFromTheFrontInAnyLocale) {
    const ScopedUserLocale user("ar_EG");
    for (const auto& [text, integer, number] : kNumberRows) {
        EXPECT_EQ(Strings::StringToLong(text), integer) << CString(text);
        EXPECT_EQ(Strings::StringToDouble(text), number) << CString(text);
        EXPECT_EQ(Strings::StringToBool(text), integer != 0) << CString(text);
    }
    EXPECT_TRUE(Strings::StringToBool(u"TRUE"));
    EXPECT_FALSE(Strings::StringToBool(u"yes"));
    EXPECT_EQ(Strings::UnicodeToUtf8(u"ä\xD800"), u"ä\uFFFD");
    EXPECT_EQ(Strings::Utf8ToUnicode("\xEF\xBB\xBFä", true), u"ä");
    EXPECT_EQ(Strings::Utf8ToUnicode("\xEF\xBB\xBF", false), u"\uFEFF");
    EXPECT_EQ(Strings::Utf8ToUnicode(nullptr, true), u"");
}

TEST(Links, GiveTheirParameters) {
    Strings::ParameterMap map{{u"x", u"0"}, {u"y", u"kept"}};
    Strings::ExtractUrlParameters(u"#x=1&x=2&z", map);
    EXPECT_EQ(map, (Strings::ParameterMap{{u"x", u"2"}, {u"y", u"kept"}}));
    const char16_t* const rows[][3] = {
        {u"app:open#id=7&mode=edit", u"mode", u"edit"}, {u"cmd&a=1&b=2", u"a", u"1"}, {u"#a=&b=2", u"a", u"b"}};
    for (const auto& row : rows)
        EXPECT_EQ(Strings::ExtractUrlValue(row[0], row[1]), row[2]) << CString(row[0]);
    EXPECT_EQ(Strings::GetUrlString(u"https-link", u"web:%s"), u"https-link");
    EXPECT_EQ(Strings::GetUrlString(u"HTTP 100%", u"web:%s"), u"web:HTTP 100%");
    const std::pair<const char16_t*, bool> addresses[] = {
        {u"a@b.c", true}, {u"@b.c", false}, {u"a@.c", false}, {u"a@b.", false}, {u"a.b@c", false}};
    for (const auto& [address, valid] : addresses)
        EXPECT_EQ(Strings::IsValidEmail(address), valid) << CString(address);
}

CString Expanded(CString text) {
    Strings::ReplaceEnvironmentVariables(&text);
    return text;
}

/// The passes as they are defined; only for texts whose expansion ends.
CString Passes(CString text) {
    CString placeholder;
    while (Strings::FindEnvironmentVariable(text, &placeholder) >= 0)
        Strings::ReplaceEnvironmentVariable(&text, placeholder);
    return text;
}

/// A text, the index of its placeholder and the placeholder; a text without "%" leaves what stood there.
constexpr std::tuple<const char16_t*, int, const char16_t*> kFindRows[] = {
    {u"x %a% y", 2, u"%a%"}, {u"none", -1, u"kept"}, {u"100%", -1, u""}};
constexpr const char16_t* kEndlessRows[][2] = {{u"%i%-%a%", u"%i%x-x"}, {u"%g%", u"%h%%h%"}};

TEST(Placeholders, AreFoundAndExpandedAsTheirPassesDoAndOnceWhereThoseDoNotEnd) {
    const ScopedVariable variables[] = {{"a", "x"},  {"b", "%a%"},    {"c", "a%"},  {"d", "%"},   {"e", "%b%c"},
                                        {"f", "%f"}, {"g", "%h%%h%"}, {"h", "%g%"}, {"i", "%i%x"}};
    for (const auto& [text, index, expected] : kFindRows) {
        CString placeholder = u"kept";
        EXPECT_EQ(Strings::FindEnvironmentVariable(text, &placeholder), index) << CString(text);
        EXPECT_EQ(placeholder, expected) << CString(text);
    }
    for (const auto& [text, expected] : kEndlessRows)
        EXPECT_EQ(Expanded(text), expected) << CString(text);
    std::mt19937 random(14);
    for (int round = 0; round < 20000; ++round) {
        const std::u16string units = AnyText(random, u"%%%abcdefx", 30);
        ASSERT_EQ(Expanded(units), Passes(units)) << CString(units);
    }
    std::u16string many;
    for (int i = 0; i < 20000; ++i)
        many += u"%unset" + std::u16string(CString(Strings::LongToString(i)).View()) + u"%.";
    EXPECT_EQ(Expanded(many + many), std::u16string(40000, u'.'));  // others of the name stand far away
}

}  // namespace
