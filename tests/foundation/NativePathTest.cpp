#include "tests/support/Test.h"

#include <pwd.h>
#include <unistd.h>

namespace {

using namespace std::string_view_literals;

TEST(NativePath, ComesBackFromTextForAnyBytes) {
    // Every sequence of four of the bytes that matter: ASCII, continuations, first bytes, bytes never used.
    constexpr std::string_view kBytes = "a/\x80\x9F\xA0\xBF\xC0\xC3\xE0\xED\xEF\xF0\xF4\xF5\xFF";
    for (std::size_t number = 0; number < 15 * 15 * 15 * 15; ++number) {
        const std::string bytes = {kBytes[number % 15], kBytes[number / 15 % 15], kBytes[number / 225 % 15],
                                   kBytes[number / 3375]};
        const CString text = rk::PathText(bytes);
        ASSERT_EQ(rk::NativePath(text), bytes);
        ASSERT_EQ(rk::PathText(rk::NativePath(text)), text);
    }
}

TEST(NativePath, IsUtf8WithEscapedBytesAndTheHomeFolderAtItsStart) {
    constexpr std::tuple<const char16_t*, const char*, const char*> kCases[] = {
        {u"~", "/home/ann", "/home/ann"},
        {u"~/m.map", "/home/ann//", "/home/ann/m.map"},
        {u"~", "/", "/"},
        {u"~/m.map", "/", "/m.map"},
        {u"~/m.map", "/home/\xE9", "/home/\xE9/m.map"},
        {u"~bob/m.map", "/home/ann", "~bob/m.map"},
        {u"/a/~/m.map", "/home/ann", "/a/~/m.map"},
        {u"\U0001F5FA\xDCFF", "/", "\xF0\x9F\x97\xBA\xFF"},  // the escape after a pair taken for its second half
        {u"\xD800/x", "/", "\xEF\xBF\xBD/x"},
        {u"\xDC7F\xDD00", "/", "\xEF\xBF\xBD\xEF\xBF\xBD"},  // no escapes: U+DC2F would smuggle in a "/"
    };
    for (const auto& [text, folder, bytes] : kCases) {
        const ScopedVariable home("HOME", folder);
        EXPECT_EQ(rk::NativePath(text), bytes);
    }
    const passwd* const user = getpwuid(getuid());
    ASSERT_NE(user, nullptr) << "the user of the tests is in no password database";
    for (const char* value : {static_cast<const char*>(nullptr), ""}) {
        const ScopedVariable home("HOME", value);
        EXPECT_EQ(rk::NativePath(u"~"), user->pw_dir);
    }
    for (const std::u16string_view nothing : {u"\0"sv, u"/\0"sv, u"/tmp\0/x"sv, u"~/\0"sv})
        EXPECT_EQ(rk::NativePath(nothing).front(), '\0');
}

}  // namespace
