// Dates and times in any zone: fields make the date up again, a day and a week hold their dates, a calendar its days.
#include "RkUtilities/dates/CrkDateUtilities.h"

#include "fuzz/Require.h"

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <fuzzer/FuzzedDataProvider.h>

namespace {

using Dates = CrkDateUtilities;

constexpr const char* kZones[] = {"UTC",
                                  "Europe/Berlin",
                                  "Africa/Casablanca",
                                  "America/Sao_Paulo",
                                  "America/St_Johns",
                                  "Asia/Kathmandu",
                                  "Australia/Lord_Howe",
                                  "Pacific/Apia",
                                  "XYZ-3:20:30",
                                  "EST5EDT,M3.2.0,M11.1.0",
                                  "<+13>-13"};
constexpr double kFirst = -693593, kLast = 2958466;  // the years 1 to 9999

bool HasSameFields(const auto& a, const auto& b) {
    return a.GetYear() == b.GetYear() && a.GetMonth() == b.GetMonth() && a.GetDay() == b.GetDay() &&
           a.GetHour() == b.GetHour() && a.GetMinute() == b.GetMinute() && a.GetSecond() == b.GetSecond() &&
           a.GetDayOfWeek() == b.GetDayOfWeek();
}

void CheckValue(const COleDateTime& date) {
    const COleDateTime again(date.GetYear(), date.GetMonth(), date.GetDay(), date.GetHour(), date.GetMinute(),
                             date.GetSecond());
    const bool isInside = date.m_dt >= kFirst && date.m_dt < kLast - 1;
    Require(HasSameFields(date, again) && std::abs(again.m_dt - (isInside ? date.m_dt : again.m_dt)) < 0.6 / 86400);
    Require(Dates::IsSameDay(date, Dates::RemoveTimeFromDate(date)));
    if (date.m_dt < kFirst + 8 || date.m_dt > kLast - 8)
        return;
    for (const char16_t* const language : {u"", u"de"}) {
        const COleDateTime start = Dates::GetLocalizedWeekStart(again, language);
        Require(start.GetDayOfWeek() == (*language == 0 ? 1 : 2) && start <= again && again.m_dt < start.m_dt + 7);
    }
}

void CheckTime(const CTime& time) {
    std::tm fields{};
    time.GetLocalTm(&fields);
    const CTime again(fields.tm_year, fields.tm_mon, fields.tm_mday, fields.tm_hour, fields.tm_min, fields.tm_sec,
                      fields.tm_isdst);
    Require(HasSameFields(time, again) && HasSameFields(COleDateTime(time), time));
    const CTime day = Dates::RemoveTimeFromDate(time);
    Require(Dates::IsSameDay(time, day) && day <= time && Dates::RemoveTimeFromDate(day) == day);
    Require(CTime::FromTimeT(time.GetTime()).GetTime() == time.GetTime());
    Require(Dates::DateTimeString(time) == Dates::DateTimeString(time) && !Dates::LongDateString(time).IsEmpty());
}

void CheckCalendar(FuzzedDataProvider& data) {
    CAtlArray<bool> flags, readFlags;
    CAtlMap<double, bool> dates, readDates;
    for (int day = 0; day < 7; ++day)
        flags.Add(data.ConsumeBool());
    while (data.remaining_bytes() > 0)
        dates.SetAt(data.ConsumeIntegral<std::int32_t>(), true);
    Dates::ParsePtmCalendarString(Dates::CreatePtmCalendarString(flags, dates), readFlags, readDates);
    Require(readFlags == flags && readDates.GetCount() == dates.GetCount());
    for (const auto& [date, isOff] : dates)
        Require(readDates.Lookup(date) != nullptr);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    FuzzedDataProvider data(bytes, size);
    setenv("TZ", data.PickValueInArray(kZones), /*overwrite=*/1);
    CheckValue(COleDateTime(data.ConsumeBool() ? data.ConsumeFloatingPoint<double>()
                                               : data.ConsumeFloatingPointInRange(kFirst - 10, kLast + 10)));
    CheckTime(CTime::FromCFAbsoluteTime(data.ConsumeBool() ? data.ConsumeFloatingPoint<double>()
                                                           : data.ConsumeIntegral<std::int32_t>()));
    int fields[6];
    for (int& field : fields)
        field = data.ConsumeBool() ? data.ConsumeIntegral<int>() : data.ConsumeIntegral<std::int8_t>();
    if (data.ConsumeBool())
        fields[0] = 2000 + fields[0] % 100;
    CheckTime(CTime(fields[0], fields[1], fields[2], fields[3], fields[4], fields[5]));
    CheckValue(COleDateTime(fields[0], fields[1], fields[2], fields[3], fields[4], fields[5]));
    CheckCalendar(data);
    return 0;
}
