// GUIDs beside their floors: what the random bytes and one text of 36 units cost by themselves.
#include "RkUtilities/guid/CrkGuid.h"

#include <benchmark/benchmark.h>

#include <sys/random.h>

#include <array>
#include <cstdint>
#include <vector>

namespace {

constexpr std::size_t kGuidCount = 1024;

void CreateGuid(benchmark::State& state) {
    for (auto _ : state)
        benchmark::DoNotOptimize(CrkGuid::CreateGuid());
}

/// The floor: one system call for 256 GUIDs.
void RandomBytesOnly(benchmark::State& state) {
    std::array<std::array<std::uint8_t, 16>, 256> stock;
    for (std::size_t used = 0; auto _ : state) {
        if (used++ % stock.size() == 0)
            benchmark::DoNotOptimize(getrandom(stock.data(), sizeof stock, 0));
        benchmark::DoNotOptimize(stock[used % stock.size()]);
    }
}

void GuidToText(benchmark::State& state) {
    const std::vector<CrkGuid> guids(kGuidCount);
    for (std::size_t i = 0; auto _ : state)
        benchmark::DoNotOptimize(CrkGuid::GuidToString(guids[i++ % kGuidCount].Bytes()));
}

/// The floor: a text of that length.
void TextOnly(benchmark::State& state) {
    const CString text = CrkGuid();
    for (auto _ : state)
        benchmark::DoNotOptimize(CString(text.View()));
}

void GuidFromText(benchmark::State& state) {
    const std::vector<CrkGuid> guids(kGuidCount);
    const std::vector<CString> texts(guids.begin(), guids.end());
    for (std::size_t i = 0; auto _ : state)
        benchmark::DoNotOptimize(CrkGuid::StringToGuid(texts[i++ % kGuidCount]));
}

BENCHMARK(CreateGuid)->ThreadRange(1, 8);
BENCHMARK(RandomBytesOnly);
BENCHMARK(GuidToText);
BENCHMARK(TextOnly);
BENCHMARK(GuidFromText);

}  // namespace
