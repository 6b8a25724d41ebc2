// The containers beside the standard library's, 1,000 to 1,000,000 elements.
#include "RkUtilities/foundation/CAtlArray.h"
#include "RkUtilities/foundation/CAtlList.h"
#include "RkUtilities/foundation/CAtlMap.h"
#include "RkUtilities/foundation/CString.h"
#include "benchmarks/KeptMemory.h"

#include <benchmark/benchmark.h>

#include <cstdint>
#include <list>
#include <random>
#include <string>
#include <unordered_map>
#include <vector>

namespace {

constexpr std::int64_t kFewest = 1000, kMost = 1'000'000;

template <class Key> std::vector<Key> MakeKeys(std::int64_t count) {
    std::mt19937_64 random(1);
    std::vector<Key> keys;
    for (std::int64_t i = 0; i < count; ++i) {
        if constexpr (std::is_arithmetic_v<Key>)
            keys.push_back(static_cast<Key>(random() % 10'000'000));
        else
            keys.push_back(CString(u"topic ") + CString(std::to_string(random())));
    }
    return keys;
}

void Put(auto& map, const auto& key) {
    if constexpr (requires { map.SetAt(key, true); })
        map.SetAt(key, true);
    else
        map.insert_or_assign(key, true);
}

bool Holds(const auto& map, const auto& key) {
    if constexpr (requires { map.Lookup(key); })
        return map.Lookup(key) != nullptr;
    else
        return map.contains(key);
}

template <class Map, class Key> void FillMap(benchmark::State& state) {
    const std::vector<Key> keys = MakeKeys<Key>(state.range(0));
    for (auto _ : state) {
        Map map;
        for (const Key& key : keys)
            Put(map, key);
        benchmark::DoNotOptimize(map);
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
    state.SetComplexityN(state.range(0));
}

template <class Map, class Key> void FindInMap(benchmark::State& state) {
    const std::vector<Key> keys = MakeKeys<Key>(state.range(0));
    Map map;
    for (const Key& key : keys)
        Put(map, key);
    for (auto _ : state) {
        for (const Key& key : keys)
            benchmark::DoNotOptimize(Holds(map, key));
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
    state.SetComplexityN(state.range(0));
}

template <class Sequence> void FillSequence(benchmark::State& state) {
    for (auto _ : state) {
        Sequence sequence;
        for (std::int64_t i = 0; i < state.range(0); ++i) {
            if constexpr (requires { sequence.AddTail(i); })
                sequence.AddTail(i);
            else if constexpr (requires { sequence.Add(i); })
                sequence.Add(i);
            else
                sequence.push_back(i);
        }
        std::int64_t sum = 0;
        for (const std::int64_t element : sequence)
            sum += element;
        benchmark::DoNotOptimize(sum);
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
    state.SetComplexityN(state.range(0));
}

void Sizes(benchmark::internal::Benchmark* benchmark) {
    benchmark->RangeMultiplier(10)->Range(kFewest, kMost)->Complexity(benchmark::oN);
}

BENCHMARK(FillMap<CAtlMap<double, bool>, double>)->Apply(Sizes);
BENCHMARK(FillMap<std::unordered_map<double, bool>, double>)->Apply(Sizes);
BENCHMARK(FillMap<CAtlMap<CString, bool>, CString>)->Apply(Sizes);
BENCHMARK(FillMap<std::unordered_map<CString, bool>, CString>)->Apply(Sizes);
BENCHMARK(FindInMap<CAtlMap<double, bool>, double>)->Apply(Sizes);
BENCHMARK(FindInMap<std::unordered_map<double, bool>, double>)->Apply(Sizes);
BENCHMARK(FindInMap<CAtlMap<CString, bool>, CString>)->Apply(Sizes);
BENCHMARK(FindInMap<std::unordered_map<CString, bool>, CString>)->Apply(Sizes);
BENCHMARK(FillSequence<CAtlList<std::int64_t>>)->Apply(Sizes);
BENCHMARK(FillSequence<std::list<std::int64_t>>)->Apply(Sizes);
BENCHMARK(FillSequence<CAtlArray<std::int64_t>>)->Apply(Sizes);
BENCHMARK(FillSequence<std::vector<std::int64_t>>)->Apply(Sizes);

}  // namespace
