#include "RkUtilities/foundation/CString.h"

#include "RkUtilities/foundation/CharacterTypes.h"
#include "RkUtilities/foundation/StUTF8Buffer.h"
#include "RkUtilities/interop/FilesystemPath.h"
#include "RkUtilities/interop/Format.h"

#include "tests/support/ScopedUserLocale.h"

#include <algorithm>
#include <climits>
#include <gtest/gtest.h>
#include <random>
#include <sstream>
#include <stdexcept>
#include <thread>
#include <unicode/uchar.h>
#include <vector>

namespace {

constinit const CString kConstant = CString::Literal(u"a constant of more than eleven units");
const bool kUsedBeforeMain = kConstant.GetLength() == 36;

const CString kLong = u"The quick brown fox jumps over the lazy dog";

template <class T>
concept MakesText = std::convertible_to<T, CString>;
static_assert(sizeof(CString) <= 32 && std::is_nothrow_move_constructible_v<CString> &&
              std::is_nothrow_copy_constructible_v<CString> && std::is_nothrow_move_assignable_v<CString>);
static_assert(MakesText<unsigned short> && MakesText<char16_t> && MakesText<char> && MakesText<std::string_view>);
static_assert(!MakesText<int> && !MakesText<long> && !MakesText<double> && !MakesText<bool> && !MakesText<void*> &&
              !MakesText<std::nullptr_t> && !std::convertible_to<CString, bool>);

TEST(String, StandsBeforeMainAndKeepsConstantsWithoutCopies) {
    EXPECT_TRUE(kUsedBeforeMain);
    CString copy = kConstant;
    EXPECT_EQ(copy.GetUTF16Ptr(), kConstant.GetUTF16Ptr());
    copy.SetAt(0, u'A');
    EXPECT_EQ(kConstant.GetAt(0), u'a');
}

TEST(String, CopiesShareUntilOneSideChangesAndMovesLeaveNothing) {
    CString a = kLong;
    const CString b = a;
    EXPECT_EQ(a.GetUTF16Ptr(), b.GetUTF16Ptr());
    a += u'!';
    EXPECT_EQ(b, kLong);
    EXPECT_EQ(a, kLong + u"!");
    const auto* units = a.GetUTF16Ptr();
    const CString moved = std::move(a);
    EXPECT_EQ(moved.GetUTF16Ptr(), units);
    EXPECT_TRUE(a.IsEmpty());  // NOLINT(bugprone-use-after-move): defined, and said so
    CString& self = a = moved;
    self = *&self;
    EXPECT_EQ(self, moved);
}

TEST(String, CopiesMayBeUsedFromManyThreads) {
    const CString text = kLong;
    std::vector<std::jthread> threads;
    threads.reserve(4);
    for (int t = 0; t < 4; ++t)
        threads.emplace_back([copy = text]() mutable {
            for (int i = 0; i < 2000; ++i) {
                CString mine = copy;
                mine.SetAt(0, u'x');
                copy = mine;
            }
        });
    threads.clear();
    EXPECT_EQ(text, kLong);
}

TEST(String, ComesFromEveryKindOfText) {
    const unsigned short units[] = {u'a', 0xD83D, 0xDE00, 0};
    const unsigned short unit = u'Z';
    const char letter = 'z';
    const char notUtf8 = '\xE9';
    EXPECT_EQ(CString(units), u"a\U0001F600");
    EXPECT_EQ(CString(unit), u"Z");
    EXPECT_EQ(CString(letter), u"z");
    EXPECT_EQ(CString(notUtf8), u"\uFFFD");
    EXPECT_EQ(CString("\xC3\xA4\xF0\x9F\x98\x80"), u"ä\U0001F600");
    EXPECT_EQ(CString(std::string("a\0b", 3)), (std::u16string_view(u"a\0b", 3)));
    EXPECT_TRUE(CString(static_cast<char const*>(nullptr)).IsEmpty());
    EXPECT_TRUE(CString(static_cast<unsigned short const*>(nullptr)).IsEmpty());
    EXPECT_EQ(CString("\xEF\xBB\xBFx", 4, 0x08000100, true), u"x");
    EXPECT_EQ(CString("\xEF\xBB\xBFx", 4, 0x08000100, false), u"\uFEFFx");
    EXPECT_TRUE(CString("x", 1, 0x0100, false).IsEmpty());
    std::ostringstream stream;
    stream << CString(u"ä\xD800");
    EXPECT_EQ(stream.str(), "ä\xEF\xBF\xBD");
    StUTF8Buffer buffer(u"ä");
    static_cast<char*>(buffer)[1] = '\xB6';
    EXPECT_STREQ(buffer, "ö");
    EXPECT_EQ(std::hash<CString>()(kLong), std::hash<CString>()(CString(kLong.View())));
}

// Start, count; what Mid, Left and Right give, and what Delete leaves.
using Units = std::u16string_view;
constexpr std::tuple<int, int, Units, Units, Units, Units> kClampRows[] = {
    {0, 0, u"", u"", u"", u"abcde"},
    {1, 3, u"bcd", u"abc", u"cde", u"ae"},
    {5, 1, u"", u"a", u"e", u"abcde"},
    {6, 1, u"", u"a", u"e", u"abcde"},
    {-1, 2, u"ab", u"ab", u"de", u"abcde"},
    {INT_MIN, INT_MIN, u"", u"", u"", u"abcde"},
    {INT_MAX, INT_MAX, u"", u"abcde", u"abcde", u"abcde"},
    {4, INT_MAX, u"e", u"abcde", u"abcde", u"abcd"},
};

TEST(String, ClampsEveryStartAndCount) {
    for (const auto& [start, count, mid, left, right, deleted] : kClampRows) {
        SCOPED_TRACE(testing::Message() << start << ", " << count);
        CString text = u"abcde";
        EXPECT_EQ(text.Mid(start, count), mid);
        EXPECT_EQ(text.Left(count), left);
        EXPECT_EQ(text.Right(count), right);
        EXPECT_EQ(text.Delete(start, count), static_cast<int>(deleted.size()));
        EXPECT_EQ(text, deleted);
        CString inserted = u"abcde";
        inserted.Insert(start, u"XYZ");
        std::u16string expected = u"abcde";
        expected.insert(static_cast<std::size_t>(std::clamp(start, 0, 5)), u"XYZ");
        EXPECT_EQ(inserted, expected);
        inserted.SetAt(start, u'!');
        EXPECT_EQ(inserted.GetAt(start), start >= 0 && start < 8 ? u'!' : 0);
        EXPECT_EQ(CString(u"abcde").FindOneOf(u"e", start), start <= 4 ? 4 : -1);
        EXPECT_EQ(CString(u"abcde").Find(u"", start), start <= 5 ? std::max(start, 0) : -1);
        EXPECT_EQ(CString(u"abcabc").ReverseFind(u"abc", start), start < 0 || start >= 3 ? 3 : 0);
        int position = start;
        EXPECT_EQ(CString(u",,,,,").Tokenize(u",", position), u"");
        EXPECT_EQ(position, -1);
    }
    EXPECT_EQ(CString(u"abc").GetAt(LONG_MAX), 0);
    EXPECT_EQ(CString(u"abc").GetAt(LONG_MIN), 0);
}

TEST(String, TakesItselfAsArgument) {
    for (const std::u16string_view start : {std::u16string_view(u"abab"), std::u16string_view(u"abababababababab")}) {
        const std::u16string whole(start);
        CString s = start;
        s += s;
        EXPECT_EQ(s, whole + whole);
        s = start;
        s.Insert(1, s);
        EXPECT_EQ(s, u"a" + whole + whole.substr(1));
        s = start;
        EXPECT_EQ(s.Replace(s, s), 1);
        EXPECT_EQ(s, whole);
        EXPECT_EQ(s.Replace(u"ab", s), static_cast<int>(whole.size() / 2));
        EXPECT_EQ(s.GetLength(), static_cast<int>(whole.size() * whole.size() / 2));
        s = start;
        s += s.View().substr(1);
        EXPECT_EQ(s, whole + whole.substr(1));
        s.Format(s);
        EXPECT_EQ(s, whole + whole.substr(1));
    }
}

/// The reference for searches: the obvious way.
std::size_t Naive(std::u16string_view text, std::u16string_view sought, std::size_t start, bool fold) {
    const auto same = [&](char16_t a, char16_t b) {
        return a == b || (fold && u_foldCase(a, U_FOLD_CASE_DEFAULT) == u_foldCase(b, U_FOLD_CASE_DEFAULT));
    };
    for (std::size_t at = start; at + sought.size() <= text.size(); ++at) {
        if (std::equal(sought.begin(), sought.end(), text.begin() + static_cast<std::ptrdiff_t>(at), same))
            return at;
    }
    return std::u16string_view::npos;
}

TEST(Searching, FindsAsTheObviousWayDoes) {
    std::mt19937 random(7);
    const std::u16string_view alphabet = u"aAbkK\u212AsSſθΘϑϴιΙ\u0345\u1FBE";  // units with up to four case forms
    const auto any = [&](std::size_t length, std::size_t letters) {
        std::u16string text;
        while (text.size() < length)
            text += alphabet[random() % letters];
        return text;
    };
    for (int round = 0; round < 4000; ++round) {
        const std::size_t letters = 2 + random() % (alphabet.size() - 2);
        const std::u16string text = any(random() % (round % 4 == 0 ? 800 : 90), letters);
        const std::u16string sought = any(random() % 5, letters);
        const int start = static_cast<int>(random() % (text.size() / 4 + 20));
        const auto from = static_cast<std::size_t>(start);
        EXPECT_EQ(CString(text).Find(sought, start), static_cast<int>(Naive(text, sought, from, false)));
        EXPECT_EQ(CString(text).FindNoCase(sought, start), static_cast<int>(Naive(text, sought, from, true)));
    }
}

TEST(String, ComparesAndChangesCaseInBlocksAsUnitByUnit) {
    std::mt19937 random(9);
    const std::u16string_view alphabet = u"azAZ@[`{k\u007F\u0080\u212AéÉяЯß";  // the neighbours of letters, too
    const auto folded = [](char16_t unit) { return u_foldCase(unit, U_FOLD_CASE_DEFAULT); };
    for (int round = 0; round < 4000; ++round) {
        const std::size_t length = random() % 80;
        std::u16string a;
        while (a.size() < length)
            a += alphabet[random() % (round % 2 == 0 ? 9 : alphabet.size())];
        std::u16string b = a;
        for (char16_t& unit : b)
            unit = static_cast<char16_t>(random() % 2 == 0 ? unit : u_toupper(unit));
        for (auto changes = random() % 3; changes > 0 && !b.empty(); --changes)
            b[random() % b.size()] = alphabet[random() % alphabet.size()];
        b.resize(b.size() + random() % 2, u'.');
        int expected = a.size() < b.size() ? -1 : 0;
        for (std::size_t i = a.size(); i-- > 0;)
            expected = folded(a[i]) == folded(b[i]) ? expected : folded(a[i]) - folded(b[i]);
        ASSERT_EQ(CString(a).CompareNoCase(b), expected) << CString(a) << " / " << CString(b);
        const CString shared = a;
        CString own = a;
        own.SetAt(0, own.GetAt(0));
        std::transform(a.begin(), a.end(), a.begin(), [](char16_t unit) { return u_toupper(unit); });
        ASSERT_EQ(CString(shared).MakeUpper(), a);
        ASSERT_EQ(own.MakeUpper(), a);
        ASSERT_EQ(CString(a).MakeUpper(), a);
    }
}

TEST(Searching, TakesLinearTimeWhereEveryPlaceAlmostMatches) {
    const std::u16string text(400000, u'a');
    const std::u16string sought = std::u16string(100000, u'a') + u'b' + std::u16string(99999, u'a');
    EXPECT_EQ(CString(text).Find(sought), -1);
    EXPECT_EQ(CString(text + sought).FindNoCase(sought), 400000);
    EXPECT_EQ(CString(text).ReverseFind(sought), -1);
    EXPECT_EQ(CString(sought + text).ReverseFind(sought), 0);
}

TEST(String, ChangesCaseUnitByUnitAsUnicodeSays) {
    std::u16string all;
    for (unsigned unit = 0; unit < 0x10000; ++unit)
        all += static_cast<char16_t>(unit);
    CString upper = all;
    CString lower = all;
    upper.MakeUpper();
    lower.MakeLower();
    for (unsigned unit = 0; unit < 0x10000; ++unit) {
        const auto code = static_cast<UChar32>(unit);
        ASSERT_EQ(upper.GetAt(unit), u_toupper(code)) << unit;
        ASSERT_EQ(lower.GetAt(unit), u_tolower(code)) << unit;
        const CString one(static_cast<char16_t>(unit));
        const CString folded(static_cast<char16_t>(u_foldCase(code, U_FOLD_CASE_DEFAULT)));
        ASSERT_EQ(one.CompareNoCase(folded), 0) << unit;
        ASSERT_EQ((folded + u"-").FindNoCase(one), 0) << unit;
        ASSERT_EQ(IsCharAlphaNumeric(static_cast<unsigned short>(unit)), u_isalpha(code) || u_isdigit(code)) << unit;
        ASSERT_EQ(CString(one).Trim().IsEmpty(), u_isUWhiteSpace(code)) << unit;
    }
    EXPECT_LT(CString(u"apple").CompareNoCase(u"BANANA"), 0);
    EXPECT_GT(CString(u"Bb").CompareNoCase(u"b"), 0);
    EXPECT_EQ(CString(u" \t\u3000a b\u00A0\n").Trim(), u"a b");
    EXPECT_EQ(CString(u" a ").TrimRight(), u" a");
}

TEST(String, RefusesToGrowBeyondItsLength) {
    CString text = std::u16string(1U << 16, u'x');
    const CString before = text;
    EXPECT_THROW(text.Replace(u"x", std::u16string(1U << 16, u'y')), std::length_error);
    EXPECT_EQ(text, before);
}

TEST(String, RemovesWhatItIsTold) {
    CString text = u"a\r\nb\rc\n";
    EXPECT_EQ(text.Remove(u'z'), 0);
    text.RemoveLineFeeds();
    EXPECT_EQ(text, u"abc");
    EXPECT_EQ(text.Remove(u'b'), 1);
    text.Empty();
    EXPECT_EQ(text, u"");
    EXPECT_EQ(*text.GetUTF16Ptr(), 0);
}

TEST(String, ReadsIntegersFromTheFront) {
    constexpr std::pair<const char16_t*, int> kRows[] = {
        {u"- 7", 0}, {u"", 0}, {u" \t-42x", -42}, {u"2147483648", INT_MAX}, {u"-2147483649", INT_MIN}};
    for (const auto& [text, value] : kRows)
        EXPECT_EQ(_ttoi(CString(text).GetUTF16Ptr()), value) << CString(text);
    EXPECT_EQ(_ttoi(nullptr), 0);
}

TEST(String, HasWhatAlgorithmsAndOlderCodeAskFor) {
    const CString text = u"xxabcyx";
    EXPECT_EQ(text[std::size_t{2}], u'a');
    EXPECT_EQ(text[-1] + text[7] + text[SIZE_MAX], 0);
    EXPECT_EQ(std::size(text), 7U);
    EXPECT_TRUE(!std::empty(text) && std::data(text) == text.begin() && std::ranges::contiguous_range<CString>);
    const std::tuple<CString, CString, CString> rows[] = {
        {CString(text).Trim(u"yx"), u"abc", u"both ends"},
        {CString(text).TrimLeft(u"x"), u"abcyx", u"start"},
        {CString(text).TrimRight(u"xy"), u"xxabc", u"end"},
        {CString(text).Trim(u"abcxy"), u"", u"all"},
        {CString(text).Trim(u""), text, u"nothing"},
        {CString(u"\u2003 a ").TrimLeft(), u"a ", u"white space"},
        {text.SpanIncluding(u"ax"), u"xxa", u"some"},
        {text.SpanIncluding(u"abcxy"), text, u"whole"},
        {text.SpanIncluding(u""), u"", u"none"},
        {text.SpanExcluding(u"yb"), u"xxa", u"up to"},
        {text.SpanExcluding(u";"), text, u"nothing found"},
        {CString(u"a\U0001F600b").MakeReverse(), u"b\U0001F600a", u"pair"},
        {CString().MakeReverse(), u"", u"empty"}};
    for (const auto& [result, expected, what] : rows)
        EXPECT_EQ(result, expected) << what;
    CString line = u"a";
    line.AppendChar(u'=');
    line.AppendFormat(u"%d%s", 7, line);
    EXPECT_EQ(line, u"a=7a=");
    EXPECT_THROW(line.AppendFormat(u"%s"), rk::FormatError);
    EXPECT_EQ(line, u"a=7a=");
    const ScopedUserLocale swedish("sv_SE");
    EXPECT_LT(CString(u"z").Collate(u"\u00C4"), 0);
    EXPECT_GT(CString(u"B").Collate(u"a"), 0);
    EXPECT_NE(CString(u"A").Collate(u"a"), 0);
    EXPECT_EQ(CString(u"\u00E4").Collate(u"\u00E4"), 0);
}

TEST(String, LendsABufferThatOnlyItsOwnTextSees) {
    for (const int room : {-1, 0, 3, 11, 12, 400}) {
        SCOPED_TRACE(room);
        CString text = u"an older text of some length";
        const CString copy = text;
        const std::size_t units = std::max(copy.size(), static_cast<std::size_t>(std::max(room, 0)));
        char16_t* buffer = text.GetBuffer(room);
        EXPECT_TRUE(std::all_of(buffer + copy.size(), buffer + units + 1, [](char16_t unit) { return unit == 0; }));
        std::fill_n(buffer, units, u'n');
        text.ReleaseBuffer(INT_MAX);
        EXPECT_EQ(text.Left(static_cast<int>(units)), CString(std::u16string(units, u'n')));
        buffer = text.GetBuffer();
        buffer[2] = 0;
        text.ReleaseBuffer();
        EXPECT_EQ(text, u"nn");
        EXPECT_EQ(copy.size(), 28U);
    }
    CString literal = CString::Literal(u"a literal of more than eleven units");
    literal.GetBuffer()[0] = u'A';
    literal.ReleaseBuffer();
    EXPECT_EQ(literal, u"A literal of more than eleven units");
    EXPECT_THROW(static_cast<void>(literal.GetBuffer(INT_MAX)), std::length_error);
}

TEST(String, GoesToAndFromTheStandardLibrary) {
    const CString path = u"/maps/old\xDCE9 \u00FC";
    EXPECT_EQ(rk::ToFilesystemPath(path).native(), "/maps/old\xE9 \xC3\xBC");
    EXPECT_EQ(rk::FromFilesystemPath(rk::ToFilesystemPath(path)), path);
#if defined(__cpp_lib_format)
    EXPECT_EQ(std::format("{:>3}|{:.8}", CString(u"\u00FC"), CrkGuid(CrkGuid::c_nullGuid)), "  \u00FC|00000000");
#endif
}

}  // namespace
