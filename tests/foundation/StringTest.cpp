// What a text does under any calls of one thread is compared with std::u16string by fuzz/StringFuzz.cpp.
#include "tests/support/AtOnce.h"
#include "tests/support/Test.h"

#include "RkUtilities/interop/FilesystemPath.h"
#include "RkUtilities/interop/Format.h"

#include <stdexcept>
#include <unicode/uchar.h>

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

TEST(String, StandsBeforeMainAndSharesItsUnitsUntilOneSideChanges) {
    EXPECT_TRUE(kUsedBeforeMain);
    for (const CString& text : {kConstant, kLong}) {
        CString copy = text, empty = text;
        EXPECT_EQ(copy.GetUTF16Ptr(), text.GetUTF16Ptr());
        copy.GetBuffer()[0] = u'A';
        copy.ReleaseBuffer(INT_MAX);
        EXPECT_NE(text.GetAt(0), u'A');
        EXPECT_THROW(static_cast<void>(copy.GetBuffer(INT_MAX)), std::length_error);
        EXPECT_EQ(copy.Left(text.GetLength()), u"A" + text.Mid(1));
        empty.Empty();
        EXPECT_EQ(*empty.GetUTF16Ptr(), 0);
        const auto* units = copy.GetUTF16Ptr();
        const CString moved = std::move(copy);
        EXPECT_EQ(moved.GetUTF16Ptr(), units);
        EXPECT_TRUE(copy.IsEmpty());  // NOLINT(bugprone-use-after-move): defined, and said so
        CString& self = copy = moved;
        self = *&self;
        EXPECT_EQ(self, moved);
    }
}

TEST(String, CopiesMayBeUsedFromManyThreads) {
    const CString text = kLong.View();
    AtOnce<4>([&text] {
        for (int i = 0; i < 2000; ++i) {
            CString mine = text;
            mine.SetAt(0, u'x');
        }
    });
    EXPECT_EQ(text, kLong);
}

TEST(String, ComesFromEveryKindOfTextAndGoesToTheStandardLibrary) {
    const unsigned short units[] = {u'a', 0xD83D, 0xDE00, 0};
    const char notUtf8 = '\xE9';
    const std::pair<CString, std::u16string_view> rows[] = {
        {units, u"a\U0001F600"},
        {notUtf8, u"\uFFFD"},
        {std::string("a\0b", 3), std::u16string_view(u"a\0b", 3)},
        {static_cast<char const*>(nullptr), u""},
        {static_cast<unsigned short const*>(nullptr), u""},
        {CString("\xEF\xBB\xBFx", 4, 0x08000100, true), u"x"},
        {CString("\xEF\xBB\xBFx", 4, 0x08000100, false), u"\uFEFFx"},
        {CString("x", 1, 0x0100, false), u""}};
    for (const auto& [text, expected] : rows)
        EXPECT_EQ(text, expected);
    EXPECT_EQ((std::ostringstream() << CString(u"ä\xD800")).str(), "ä\xEF\xBF\xBD");
    EXPECT_EQ(std::hash<CString>()(kLong), std::hash<CString>()(CString(kLong.View())));
    const CString path = u"/maps/old\xDCE9 \u00FC";
    EXPECT_EQ(rk::ToFilesystemPath(path).native(), "/maps/old\xE9 \xC3\xBC");
    EXPECT_EQ(rk::FromFilesystemPath(rk::ToFilesystemPath(path)), path);
#if defined(__cpp_lib_format)
    EXPECT_EQ(std::format("{:>3}|{:.8}", CString(u"\u00FC"), CrkGuid(CrkGuid::c_nullGuid)), "  \u00FC|00000000");
#endif
}

TEST(String, TakesItselfAsArgument) {
    for (const std::u16string whole : {u"abab", u"abababababababab"}) {
        const std::pair<void (*)(CString&), std::u16string> rows[] = {
            {[](CString& s) { s += s; }, whole + whole},
            {[](CString& s) { s.Insert(1, s); }, u"a" + whole + whole.substr(1)},
            {[](CString& s) { EXPECT_EQ(s.Replace(s, s), 1); }, whole},
            {[](CString& s) { s += s.View().substr(1); }, whole + whole.substr(1)},
            {[](CString& s) { s.Format(s); }, whole},
            {[](CString& s) { s.AppendFormat(u"%d%s", 7, s); }, whole + u"7" + whole},
            {[](CString& s) { EXPECT_THROW(s.AppendFormat(u"%s"), rk::FormatError); }, whole}};
        for (const auto& [change, expected] : rows) {
            CString text = whole;
            change(text);
            EXPECT_EQ(text, expected);
        }
    }
    CString large = std::u16string(1U << 16, u'x');
    EXPECT_THROW(large.Replace(u"x", large), std::length_error);
    EXPECT_EQ(large, std::u16string(1U << 16, u'x'));
}

std::u16string Folded(std::u16string text) {
    for (char16_t& unit : text)
        unit = static_cast<char16_t>(u_foldCase(unit, U_FOLD_CASE_DEFAULT));
    return text;
}

TEST(Searching, FindsAndComparesAsFoldedTextsDo) {
    std::mt19937 random(7);
    // Units with up to four case forms, and the neighbours of letters.
    const std::u16string_view all = u"azAZ@[`{kK\u007F\u0080\u212AsSſθΘϑϴιΙ\u0345\u1FBEéÉяЯß";
    for (int round = 0; round < 8000; ++round) {
        const std::u16string_view alphabet = all.substr(random() % (all.size() - 2), 2 + random() % 20);
        const std::u16string text = AnyText(random, alphabet, round % 4 == 0 ? 800 : 90);
        const std::u16string sought = AnyText(random, alphabet, 5);
        const auto start = static_cast<int>(random() % (text.size() / 4 + 20));
        const auto from = static_cast<std::size_t>(start);
        ASSERT_EQ(CString(text).Find(sought, start), static_cast<int>(text.find(sought, from)));
        ASSERT_EQ(CString(text).FindNoCase(sought, start), static_cast<int>(Folded(text).find(Folded(sought), from)))
            << CString(sought) << " in " << CString(text);
        std::u16string other = text;
        for (char16_t& unit : other)
            unit = random() % 50 == 0 ? alphabet.front()
                                      : static_cast<char16_t>(random() % 2 == 0 ? unit : u_toupper(unit));
        other.resize(other.size() + random() % 2, u'.');
        ASSERT_EQ(CString(text).CompareNoCase(other) <=> 0, Folded(text) <=> Folded(other))
            << CString(text) << " / " << CString(other);
        std::u16string upper = text;
        std::ranges::transform(text, upper.begin(), [](char16_t unit) { return u_toupper(unit); });
        CString own = text;
        own.SetAt(0, own.GetAt(0));
        const CString shared = own;
        ASSERT_EQ(CString(shared).MakeUpper(), upper);
        ASSERT_EQ(CString(text).MakeUpper(), upper);
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
    const CString upper = CString(all).MakeUpper(), lower = CString(all).MakeLower();
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
    EXPECT_EQ(CString(u" a b\u00A0\n").TrimRight() + CString(u"\u2003\t c ").TrimLeft(), u" a bc ");
    const ScopedUserLocale swedish("sv_SE");
    EXPECT_LT(CString(u"z").Collate(u"\u00C4"), 0);
    EXPECT_GT(CString(u"B").Collate(u"a"), 0);
    EXPECT_NE(CString(u"A").Collate(u"a"), 0);
    EXPECT_EQ(CString(u"\u00E4").Collate(u"\u00E4"), 0);
}

TEST(String, ReadsIntegersAndUnitsOfAnyPlace) {
    constexpr std::pair<const char16_t*, int> kRows[] = {
        {u"- 7", 0}, {u"", 0}, {u" \t-42x", -42}, {u"2147483648", INT_MAX}, {u"-2147483649", INT_MIN}};
    for (const auto& [text, value] : kRows)
        EXPECT_EQ(_ttoi(rk::AsUnsignedShort(text)), value) << CString(text);
    EXPECT_EQ(_ttoi(nullptr), 0);
    const CString text = u"abc";
    EXPECT_EQ(text.GetAt(LONG_MAX) + text.GetAt(LONG_MIN) + text[-1] + text[3] + text[SIZE_MAX], 0);
    EXPECT_EQ(text[std::size_t{2}], u'c');
    static_assert(std::ranges::contiguous_range<CString>);
}

}  // namespace
