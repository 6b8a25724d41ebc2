#include "tests/support/Test.h"

#include <set>

namespace {

CString TextOfNow(const char* locale) {
    rk::SetUserLocale(locale);
    return CrkLogWriter::CurrentTimeString(kCFDateFormatterFullStyle);
}

/// The texts of now under both names, of one second.
std::pair<CString, CString> TextsOfNow(const char* name, const char* otherName) {
    while (true) {
        const CString before = TextOfNow(name), other = TextOfNow(otherName);
        if (TextOfNow(name) == before)
            return {before, other};
    }
}

constexpr const char* kNames[][2] = {
    {"de_DE.UTF-8@euro", "de_DE"}, {"de-DE", "de_DE"},   {"iw_IL.UTF-8", "he_IL"}, {"sr_RS.UTF-8@latin", "sr_Latn_RS"},
    {"POSIX", "en_US_POSIX"},      {"C", "en_US_POSIX"}, {"fr_XX", "fr"}};

TEST(UserLocale, IsTheChosenOneFromTheNextCallOn) {  // DateTextsTest compares the texts with ICU's
    const ScopedUserLocale whatever("");
    std::set<CString> texts;
    for (const auto& [name, icuName] : kNames) {
        const auto [text, icuText] = TextsOfNow(name, icuName);
        EXPECT_EQ(text, icuText) << name;
        texts.insert(text.Left(3));
    }
    EXPECT_GE(texts.size(), 5U);
}

}  // namespace
