#include "RkUtilities/foundation/UserLocale.h"

#include "RkUtilities/logging/CrkLogWriter.h"

#include "tests/support/ScopedUserLocale.h"
#include "tests/support/ScopedVariable.h"

#include <chrono>
#include <ctime>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <unicode/smpdtfmt.h>

namespace {

std::string IcuText(const char* locale, std::time_t time) {
    const std::unique_ptr<icu::DateFormat> format(
        icu::DateFormat::createDateTimeInstance(icu::DateFormat::kFull, icu::DateFormat::kFull, icu::Locale(locale)));
    format->adoptTimeZone(icu::TimeZone::createTimeZone("UTC"));
    icu::UnicodeString text;
    std::string bytes;
    return format->format(static_cast<UDate>(time) * 1000, text).toUTF8String(bytes);
}

/// Whether the texts of now are those of `locale`.
bool IsLocaleNow(const char* locale) {
    // Not std::time: its clock is some milliseconds late, and told another second than the library's.
    const auto now = [] { return std::chrono::system_clock::to_time_t(std::chrono::system_clock::now()); };
    while (true) {
        const std::time_t time = now();
        const CString ours = CrkLogWriter::CurrentTimeString(kCFDateFormatterFullStyle);
        if (time == now())
            return ours.ToUtf8() == IcuText(locale, time);
    }
}

constexpr const char* kNames[][2] = {
    {"de_DE.UTF-8@euro", "de_DE"}, {"de-DE", "de_DE"},
    {"iw_IL.UTF-8", "he_IL"},      {"sr_RS.UTF-8@latin", "sr_Latn_RS"},
    {"POSIX", "en_US_POSIX"},      {"th_TH@calendar=gregorian", "th_TH@calendar=gregorian"},
    {"C", "en_US_POSIX"},          {"fr_XX", "fr"}};

TEST(UserLocale, IsTheChosenOneFromTheNextCallOn) {
    const ScopedZone utc("UTC");
    for (const auto& [name, icuName] : kNames) {
        const ScopedUserLocale user(name);
        EXPECT_TRUE(IsLocaleNow(icuName)) << name;
    }
    EXPECT_TRUE(IsLocaleNow("en_US_POSIX"));
}

}  // namespace
