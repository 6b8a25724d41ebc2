#include "tests/support/Test.h"
#include "tests/support/Zones.h"

#include <bit>
#include <chrono>

namespace {

using namespace std::chrono;

/// The times that this file's initialiser finds. It may run before the initialisers of the library's files.
const double kAtLoad[] = {CrkDateUtilities::NullTime.GetCFAbsoluteTime(),
                          CrkDateUtilities::MinimumTime.GetCFAbsoluteTime(),
                          CrkDateUtilities::MaximumTime.GetCFAbsoluteTime()};

TEST(Dates, HaveTheirKnownTimesBeforeAnyInitialiser) {
    const CTime expected[] = {CTime(), CTime(1970, 1, 2, 0, 0, 0, -1), CTime(3000, 12, 30, 23, 59, 59, -1)};
    for (std::size_t i = 0; i < std::size(kAtLoad); ++i)
        EXPECT_EQ(kAtLoad[i], expected[i].GetCFAbsoluteTime()) << i;
}

TEST(Dates, MoveAgainstTheirNamesByTheOffsetOfNow) {
    for (const char* const name : {"UTC", "Europe/Berlin", "America/St_Johns", "Asia/Kathmandu", "Etc/GMT+12"}) {
        const ScopedZone zone(name);
        tzset();
        const auto offset = static_cast<int>(CLocalTime(std::time(nullptr)).tm_gmtoff);
        for (const CTime& time : {CTime(2024, 1, 15, 12, 0, 0, -1), CTime(2024, 7, 15, 12, 0, 0, -1)}) {
            const CTime local = CrkDateUtilities::ConvertUtcTimeToLocalTime(time);
            EXPECT_EQ(time - local, CTimeSpan(0, 0, 0, offset)) << name;
            EXPECT_EQ(CrkDateUtilities::ConvertLocalTimeToUtcTime(local), time) << name;
            EXPECT_EQ(CrkDateUtilities::ConvertLocalTimeToUtcTime(time) - time, CTimeSpan(0, 0, 0, offset)) << name;
            EXPECT_EQ(CrkDateUtilities::COleDateTimeToCTime(CrkDateUtilities::CTimeToCOleDateTime(time)), time) << name;
        }
    }
}

using Moment = int[4];  // year, month, day, hour
constexpr struct {
    Moment first, second;
    bool isSameDay;
} kDayCases[] = {
    {{2024, 5, 5, 0}, {2024, 5, 5, 23}, true},     {{2024, 5, 5, 23}, {2024, 5, 6, 0}, false},
    {{2023, 12, 31, 0}, {2024, 12, 30, 0}, false},  // the same day of the year
    {{1899, 12, 29, 6}, {1899, 12, 29, 18}, true},  // fractions below zero taken to count backwards
    {{2026, 3, 29, 1}, {2026, 3, 29, 4}, true},     // a clock change between
};

template <class Time, class... Dst> void CheckDayCases(Dst... dst) {
    const auto make = [&](const Moment& f) { return Time(f[0], f[1], f[2], f[3], 59, 59, dst...); };
    for (const auto& [first, second, isSameDay] : kDayCases) {
        SCOPED_TRACE(first[0]);
        EXPECT_EQ(CrkDateUtilities::IsSameDay(make(first), make(second)), isSameDay);
        EXPECT_EQ(CrkDateUtilities::RemoveTimeFromDate(make(first)),
                  Time(first[0], first[1], first[2], 0, 0, 0, dst...));
    }
}

TEST(Dates, AreComparedAndCutByTheCalendarDay) {
    const ScopedZone berlin("Europe/Berlin");
    CheckDayCases<COleDateTime>();
    CheckDayCases<CTime>(-1);
    const ScopedZone beirut("Asia/Beirut");  // where 27 March 2022 began at 1:00
    EXPECT_EQ(CrkDateUtilities::RemoveTimeFromDate(CTime(2022, 3, 27, 15, 0, 0, -1)), CTime(2022, 3, 27, 1, 0, 0, -1));
    EXPECT_EQ(CrkDateUtilities::RemoveTimeFromDate(COleDateTime(NAN)).m_dt, 0);
}

void CheckDate(const COleDateTime& date) {
    constexpr double kFirst = -693593, kEnd = 2958465;  // of the years 1 to 9999
    ASSERT_TRUE(CrkDateUtilities::IsSameDay(date, CrkDateUtilities::RemoveTimeFromDate(date)));
    if (date.m_dt >= kFirst && date.m_dt < kEnd) {
        const COleDateTime again(date.GetYear(), date.GetMonth(), date.GetDay(), date.GetHour(), date.GetMinute(),
                                 date.GetSecond());
        ASSERT_NEAR(again.m_dt, date.m_dt, 0.6 / 86400);
    }
}

void CheckTime(const CTime& time) {
    ASSERT_EQ(COleDateTime(time).Format(u"%F %T %w"), time.Format(u"%F %T %w"));
    const CTime day = CrkDateUtilities::RemoveTimeFromDate(time);
    ASSERT_TRUE(CrkDateUtilities::IsSameDay(time, day));
    ASSERT_LE(day, time);
    ASSERT_EQ(CrkDateUtilities::RemoveTimeFromDate(day), day);
}

TEST(Dates, KeepTheirFieldsForAnyNumberInAnyZone) {
    std::mt19937_64 random(5);
    for (const char* const name : {"UTC", "Europe/Berlin", "Africa/Casablanca", "Pacific/Apia", "XYZ-3:20:30"}) {
        const ScopedZone zone(name);
        for (int round = 0; round < 2000; ++round) {
            const auto any = std::bit_cast<double>(random()),
                       near = static_cast<double>(random() % 4'000'000) - 700'000;
            const auto field = [&] { return static_cast<int>(random()) >> random() % 32; };
            const int f[] = {field(), field(), field(), field(), field(), field()};
            SCOPED_TRACE(testing::Message() << name << testing::PrintToString(f) << any << ' ' << near);
            ASSERT_NO_FATAL_FAILURE(CheckDate(COleDateTime(any)));
            ASSERT_NO_FATAL_FAILURE(CheckDate(COleDateTime(near + std::fmod(any, 1))));
            ASSERT_NO_FATAL_FAILURE(CheckDate(COleDateTime(f[0], f[1], f[2], f[3], f[4], f[5])));
            ASSERT_NO_FATAL_FAILURE(CheckTime(CTime(f[0], f[1], f[2], f[3], f[4], f[5])));
            ASSERT_NO_FATAL_FAILURE(CheckTime(CTime::FromCFAbsoluteTime(near * 1000 + std::fmod(any, 1))));
        }
    }
}

TEST(Weeks, OfDatesBeginOnTheCalendarsDayInFourCenturies) {
    constexpr double kTimesOfDay[] = {0.0, 0.625, 86399.0 / 86400};
    const CString kOthers[] = {u"", u"en", u"DE", u"de-DE", u"de ", u"d", std::u16string_view(u"de\0", 3), u"frde"};
    for (sys_days day = 1900y / January / 1; day <= sys_days{2299y / December / 31}; day += days{1}) {
        const auto value = static_cast<double>((day - sys_days{1899y / December / 30}).count());
        const auto sunday = value - static_cast<double>((weekday{day} - Sunday).count());
        const auto monday = value - static_cast<double>((weekday{day} - Monday).count());
        const auto number = static_cast<std::size_t>(value);
        const COleDateTime date(value + kTimesOfDay[number % 3]);
        ASSERT_EQ(CrkDateUtilities::GetWeekStart(date).m_dt, sunday) << value;
        ASSERT_EQ(CrkDateUtilities::GetWeekEnd(date).m_dt, sunday + 7) << value;
        ASSERT_EQ(CrkDateUtilities::GetLocalizedWeekStart(date, number % 2 == 0 ? u"de" : u"fr").m_dt, monday) << value;
        ASSERT_EQ(CrkDateUtilities::GetLocalizedWeekStart(date, kOthers[number % std::size(kOthers)]).m_dt, sunday)
            << value;
    }
}

constexpr struct {
    const char *zone, *language;
    Moment time, start;
} kWeekCases[] = {
    {"Europe/Berlin", "de", {2026, 3, 29, 12}, {2026, 3, 23, 0}},    // across the change of the clocks
    {"Europe/Berlin", "en", {2026, 10, 31, 23}, {2026, 10, 25, 0}},  // 25 hours at its start
    {"Asia/Beirut", "en", {2022, 4, 1, 0}, {2022, 3, 27, 1}},        // which began at 1:00
};

TEST(Weeks, OfTimesBeginAtTheFirstMomentOfTheirFirstDay) {
    for (const auto& [zoneName, language, time, start] : kWeekCases) {
        const ScopedZone zone(zoneName);
        EXPECT_EQ(CrkDateUtilities::GetLocalizedWeekStart(CTime(time[0], time[1], time[2], time[3], 0, 0), language),
                  CTime(start[0], start[1], start[2], start[3], 0, 0))
            << zoneName << ' ' << time[2];
    }
    EXPECT_EQ(CrkDateUtilities::GetLocalizedWeekStart(CTime(1970, 1, 3, 23, 59, 59, -1), "en"),
              CrkDateUtilities::MinimumTime);
    EXPECT_EQ(CrkDateUtilities::GetLocalizedWeekStart(CTime(1970, 1, 4, 15, 0, 0, -1), "en"),
              CTime(1970, 1, 4, 0, 0, 0, -1));
}

}  // namespace
