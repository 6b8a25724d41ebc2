#include "rklog/DateReader.h"
#include "rklog/DateRecognition.h"
#include "rklog/EntryTimes.h"
#include "rklog/PointInTime.h"
#include "tests/rklog/LogText.h"
#include "tests/support/Test.h"

#include <chrono>
#include <map>
#include <unicode/datefmt.h>

using namespace rklog;
using namespace std::chrono_literals;

namespace {

constexpr Seconds kUtcOf2001 = 978307200;

using Format = std::unique_ptr<icu::DateFormat>;

std::string TextOf(const Format& format, Seconds utc) {
    icu::UnicodeString text;
    std::string utf8;
    return format->format(static_cast<double>(utc) * 1000, text).toUTF8String(utf8);
}

constexpr std::string_view kLogStart =
    R"(LogStart time="2026-11-16T21:52:05.123+01:00" loaded="2026-11-16T21:50:00+01:00" zone="CET" pid="47" )"
    R"(host="desk" program="mind %22map%22" library="0.1.0" system="Linux 6.1.0 x86_64")";

std::string TimeOf(EntryTimes& times, const Entry& entry) {
    times.Notice(entry);
    const EntryTime time = times.Of(entry);
    return (time.time ? IsoText(*time.time) : "-") + (time.process ? " " + time.process->Name() : "");
}

Entry EntryOf(std::string_view timestamp, std::string_view thread, std::string_view message = "m") {
    Entry entry;
    entry.timestamp = timestamp;
    entry.thread = thread;
    entry.category = message == "m" ? "A" : "Application Start";
    entry.message = message;
    return entry;
}

}  // namespace

TEST(Dates, OfEveryLocaleAreReadAtEveryHour) {
    const ScopedVariable zone("TZ", "UTC");
    int32_t count = 0;
    const icu::Locale* const locales = icu::Locale::getAvailableLocales(count);
    ASSERT_GT(count, 500);
    std::map<std::string, std::string> misread;  // the last text by its locale
    for (int32_t i = 0; i < count; ++i) {
        using icu::DateFormat;
        const Format dates(DateFormat::createDateInstance(DateFormat::kShort, locales[i]));
        const Format texts(DateFormat::createDateTimeInstance(DateFormat::kShort, DateFormat::kShort, locales[i]));
        const DateReader reader(StyleOf([&](const CTime& time) {
            return CString(TextOf(dates, static_cast<Seconds>(time.GetCFAbsoluteTime()) + kUtcOf2001));
        }));
        for (int hour = 0; hour < 24; ++hour) {  // with all months, and days that tell the orders apart and others
            const Seconds utc = *WallOfDay(2024 + hour % 9, 1 + hour * 5 % 12, 1 + hour * 7 % 28) +
                                hour * (kSecondsOfHour + 2 * kSecondsOfMinute);
            if (const std::string text = TextOf(texts, utc); reader.Read(text) != utc)
                misread[locales[i].getName()] = text;
        }
    }
    // Later data of ICU may have other words for the halves of the day in some locales.
    EXPECT_LE(std::ssize(misread), U_ICU_VERSION_MAJOR_NUM > 78 ? count / 20 : 0) << testing::PrintToString(misread);
}

TEST(Dates, ThatAreNoneAreRefused) {
    const DateReader reader({.order = DateStyle::Order::MonthDayYear, .days = {}});
    for (const char* const text : {"", ":", "11/16/26", "13/16/26, 9:52 PM", "2/30/26, 9:52 PM", "11/16/26, 24:52",
                                   "11/16/26, 9:60", "1/1/1405, 9:52", "11/16/26, 9:52 PM 7", "11/16/20261, 9:52",
                                   "99999999999999999999", "\xFF\xC0 1/1/26, 1:0\xE2\x80", "11/16/126, 9:52"})
        EXPECT_EQ(reader.Read(text).has_value(), std::string_view(text).starts_with("\xFF")) << text;
}

TEST(Dates, AreRecognisedByWhatTheLogHolds) {
    const ScopedVariable zone("TZ", "UTC");
    const ScopedFolder folder;
    // Logs whose file changed last on 1 December 2026, and the order; "?": there may be another, "!": not readable.
    const std::pair<std::string, const char*> cases[] = {
        {EntryAt("11/16/26, 9:52 PM:0"), "month/day/year"},                                 // no 16th month
        {EntryAt("5/6/26, 9:52 PM:0"), "day/month/year?"},                                  // the user's
        {EntryAt("5/5/2026, 9:52 PM:0"), "day/month/year"},                                 // the same either way
        {EntryAt("5/6/2026, 9:52:0") + EntryAt("5/7/2026, 9:52:86400"), "month/day/year"},  // a day passed
        {EntryAt("2026-05-06 21:52:0"), "year/month/day"},
        {EntryAt("5/6/26, 9:52 PM:125", R"(LogStart time="" loaded="2026-05-06T21:50:00+01:00" pid="1")", "Info",
                 "Application Start"),
         "month/day/year"},                                 // the start tells it
        {EntryAt("1448/5/25, 9:52:0"), "day/month/year!"},  // another calendar
        {"", "day/month/year"},
        {EntryAt("11/12/2026, 9:52 PM:0"), "month/day/year"},  // the other is later than the last change
    };
    for (const auto& [log, order] : cases) {
        folder.Write("log.xml", log);
        std::filesystem::last_write_time(
            folder.Path("log.xml"),
            std::chrono::file_clock::from_sys(std::chrono::sys_seconds(std::chrono::sys_days(2026y / 12 / 1))));
        DateSamples samples;
        samples.TakeFrom(folder.Path("log.xml"));
        const DateSamples::Verdict verdict = samples.Recognise({.order = DateStyle::Order::DayMonthYear, .days = {}});
        EXPECT_EQ(std::string(NameOf(verdict.style.order)) + (verdict.isAmbiguous ? "?" : "") +
                      (verdict.isReadable ? "" : "!"),
                  order)
            << log;
    }
}

TEST(Dates, AreExactForProcessesThatToldTheirStart) {
    const ScopedVariable zone("TZ", "UTC");
    EntryTimes times(DateReader({.order = DateStyle::Order::MonthDayYear, .days = {}}));
    EXPECT_EQ(TimeOf(times, EntryOf("11/16/26, 9:51 PM:90", "1")), "2026-11-16T21:51");
    EXPECT_EQ(TimeOf(times, EntryOf("11/16/26, 9:52 PM:125", "1", kLogStart)),
              "2026-11-16T21:52:05+01:00 desk:mind \"map\"[47]");
    EXPECT_EQ(TimeOf(times, EntryOf("11/16/26, 9:53 PM:185", "2")), "2026-11-16T21:53:05+01:00 desk:mind \"map\"[47]");
    EXPECT_EQ(TimeOf(times, EntryOf("11/16/26, 10:53 PM:185", "2")),  // the clocks went forward meanwhile
              "2026-11-16T22:53:05+02:00 desk:mind \"map\"[47]");
    EXPECT_EQ(TimeOf(times, EntryOf("11/16/26, 9:53 PM:9", "2")), "2026-11-16T21:53");  // another process
    EXPECT_EQ(TimeOf(times, EntryOf("25/5/1448, 9:53:190", "1")), "2026-11-16T21:53:10+01:00 desk:mind \"map\"[47]");
    EXPECT_EQ(TimeOf(times, EntryOf("", "9")), "-");
    EXPECT_EQ(times.Of(EntryOf("", "9")).utc, *WallOfDay(2026, 11, 16) + 20 * kSecondsOfHour + 53 * 60 + 10);
    // A second process of the same minute: the thread decides where it is known.
    const std::string second = std::string(kLogStart).replace(std::string(kLogStart).find("pid=\"47"), 7, "pid=\"48");
    EXPECT_EQ(TimeOf(times, EntryOf("11/16/26, 9:52 PM:126", "3", second)).back(), ']');
    EXPECT_NE(TimeOf(times, EntryOf("11/16/26, 9:54 PM:250", "3")).find("[48]"), std::string::npos);
    EXPECT_NE(TimeOf(times, EntryOf("11/16/26, 9:54 PM:250", "1")).find("[47]"), std::string::npos);
    EXPECT_EQ(TimeOf(times, EntryOf("11/16/26, 9:54 PM:250", "7")), "2026-11-16T21:54");
}

TEST(Dates, OfTheCommandLineAreStretches) {
    const ScopedVariable zone("TZ", "CET-1");
    const Seconds day = *WallOfDay(2026, 11, 16), now = day + 11 * kSecondsOfHour + 125;
    const std::tuple<const char*, Seconds, Seconds> cases[] = {
        {"2026-11-16", day - 3600, 86400},
        {"2026-11-16T21:52", day + 20 * 3600 + 52 * 60, 60},
        {"2026-11-16 21:52:07-02:30", day + 24 * 3600 + 22 * 60 + 7, 1},
        {"00:01", day - 3600 + 60, 60},
        {"90s", now - 90, 1},
        {"2h", now - 7200, 1},
        {"3d", now - 3 * 86400, 1},
    };
    for (const auto& [text, first, length] : cases) {
        const Stretch stretch = ReadPointInTime(text, now).value_or(Stretch{});
        EXPECT_EQ(std::pair(stretch.first, stretch.last - stretch.first + 1), std::pair(first, length)) << text;
    }
    for (const char* const text : {"", "2026", "2026-02-30", "2026-11-16T25:00", "2026-11-16T21", "9999999999d", "h",
                                   "-2h", "2026-11-16T21:52+1"})
        EXPECT_FALSE(ReadPointInTime(text, now)) << text;
}
