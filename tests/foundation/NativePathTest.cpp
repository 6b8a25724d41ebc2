#include "RkUtilities/foundation/NativePath.h"
#include "tests/support/ScopedVariable.h"

#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>
#include <pwd.h>
#include <random>
#include <unistd.h>

namespace {

using namespace std::string_view_literals;

TEST(NativePath, IsUtf8WithEscapedBytesAndNoOtherLoneSurrogate)
{
    struct Case {
        const char16_t* text;
        const char* bytes;
    };
    constexpr Case kCases[] = {
        {u"", ""},
        {u"/maps/r\u00E9sum\u00E9 \u65E5\u672C", "/maps/r\xC3\xA9sum\xC3\xA9 \xE6\x97\xA5\xE6\x9C\xAC"},
        {u"\U0001F5FA.map", "\xF0\x9F\x97\xBA.map"},
        {u"old\xDCE9", "old\xE9"},
        {u"\U0001F5FA\xDCFF", "\xF0\x9F\x97\xBA\xFF"},  // the escape after a pair taken for its second half
        {u"\xD800", "\xEF\xBF\xBD"},                    // a first half alone
        {u"\xD800/x", "\xEF\xBF\xBD/x"},
        {u"\xDC7F\xDD00", "\xEF\xBF\xBD\xEF\xBF\xBD"},  // no escapes: U+DC2F would smuggle in a "/"
        {u"\xDC2F\xDC00", "\xEF\xBF\xBD\xEF\xBF\xBD"},
    };
    for (const Case& c : kCases)
        EXPECT_EQ(rk::NativePath(c.text), c.bytes);
}

TEST(NativePath, ComesBackFromTextForAnyBytes)
{
    // Every sequence of three of the bytes that matter: ASCII, continuations, first bytes, bytes never used.
    constexpr char kBytes[] = {'a',    '/',    '\x80', '\x9F', '\xA0', '\xBF', '\xC0', '\xC3',
                               '\xE0', '\xED', '\xEF', '\xF0', '\xF4', '\xF5', '\xFF'};
    std::mt19937 random(7);
    const auto check = [](const std::string& bytes) {
        const CString text = rk::PathText(bytes);
        ASSERT_EQ(rk::NativePath(text), bytes);
        ASSERT_EQ(rk::PathText(rk::NativePath(text)), text);
    };
    for (const char a : kBytes)
        for (const char b : kBytes)
            for (const char c : kBytes)
                check({a, b, c});
    for (int round = 0; round < 20'000; ++round) {
        std::string bytes(random() % 12, '\0');
        for (char& byte : bytes)
            byte = static_cast<char>(kBytes[random() % std::size(kBytes)]);
        check(bytes);
    }
    EXPECT_EQ(rk::PathText("\xED\xA0\x80"), u"\xDCED\xDCA0\xDC80");  // a surrogate in UTF-8 is none
    EXPECT_EQ(rk::PathText("a\xE2\x82"), u"a\xDCE2\xDC82");          // cut short
}

TEST(NativePath, ExpandsTheHomeFolderAtItsStartOnly)
{
    struct Case {
        const char16_t* text;
        const char* home;
        const char* bytes;
    };
    constexpr Case kCases[] = {
        {u"~", "/home/ann", "/home/ann"},
        {u"~/", "/home/ann", "/home/ann/"},
        {u"~/m.map", "/home/ann", "/home/ann/m.map"},
        {u"~/m.map", "/home/ann//", "/home/ann/m.map"},
        {u"~", "/", "/"},
        {u"~/m.map", "/", "/m.map"},
        {u"~/m.map", "/home/\xE9", "/home/\xE9/m.map"},
        {u"~bob/m.map", "/home/ann", "~bob/m.map"},
        {u"/a/~/m.map", "/home/ann", "/a/~/m.map"},
        {u"./~", "/home/ann", "./~"},
        {u" ~/m", "/home/ann", " ~/m"},
        {u"~\\m.map", "/home/ann", "~\\m.map"},
    };
    for (const Case& c : kCases) {
        const ScopedVariable home("HOME", c.home);
        EXPECT_EQ(rk::NativePath(c.text), c.bytes);
    }
}

TEST(NativePath, AsksThePasswordDatabaseWhenHomeIsNotSetOrEmpty)
{
    const passwd* const user = getpwuid(getuid());
    ASSERT_NE(user, nullptr) << "the user of the tests is in no password database";
    for (const char* value : {static_cast<const char*>(nullptr), ""}) {
        const ScopedVariable home("HOME", value);
        EXPECT_EQ(rk::NativePath(u"~"), user->pw_dir);
    }
}

TEST(NativePath, NamesNothingWhenTheTextHasAZeroUnit)
{
    for (const std::u16string_view text : {u"\0"sv, u"/\0"sv, u"/tmp\0/x"sv, u"~/\0"sv}) {
        const std::string bytes = rk::NativePath(text) + "tmp";
        EXPECT_EQ(bytes.front(), '\0');
        EXPECT_NE(access(bytes.c_str(), F_OK), 0);
    }
}

}  // namespace
