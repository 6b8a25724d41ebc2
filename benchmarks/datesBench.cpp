// Date texts beside ICU's formatter alone and the C library's strftime: the same time again and again, as a log asks
// for, and another day each time, as a list of tasks does.
#include "RkUtilities/dates/CrkDateUtilities.h"
#include "RkUtilities/foundation/UserLocale.h"

#include <array>
#include <benchmark/benchmark.h>
#include <ctime>
#include <memory>
#include <string>
#include <unicode/smpdtfmt.h>

namespace {

constexpr std::time_t kFirst = 1794862325;  // 16 November 2026
constexpr std::time_t kStep = 90061;        // a day, an hour, a minute and a second
constexpr std::int64_t kTimeCount = 1000;

/// The times of a run: `state.range(0)` different times.
std::time_t TimeAt(std::int64_t round, const benchmark::State& state) {
    return kFirst + round % state.range(0) * kStep;
}

void Ours(benchmark::State& state, CString (*make)(const CTime&)) {
    rk::SetUserLocale("de_DE");
    std::int64_t round = 0;
    for (auto _ : state) {
        const CTime time = CTime::FromCFAbsoluteTime(static_cast<double>(TimeAt(round++, state) - 978307200));
        benchmark::DoNotOptimize(make(time));
    }
}

void Icu(benchmark::State& state, icu::DateFormat::EStyle date, icu::DateFormat::EStyle time) {
    const std::unique_ptr<icu::DateFormat> format(
        icu::DateFormat::createDateTimeInstance(date, time, icu::Locale::getGermany()));
    std::int64_t round = 0;
    for (auto _ : state) {
        icu::UnicodeString text;
        benchmark::DoNotOptimize(format->format(static_cast<double>(TimeAt(round++, state)) * 1000, text));
    }
}

/// The floor: calendar fields and a pattern known beforehand, in bytes.
void Strftime(benchmark::State& state) {
    std::int64_t round = 0;
    for (auto _ : state) {
        const std::time_t time = TimeAt(round++, state);
        std::tm fields{};
        localtime_r(&time, &fields);
        std::array<char, 32> text{};
        std::strftime(text.data(), text.size(), "%d.%m.%y", &fields);
        benchmark::DoNotOptimize(text);
    }
}

BENCHMARK_CAPTURE(Ours, ShortDate, CrkDateUtilities::ShortDateString)->Arg(1)->Arg(kTimeCount);
BENCHMARK_CAPTURE(Ours, LongDate, CrkDateUtilities::LongDateString)->Arg(1)->Arg(kTimeCount);
BENCHMARK_CAPTURE(Ours, ShortTime, CrkDateUtilities::ShortTimeString)->Arg(1)->Arg(kTimeCount)->ThreadRange(1, 4);
BENCHMARK_CAPTURE(Ours, LongTime, CrkDateUtilities::LongTimeString)->Arg(kTimeCount);
BENCHMARK_CAPTURE(Icu, ShortDate, icu::DateFormat::kShort, icu::DateFormat::kNone)->Arg(kTimeCount);
BENCHMARK_CAPTURE(Icu, LongDate, icu::DateFormat::kLong, icu::DateFormat::kNone)->Arg(kTimeCount);
BENCHMARK_CAPTURE(Icu, LongTime, icu::DateFormat::kNone, icu::DateFormat::kLong)->Arg(kTimeCount);
BENCHMARK(Strftime)->Arg(kTimeCount);

void ReadField(benchmark::State& state) {
    const CTime time(2026, 11, 16, 21, 52, 5, -1);
    for (auto _ : state)
        benchmark::DoNotOptimize(time.GetHour());
}

void WeekStart(benchmark::State& state) {
    const CTime time(2026, 11, 18, 21, 52, 5, -1);
    for (auto _ : state)
        benchmark::DoNotOptimize(CrkDateUtilities::GetLocalizedWeekStart(time, u"de"));
}

/// Per date of a calendar text of `state.range(0)` dates.
void ReadCalendar(benchmark::State& state) {
    CAtlArray<bool> days;
    CAtlMap<double, bool> dates;
    for (std::int64_t date = 0; date < state.range(0); ++date)
        dates.SetAt(static_cast<double>(40000 + date), true);
    const CString text = CrkDateUtilities::CreatePtmCalendarString(days, dates);
    for (auto _ : state)
        CrkDateUtilities::ParsePtmCalendarString(text, days, dates);
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

BENCHMARK(ReadField);
BENCHMARK(WeekStart);
BENCHMARK(ReadCalendar)->Range(16, 16384);

}  // namespace
