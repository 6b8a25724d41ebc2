// Numbers beside the C library, ICU with a kept formatter, and the charconv of the standard library as the floor.
#include "RkUtilities/foundation/UserLocale.h"
#include "RkUtilities/numbers/CrkLocaleUtilities.h"
#include "RkUtilities/numbers/CrkStringConversionUtilities.h"

#include <benchmark/benchmark.h>

#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <memory>
#include <random>
#include <string>
#include <unicode/numberformatter.h>
#include <unicode/numfmt.h>

namespace {

using Conversion = CrkStringConversionUtilities;

const std::array<double, 1024>& Doubles() {
    static const std::array<double, 1024> doubles = [] {
        std::array<double, 1024> made{};
        std::mt19937 random(10);
        for (double& value : made)
            value = static_cast<double>(random() % 100000000) / std::pow(10.0, static_cast<double>(random() % 7));
        return made;
    }();
    return doubles;
}

template <class Make> void EachDouble(benchmark::State& state, const Make& make) {
    std::size_t i = 0;
    for (auto _ : state)
        benchmark::DoNotOptimize(make(Doubles()[i++ % Doubles().size()]));
}

template <class Make> void Repeat(benchmark::State& state, const Make& make) {
    for (auto _ : state)
        benchmark::DoNotOptimize(make());
}

void Query(benchmark::State& state) { Repeat(state, CrkLocaleUtilities::GetDecimalPoint); }

void DoubleToText(benchmark::State& state) { EachDouble(state, Conversion::DoubleToString); }
void DoubleToTextCharconv(benchmark::State& state) {
    EachDouble(state, [](double value) {
        char text[40];
        return std::to_chars(text, std::end(text), value, std::chars_format::fixed, 9).ptr[-1];
    });
}
void DoubleToTextLibc(benchmark::State& state) {
    EachDouble(state, [](double value) {
        char text[40];
        return std::snprintf(text, sizeof text, "%11.9f", value);
    });
}

void FormatNumber(benchmark::State& state) {
    EachDouble(state, [](double value) {
        return Conversion::DoubleStringToFormattedNumber(Conversion::DoubleToString(value), /*groupThousands=*/true, 2,
                                                         Conversion::MinusSign);
    });
}
void FormatAmount(benchmark::State& state) {
    EachDouble(state, [](double value) {
        return Conversion::DoubleStringToFormattedCurrency(
            Conversion::DoubleToString(value), CrkLocaleUtilities::GetCurrencySymbol(),
            CrkLocaleUtilities::GetCurrencyNumberOfDecimalDigits(), CrkLocaleUtilities::GetPositiveCurrencyFormat(),
            CrkLocaleUtilities::GetNegativeCurrencyFormat(), Conversion::MinusSign);
    });
}
void FormatNumberIcu(benchmark::State& state) {
    const auto formatter =
        icu::number::NumberFormatter::withLocale("de_DE").precision(icu::number::Precision::fixedFraction(2));
    EachDouble(state, [&](double value) {
        UErrorCode error = U_ZERO_ERROR;
        return formatter.formatDouble(value, error).toString(error);
    });
}

void ParseDouble(benchmark::State& state) {
    const CString text = u"1234567,891";
    double value = 0;
    Repeat(state, [&] { return Conversion::StringToDouble(text, value); });
}
void ParseDoubleLibc(benchmark::State& state) {
    Repeat(state, [text = "1234567.891"] { return std::strtod(text, nullptr); });
}
void ParseLong(benchmark::State& state) {
    const CString text = u"1234567";
    long value = 0;
    Repeat(state, [&] { return Conversion::StringToLong(text, value); });
}
void ParseLongLibc(benchmark::State& state) {
    Repeat(state, [text = "1234567"] { return std::strtol(text, nullptr, 10); });
}
void ParseGroupedLong(benchmark::State& state) {
    const CString text = u"1.234.567";
    long value = 0;
    Repeat(state, [&] { return Conversion::StringToLong(text, value); });
}
void ParseGroupedLongIcu(benchmark::State& state) {
    UErrorCode error = U_ZERO_ERROR;
    const std::unique_ptr<icu::NumberFormat> format(icu::NumberFormat::createInstance("de_DE", error));
    const icu::UnicodeString text(u"1.234.567");
    Repeat(state, [&] {
        icu::Formattable number;
        format->parse(text, number, error);
        return number.getInt64();
    });
}

void ScanDigits(benchmark::State& state) {
    const CString text(std::string(static_cast<std::size_t>(state.range(0)), '7') + "e-99");
    double value = 0;
    Repeat(state, [&] { return Conversion::StringToDouble(text, value); });
    state.SetBytesProcessed(state.iterations() * 2 * text.GetLength());
    state.SetComplexityN(state.range(0));
}

BENCHMARK(Query);
BENCHMARK(DoubleToText);
BENCHMARK(DoubleToTextCharconv);
BENCHMARK(DoubleToTextLibc);
BENCHMARK(FormatNumber);
BENCHMARK(FormatAmount);
BENCHMARK(FormatNumberIcu);
BENCHMARK(ParseDouble);
BENCHMARK(ParseDoubleLibc);
BENCHMARK(ParseLong);
BENCHMARK(ParseLongLibc);
BENCHMARK(ParseGroupedLong);
BENCHMARK(ParseGroupedLongIcu);
BENCHMARK(ScanDigits)->RangeMultiplier(10)->Range(10, 1'000'000)->Complexity(benchmark::oN);

}  // namespace

int main(int argc, char** argv) {
    rk::SetUserLocale("de_DE");
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
