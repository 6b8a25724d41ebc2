#pragma once

#include "RkUtilities/foundation/CString.h"
#include "benchmarks/KeptMemory.h"
#include "benchmarks/PeakMemory.h"

#include <benchmark/benchmark.h>

#include <cstdint>
#include <random>
#include <string>
#include <string_view>
#include <vector>

// What the rows of text operations share: inputs, sizes, and the memory that each states.

constexpr std::u16string_view kWords = u"the quick brown fox jumps over the lazy dog and runs ";
constexpr std::u16string_view kMixedWords = u"Grüße aus Köln, поезд идёт, 東京タワー und \U0001F600 dazu ";
constexpr std::u16string_view kNotes = u"first line\tof a note\r\nand \x01 what else\x7f it says <br> ";

/// Words of a text in random order: those of a text that repeats itself are foreseen by the processor after a while,
/// which favours code with a branch for each unit.
inline std::u16string Shuffled(std::u16string_view words, std::int64_t unitCount) {
    std::vector<std::u16string_view> list;
    for (std::size_t end = words.find(u' '); end != words.npos; end = words.find(u' ')) {
        list.push_back(words.substr(0, end + 1));
        words.remove_prefix(end + 1);
    }
    std::minstd_rand random;
    std::u16string text;
    while (text.size() < static_cast<std::size_t>(unitCount))
        text += list[random() % list.size()];
    text.resize(static_cast<std::size_t>(unitCount), u'.');
    return text;
}

/// Times an operation on a text of `state.range(0)` units.
template <class Operation> void Time(benchmark::State& state, const Operation& operation) {
    for (auto _ : state)
        benchmark::DoNotOptimize(operation());
    state.SetBytesProcessed(state.iterations() * state.range(0) * static_cast<std::int64_t>(sizeof(char16_t)));
    state.SetComplexityN(state.range(0));
}

/// The same and the memory.
template <class Operation> void TimeOurs(benchmark::State& state, const Operation& operation) {
    constexpr double kTables = 4096;  // what does not grow with the text
    operation();
    const memory::Use use = memory::MemoryOf(operation);
    const auto unitCount = static_cast<double>(state.range(0));
    state.counters["result_bytes_per_unit"] = use.result / unitCount;
    state.counters["peak_bytes_per_unit"] = use.peak / unitCount;
    if (use.peak > 2 * use.result + kTables)
        state.SkipWithError("takes more memory than twice the result");
    Time(state, operation);
}

/// An operation in place, on a copy that shares the text's memory at first.
template <class Change> void ChangeOurs(benchmark::State& state, std::u16string_view words, const Change& change) {
    const CString text = Shuffled(words, state.range(0));
    TimeOurs(state, [&] {
        CString copy = text;
        change(copy);
        return copy;
    });
}

/// In powers of two up to 16 Mi units.
inline void Sizes(benchmark::internal::Benchmark* benchmark) {
    benchmark->RangeMultiplier(16)->Range(1 << 12, 1 << 24)->Complexity(benchmark::oN);
}
