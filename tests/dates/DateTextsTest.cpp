#include "tests/support/InChild.h"
#include "tests/support/Test.h"

#include <unicode/gregocal.h>
#include <unicode/smpdtfmt.h>

namespace {

using Times = std::vector<std::int64_t>;
using ZoneTimes = std::pair<const char*, Times>;

/// The times in each of the four kinds of texts, with bars between, by a process whose first locale is `locale`.
std::string OurTexts(const char* locale, const std::vector<ZoneTimes>& zones) {
    return InChild([&] {
        const ScopedUserLocale user(locale);
        std::string lines;
        for (const auto& [name, times] : zones) {
            const ScopedZone zone(name);
            for (const auto make : {CrkDateUtilities::ShortDateString, CrkDateUtilities::LongDateString,
                                    CrkDateUtilities::ShortTimeString, CrkDateUtilities::LongTimeString}) {
                for (const std::int64_t seconds : times)
                    lines += make(At(seconds)).ToUtf8() + '|';
            }
        }
        return lines;
    });
}

/// The same by ICU alone, with ICU's own zone.
std::string IcuTexts(const char* locale, const char* zone, const Times& times) {
    using icu::DateFormat;
    const icu::Locale icuLocale = icu::Locale::createCanonical(locale);
    std::string lines;
    for (const auto& [dateStyle, timeStyle] : {std::pair(DateFormat::kShort, DateFormat::kNone),
                                               {DateFormat::kLong, DateFormat::kNone},
                                               {DateFormat::kNone, DateFormat::kShort},
                                               {DateFormat::kNone, DateFormat::kLong}}) {
        const std::unique_ptr<DateFormat> format(DateFormat::createDateTimeInstance(dateStyle, timeStyle, icuLocale));
        std::unique_ptr<icu::Calendar> calendar(format->getCalendar()->clone());
        UErrorCode error = U_ZERO_ERROR;
        if (auto* const gregorian = dynamic_cast<icu::GregorianCalendar*>(calendar.get()))
            gregorian->setGregorianChange(-std::numeric_limits<double>::max(), error);
        format->adoptCalendar(calendar.release());
        format->adoptTimeZone(icu::TimeZone::createTimeZone(zone));
        for (const std::int64_t seconds : times) {
            icu::UnicodeString text;
            format->format(static_cast<UDate>(seconds) * 1000, text).append(u'|').toUTF8String(lines);
        }
    }
    return lines;
}

/// Besides those that ICU lists: other calendars, other numbers, unknown locales.
constexpr std::string_view kLocales =
    "ja_JP@calendar=japanese zh_CN@calendar=chinese he_IL@calendar=hebrew am_ET@calendar=ethiopic de_DE@numbers=roman "
    "hi_IN@numbers=deva en_US@hours=h23 xx_YY root";

/// With the time from when on both zone databases agree.
constexpr std::pair<const char*, std::int64_t> kZones[] = {
    {"UTC", -62135596800}, {"Europe/Berlin", 0}, {"Asia/Kathmandu", 600000000}, {"Australia/Lord_Howe", 600000000}};

TEST(DateTexts, AreThoseOfIcuInEveryLocaleAtAnyTime) {
    constexpr std::int64_t kLast = 253402300799;
    std::mt19937_64 random(11);
    std::istringstream others{std::string(kLocales)};
    std::vector<std::string> locales(std::istream_iterator<std::string>(others), {});
    std::int32_t count = 0;
    const icu::Locale* const listed = icu::Locale::getAvailableLocales(count);
    std::transform(listed, listed + count, std::back_inserter(locales), std::mem_fn(&icu::Locale::getName));
    for (const std::string& name : locales) {
        const auto& [zone, first] = kZones[random() % std::size(kZones)];
        Times times = {first, kLast, 1774745999, 1774746000, 1792889999, 1792890000};
        for (int i = 0; i < 8; ++i)
            times.push_back(std::uniform_int_distribution<std::int64_t>(first, kLast)(random));
        ASSERT_EQ(OurTexts(name.c_str(), {{zone, times}}), IcuTexts(name.c_str(), zone, times)) << name << ' ' << zone;
    }
}

constexpr std::int64_t kEvening = 1794862325;  // 16 November 2026, 20:52:05 UTC

TEST(DateTexts, JoinWithOneSpaceAndKeepTheLocaleOfTheFirstCallOfTheirKind) {
    const std::string texts = InChild([] {  // a child, since other tests have fixed this process's locale
        const CTime time = At(kEvening);
        rk::SetUserLocale("de_DE");
        const CString date = CrkDateUtilities::ShortDateString(time);
        rk::SetUserLocale("en_US");
        EXPECT_EQ(CrkDateUtilities::ShortDateTimeString(time), date + u" " + CrkDateUtilities::ShortTimeString(time));
        EXPECT_EQ(CrkDateUtilities::DateTimeString(time), date + u" " + CrkDateUtilities::LongTimeString(time));
        return OurTexts("fr_FR", {{"UTC", {kEvening}}});
    });
    const std::string german = IcuTexts("de_DE", "UTC", {kEvening}), english = IcuTexts("en_US", "UTC", {kEvening});
    const auto datesEnd = [](const std::string& all) { return all.find('|', all.find('|') + 1); };
    EXPECT_EQ(texts, german.substr(0, datesEnd(german)) + english.substr(datesEnd(english)));
}

TEST(DateTexts, SeeAnotherZoneInTheSameMinute) {
    constexpr const char* kZonesAndIcus[][2] = {{"UTC", "UTC"},          {"Europe/Berlin", "Europe/Berlin"},
                                                {"UTC", "UTC"},          {"XYZ-3:20:30", "GMT+03:20:30"},
                                                {"<+00>0", "GMT+00:00"}, {":Asia/Tokyo", "Asia/Tokyo"}};
    std::vector<ZoneTimes> zones;
    std::string expected;
    for (const auto& [zone, icuZone] : kZonesAndIcus) {
        zones.emplace_back(zone, Times{kEvening, kEvening + 30});  // across a minute where seconds are ahead of UTC
        expected += IcuTexts("de_DE", icuZone, zones.back().second);
    }
    EXPECT_EQ(OurTexts("de_DE", zones), expected);
}

}  // namespace
