// Texts beside their floors and beside std::u16string and ICU.
#include "RkUtilities/foundation/CString.h"
#include "RkUtilities/foundation/StUTF8Buffer.h"
#include "RkUtilities/strings/CrkStringUtilities.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <unicode/ustring.h>

namespace {

constexpr std::u16string_view kWords = u"the quick brown fox jumps over the lazy dog and runs ";
constexpr std::u16string_view kMixedWords = u"Grüße aus Köln, поезд идёт, 東京タワー und \U0001F600 dazu ";

std::u16string Repeated(std::u16string_view words, std::int64_t unitCount)
{
    std::u16string text;
    while (text.size() < static_cast<std::size_t>(unitCount))
        text += words;
    return text;
}

void Units(benchmark::State& state, std::size_t unitCount)
{
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(unitCount * sizeof(char16_t)));
    state.SetComplexityN(static_cast<std::int64_t>(unitCount));
}

void CopyUnits(benchmark::State& state)  // the floor of whatever makes a new text
{
    const std::u16string text = Repeated(kWords, state.range(0));
    for (auto _ : state)
        benchmark::DoNotOptimize(std::u16string(text));
    Units(state, text.size());
}

void FindMissing(benchmark::State& state)
{
    const CString text = Repeated(kWords, state.range(0));
    const CString sought = u"the quick brown cat";
    for (auto _ : state)
        benchmark::DoNotOptimize(text.Find(sought));
    Units(state, text.View().size());
}

void FindMissingStd(benchmark::State& state)
{
    const std::u16string text = Repeated(kWords, state.range(0));
    for (auto _ : state)
        benchmark::DoNotOptimize(text.find(u"the quick brown cat"));
    Units(state, text.size());
}

void FindMissingNoCase(benchmark::State& state)
{
    const CString text = Repeated(kWords, state.range(0));
    const CString sought = u"THE Quick Brown Cat";
    for (auto _ : state)
        benchmark::DoNotOptimize(text.FindNoCase(sought));
    Units(state, text.View().size());
}

void Replace(benchmark::State& state)
{
    const CString text = Repeated(kWords, state.range(0));
    for (auto _ : state) {
        CString copy = text;
        copy.Replace(u"fox", u"hedgehog");
        benchmark::DoNotOptimize(copy);
    }
    Units(state, text.View().size());
}

void Upper(benchmark::State& state, std::u16string_view words)
{
    const CString text = Repeated(words, state.range(0));
    for (auto _ : state) {
        CString copy = text;
        benchmark::DoNotOptimize(copy.MakeUpper());
    }
    Units(state, text.View().size());
}

void Decode(benchmark::State& state, std::u16string_view words)
{
    const std::string bytes = CString(Repeated(words, state.range(0))).ToUtf8();
    for (auto _ : state)
        benchmark::DoNotOptimize(CString(bytes));
    Units(state, static_cast<std::size_t>(state.range(0)));
}

void DecodeIcu(benchmark::State& state, std::u16string_view words)
{
    const std::string bytes = CString(Repeated(words, state.range(0))).ToUtf8();
    for (auto _ : state) {
        std::u16string units(bytes.size(), u'\0');
        std::int32_t length = 0;
        UErrorCode error = U_ZERO_ERROR;
        u_strFromUTF8WithSub(units.data(), static_cast<std::int32_t>(units.size()), &length, bytes.data(),
                             static_cast<std::int32_t>(bytes.size()), 0xFFFD, nullptr, &error);
        units.resize(static_cast<std::size_t>(length));
        benchmark::DoNotOptimize(units);
    }
    Units(state, static_cast<std::size_t>(state.range(0)));
}

void Encode(benchmark::State& state, std::u16string_view words)
{
    const CString text = Repeated(words, state.range(0));
    std::string bytes;
    for (auto _ : state) {
        GetStdStringFromCString(text, bytes);
        benchmark::DoNotOptimize(bytes);
    }
    Units(state, text.View().size());
}

void FormatNames(benchmark::State& state)
{
    CString text;
    for (int i = 0; auto _ : state) {
        text.Format(u"%s%d", "Central Topic ", i++ & 4095);
        benchmark::DoNotOptimize(text);
    }
}

void FormatNamesC(benchmark::State& state)
{
    char text[64];
    for (int i = 0; auto _ : state)
        benchmark::DoNotOptimize(std::snprintf(text, sizeof text, "%s%d", "Central Topic ", i++ & 4095));
}

void CompareNoCase(benchmark::State& state)
{
    const CString a = u"Ein Thema mit Ästen";
    const CString b = u"ein thema mit ästen";
    for (auto _ : state)
        benchmark::DoNotOptimize(a.CompareNoCase(b));
}

void Sizes(benchmark::internal::Benchmark* benchmark)
{
    benchmark->RangeMultiplier(16)->Range(1 << 12, 1 << 24)->Complexity(benchmark::oN);
}

BENCHMARK(CopyUnits)->Apply(Sizes);
BENCHMARK(FindMissing)->Apply(Sizes);
BENCHMARK(FindMissingStd)->Apply(Sizes);
BENCHMARK(FindMissingNoCase)->Apply(Sizes);
BENCHMARK(Replace)->Apply(Sizes);
BENCHMARK_CAPTURE(Upper, ascii, kWords)->Apply(Sizes);
BENCHMARK_CAPTURE(Upper, mixed, kMixedWords)->Apply(Sizes);
BENCHMARK_CAPTURE(Decode, ascii, kWords)->Apply(Sizes);
BENCHMARK_CAPTURE(Decode, mixed, kMixedWords)->Apply(Sizes);
BENCHMARK_CAPTURE(DecodeIcu, ascii, kWords)->Apply(Sizes);
BENCHMARK_CAPTURE(DecodeIcu, mixed, kMixedWords)->Apply(Sizes);
BENCHMARK_CAPTURE(Encode, ascii, kWords)->Apply(Sizes);
BENCHMARK_CAPTURE(Encode, mixed, kMixedWords)->Apply(Sizes);
BENCHMARK(FormatNames);
BENCHMARK(FormatNamesC);
BENCHMARK(CompareNoCase);

}  // namespace
