#include "RkUtilities/platform/StringTables.h"
#include "RkUtilities/foundation/CString.h"
#include "RkUtilities/platform/UserLocale.h"

#include "tests/support/ScopedFolder.h"

#include <cstdlib>
#include <gtest/gtest.h>

namespace {

CString Loaded(const char* key, const char* bundle = nullptr)
{
    CString text = u"before";
    text.LoadString(key, bundle);
    return text;
}

TEST(StringTables, AnswerInTheUsersLanguage)
{
    const ScopedFolder folder;
    folder.Write("root.txt", "root { Red { \"Red\" } Sky { \"Sky blue\" } }");
    folder.Write("de.txt", "de { Red { \"Rot\\u0000!\" } }");
    std::string path = folder.Path();
    path.pop_back();
    ASSERT_EQ(
        std::system(("genrb -q -d '" + path + "' '" + path + "/root.txt' '" + path + "/de.txt' > /dev/null").c_str()),
        0);
    EXPECT_EQ(Loaded("Red"), u"");  // no tables named
    rk::platform::SetUserLocale("de_AT");
    EXPECT_EQ(Loaded("Red", path.c_str()), std::u16string_view(u"Rot\0!", 5));
    rk::platform::SetStringTables(path);
    EXPECT_EQ(Loaded("Sky"), u"Sky blue");  // ICU's fallback to the root
    rk::platform::SetUserLocale("ja_JP");
    EXPECT_EQ(Loaded("Red"), u"Red");
    EXPECT_EQ(Loaded("No such key"), u"");
    EXPECT_EQ(Loaded(nullptr), u"");
    EXPECT_EQ(Loaded("Red", "/no/such/folder"), u"");
    rk::platform::SetStringTables("");
    rk::platform::SetUserLocale("");
    EXPECT_EQ(Loaded("Red"), u"");
}

}  // namespace
