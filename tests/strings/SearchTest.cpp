#include "tests/support/Test.h"

namespace {

using Strings = CrkStringUtilities;
constexpr bool kMatchCase = true, kAnyCase = false, kWholeWord = true, kAnywhere = false;

struct SearchRow {
    const char16_t *text, *sought;
    bool matchCase, wholeWord;
    int start, index;
};
constexpr SearchRow kSearchRows[] = {
    {u"the tree", u"Tree", kAnyCase, kAnywhere, 0, 4},
    {u"abab", u"ab", kMatchCase, kWholeWord, 0, 2},  // the next pass begins at the rejected match's end
    {u"abc", u"", kMatchCase, kAnywhere, 1, 1},
    {u"abc", u"c", kMatchCase, kAnywhere, 4, -1},
    {u"abc", u"a", kMatchCase, kAnywhere, INT_MIN, 0},
    {u"\u017Ftop", u"STOP", kAnyCase, kAnywhere, 0, 0},  // upper case joins the long s with S
};

TEST(Search, FindsTextsAndWholeWords) {
    for (const SearchRow& row : kSearchRows) {
        const CString text(row.text), sought(row.sought);
        SCOPED_TRACE((text + u" / " + sought).ToUtf8());
        EXPECT_EQ(Strings::FindSubstring(text, sought, row.matchCase, row.wholeWord, row.start), row.index);
        EXPECT_EQ(Strings::FindInString(text, sought, row.matchCase, row.wholeWord, row.start), row.index != -1);
    }
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
        const CString text = AnyText(random, u"aAb _ſsS", 40), sought = AnyText(random, u"aAb _ſsS", 3);
        const bool matchCase = random() % 2 == 0;
        const int start = static_cast<int>(random() % 6);
        ASSERT_EQ(Strings::FindSubstring(text, sought, matchCase, kWholeWord, start),
                  Passes(text, sought, matchCase, start))
            << text << " / " << sought;
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
