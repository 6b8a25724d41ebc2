#include "tests/support/Test.h"

namespace {

using Strings = CrkStringUtilities;

/// A text, what is sought, whether its case counts, a start and the index. Upper case joins the long s with S.
constexpr std::tuple<const char16_t*, const char16_t*, bool, int, int> kSearchRows[] = {
    {u"the tree", u"Tree", false, 0, 4},  {u"abc", u"A", true, 0, -1}, {u"abc", u"", true, 1, 1},
    {u"\u017Ftop", u"STOP", false, 0, 0}, {u"abc", u"c", true, 4, -1}, {u"abc", u"a", true, INT_MIN, 0}};

TEST(Search, FindsTextsInAnyCaseOrTheirOwn) {
    for (const auto& [text, sought, matchCase, start, index] : kSearchRows)
        EXPECT_EQ(Strings::FindSubstring(text, sought, matchCase, /*wholeWord=*/false, start), index)
            << CString(sought);
    EXPECT_EQ(Strings::FindCaseInsensitive(u"TREE", CString(u"the tree"), 0), 4);
    EXPECT_EQ(Strings::FindCaseInsensitive(u"\u017F", CString(u"s"), 0), -1);  // lower case does not
}

/// The passes as they are defined, on upper-cased copies.
int Passes(CString text, CString sought, bool matchCase, int start) {
    if (!matchCase) {
        text.MakeUpper();
        sought.MakeUpper();
    }
    for (int pass = start;;) {
        const int at = text.Find(sought, pass);
        if (at < 0)
            return -1;
        const int end = at + sought.GetLength();
        const bool before = at > pass && IsCharAlphaNumeric(text.GetAt(at - 1));
        if (!before && (end >= text.GetLength() || !IsCharAlphaNumeric(text.GetAt(end))))
            return at;
        if (end == pass)
            return -1;
        pass = end;
    }
}

TEST(Search, TakesTheSamePassesOverRandomTexts) {
    std::mt19937 random(8);
    for (int round = 0; round < 5000; ++round) {
        const CString text = AnyText(random, u"aAb _ſsS\u0345", 40), sought = AnyText(random, u"aAb _ſsS\u0345", 3);
        const bool matchCase = random() % 2 == 0;
        const int start = static_cast<int>(random() % 6);
        const int index = Passes(text, sought, matchCase, start);
        ASSERT_EQ(Strings::FindSubstring(text, sought, matchCase, /*wholeWord=*/true, start), index)
            << text << " / " << sought;
        ASSERT_EQ(Strings::FindInString(text, sought, matchCase, /*wholeWord=*/true, start), index != -1);
    }
}

TEST(Search, LooksThroughListsAndArrays) {
    const CAtlArray<CString> array{u"a", u"B", u"b"};
    const CAtlList<CString> list{u"a", u"B", u"b"};
    EXPECT_EQ(Strings::Find(u"b", &array), 2);
    EXPECT_EQ(Strings::Find(u"c", &array), -1);
    POSITION second = list.GetHeadPosition();
    list.GetNext(second);
    EXPECT_EQ(Strings::FindCaseInsensitive(u"b", &list), second);
    EXPECT_EQ(Strings::FindCaseInsensitive(u"c", &list), nullptr);
    EXPECT_EQ(Strings::Find(u"", nullptr), -1);
    EXPECT_EQ(Strings::FindCaseInsensitive(u"", nullptr), nullptr);
}

TEST(Search, LooksAtBeginningsEndsAndSingleUnits) {
    const std::tuple<const char16_t*, const char16_t*, bool, bool, bool> rows[] = {
        {u"Topic", u"", false, true, true},      {u"Topic", u"TOP", true, true, false},
        {u"Topic", u"TOP", false, false, false}, {u"Topic", u"PIC", true, false, true},
        {u"Topic", u"PIC", false, false, false}, {u"To", u"Topic", true, false, false}};
    for (const auto& [text, part, ignoreCase, begins, ends] : rows) {
        EXPECT_EQ(Strings::BeginsWith(text, part, ignoreCase), begins) << CString(part);
        EXPECT_EQ(Strings::EndsWith(text, part, ignoreCase), ends) << CString(part);
    }
    EXPECT_EQ(Strings::CountOccurrences(u"a.b.c", u'.'), 2);
    EXPECT_EQ(Strings::ReverseFindOneOf(u"a.b-c", u".-"), 3);
    EXPECT_EQ(Strings::GetFirstChar(u"  x ", true), u'x');
    EXPECT_EQ(Strings::GetFirstChar(u"  x ", false), u' ');
    EXPECT_EQ(Strings::GetLastChar(u" x ", true), u'x');
    EXPECT_TRUE(Strings::IsBlank(u"\t\r\n \x01"));
    EXPECT_FALSE(Strings::IsBlank(u"\u00A0"));
    EXPECT_EQ(Strings::RemovePrefix(u"prefix.name", u"prefix."), u"name");
    EXPECT_EQ(Strings::RemovePrefix(u"Prefix.name", u"prefix."), u"Prefix.name");
}

}  // namespace
