// XML names, colors and collections beside one look-up or one loop written by hand. A time is for all inputs of a row.
#include "RkUtilities/collections/CorvaneNSArrayAdditions.h"
#include "RkUtilities/color/CrkBaseColorTable.h"
#include "RkUtilities/color/CrkColorConverter.h"
#include "RkUtilities/foundation/CString.h"
#include "RkUtilities/xml/CrkXmlUtilities.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <array>
#include <bitset>
#include <memory>
#include <string>
#include <vector>

namespace {

// --- XML names -------------------------------------------------------------------------------------------------------

const std::vector<CString>& XmlNames() {
    static const std::vector<CString> names = [] {
        std::vector<CString> made;
        for (int i = 0; i < 256; ++i) {
            const CString number(std::to_string(i));
            for (const std::u16string_view name : {u"topic", u"map:größe.", u"ключ-", u"東京_"})
                made.push_back(name + number);
        }
        return made;
    }();
    return names;
}

void ValidNames(benchmark::State& state) {
    for (auto _ : state) {
        for (const CString& name : XmlNames())
            benchmark::DoNotOptimize(CrkXmlUtilities::IsValidName(name));
    }
}

/// The floor: one bit a unit, names whose first unit is not looked at apart.
void ValidNamesBitset(benchmark::State& state) {
    const auto nameUnits = std::make_unique<std::bitset<0x10000>>();
    for (unsigned unit = 0; unit < nameUnits->size(); ++unit)
        nameUnits->set(unit, CrkXmlUtilities::IsNameChar(static_cast<unsigned short>(unit)));
    for (auto _ : state) {
        for (const CString& name : XmlNames())
            benchmark::DoNotOptimize(std::ranges::all_of(name, [&](char16_t unit) { return (*nameUnits)[unit]; }));
    }
}

/// Plain alternative: the ranges of a parser's table, searched for each unit.
void ValidNamesRanges(benchmark::State& state) {
    std::vector<char16_t> edges;  // where the class begins and ends, in turn
    for (unsigned unit = 1; unit < 0x10000; ++unit) {
        if (CrkXmlUtilities::IsNameChar(static_cast<unsigned short>(unit)) !=
            CrkXmlUtilities::IsNameChar(static_cast<unsigned short>(unit - 1)))
            edges.push_back(static_cast<char16_t>(unit));
    }
    const auto isNameUnit = [&](char16_t unit) {
        return (std::upper_bound(edges.begin(), edges.end(), unit) - edges.begin()) % 2 == 1;
    };
    for (auto _ : state) {
        for (const CString& name : XmlNames())
            benchmark::DoNotOptimize(std::ranges::all_of(name, isNameUnit));
    }
}

void RepairNames(benchmark::State& state) {
    for (auto _ : state) {
        for (const CString& name : XmlNames())
            benchmark::DoNotOptimize(CrkXmlUtilities::StringToNCName(name, u'_', /*insertUnderscore=*/true));
    }
}

void CopyNames(benchmark::State& state)  // the floor of a repair
{
    for (auto _ : state) {
        for (const CString& name : XmlNames())
            benchmark::DoNotOptimize(CString(name.View()));
    }
}

// --- Colors ----------------------------------------------------------------------------------------------------------

constexpr unsigned kColors = 1024;

unsigned ColorAt(unsigned i) { return i * 2654435761U; }

void Shades(benchmark::State& state) {
    for (auto _ : state) {
        for (unsigned i = 0; i < kColors; ++i)
            benchmark::DoNotOptimize(CrkColorConverter::ShadeOf(ColorAt(i), i % 2 == 0 ? 20 : -20));
    }
}

/// Plain alternative: the same rule in floating point.
void ShadesFloatingPoint(benchmark::State& state) {
    for (auto _ : state) {
        for (unsigned i = 0; i < kColors; ++i) {
            unsigned shade = 0x02000000;
            for (unsigned shift = 0; shift < 24; shift += 8) {
                const auto channel = static_cast<double>(ColorAt(i) >> shift & 0xFF);
                const double moved = i % 2 == 0 ? channel + (255 - channel) * 0.2 : channel - channel * 0.2;
                shade |= static_cast<unsigned>(moved + 0.5) << shift;
            }
            benchmark::DoNotOptimize(shade);
        }
    }
}

/// The floor: bytes change places.
void SwapChannels(benchmark::State& state) {
    for (auto _ : state) {
        for (unsigned i = 0; i < kColors; ++i)
            benchmark::DoNotOptimize(__builtin_bswap32(ColorAt(i)) >> 8);
    }
}

void Convert(benchmark::State& state) {
    for (auto _ : state) {
        for (unsigned i = 0; i < kColors; ++i)
            benchmark::DoNotOptimize(CrkColorConverter::ARGBToCOLORREF(ColorAt(i)));
    }
}

void ColorTexts(benchmark::State& state)  // no table: the bytes in hexadecimal digits
{
    for (auto _ : state) {
        for (unsigned i = 0; i < kColors; ++i)
            benchmark::DoNotOptimize(CrkBaseColorTable::GetColorText(ColorAt(i)));
    }
}

void ColorTextsC(benchmark::State& state) {
    for (auto _ : state) {
        for (unsigned i = 0; i < kColors; ++i) {
            const unsigned color = ColorAt(i);
            std::array<char, 16> text{};
            std::snprintf(text.data(), text.size(), "{%02X,%02X,%02X}", color & 0xFF, color >> 8 & 0xFF,
                          color >> 16 & 0xFF);
            benchmark::DoNotOptimize(text);
        }
    }
}

// --- Collections -----------------------------------------------------------------------------------------------------

/// Objects and references to them.
struct Topics {
    explicit Topics(std::int64_t count) : objects(static_cast<std::size_t>(count)) {
        for (std::size_t i = 0; i < objects.size(); ++i)
            objects[i] = static_cast<int>(i);
        for (int& object : objects)
            all.push_back(&object);
    }
    std::vector<int> objects;
    std::vector<int*> all;
};

void HoldsOne(benchmark::State& state) {
    const Topics topics(state.range(0));
    for (auto _ : state)
        benchmark::DoNotOptimize(CorvaneNSArrayAdditions::containsObjectIdenticalTo(topics.all, topics.all.back()));
    state.SetComplexityN(state.range(0));
}

void HoldsOneLoop(benchmark::State& state) {
    const Topics topics(state.range(0));
    for (auto _ : state) {
        bool found = false;
        for (const int* const topic : topics.all) {
            if (topic == topics.all.back()) {
                found = true;
                break;
            }
        }
        benchmark::DoNotOptimize(found);
    }
    state.SetComplexityN(state.range(0));
}

/// No object is there: the worst case.
void HoldsAny(benchmark::State& state) {
    const Topics topics(state.range(0));
    const Topics others(state.range(0));
    for (auto _ : state)
        benchmark::DoNotOptimize(CorvaneNSArrayAdditions::containsAnyObjectsIdenticalTo(topics.all, others.all));
    state.SetComplexityN(state.range(0));
}

void HoldsAnyLoops(benchmark::State& state)  // quadratic
{
    const Topics topics(state.range(0));
    const Topics others(state.range(0));
    for (auto _ : state) {
        bool found = false;
        for (const int* const other : others.all)
            found = found || std::find(topics.all.begin(), topics.all.end(), other) != topics.all.end();
        benchmark::DoNotOptimize(found);
    }
    state.SetComplexityN(state.range(0));
}

void HoldsAnySorted(benchmark::State& state)  // what can be done with an order: two sorted copies, merged
{
    const Topics topics(state.range(0));
    const Topics others(state.range(0));
    for (auto _ : state) {
        std::vector<int*> first = topics.all;
        std::vector<int*> second = others.all;
        std::sort(first.begin(), first.end());
        std::sort(second.begin(), second.end());
        std::vector<int*> both;
        std::set_intersection(first.begin(), first.end(), second.begin(), second.end(), std::back_inserter(both));
        benchmark::DoNotOptimize(both.empty());
    }
    state.SetComplexityN(state.range(0));
}

void Indexes(benchmark::State& state) {
    const Topics topics(state.range(0));
    const std::vector<int*> sought(topics.all.end() - 8, topics.all.end());
    for (auto _ : state)
        benchmark::DoNotOptimize(CorvaneNSArrayAdditions::indexesOfObjects(topics.all, sought));
    state.SetComplexityN(state.range(0));
}

void IndexesLoops(benchmark::State& state) {
    const Topics topics(state.range(0));
    const std::vector<int*> sought(topics.all.end() - 8, topics.all.end());
    for (auto _ : state) {
        std::vector<std::size_t> indexes;
        for (const int* const object : sought) {
            for (std::size_t i = 0; i < topics.all.size(); ++i) {
                if (*topics.all[i] == *object) {
                    indexes.push_back(i);
                    break;
                }
            }
        }
        benchmark::DoNotOptimize(indexes);
    }
    state.SetComplexityN(state.range(0));
}

void Sizes(benchmark::internal::Benchmark* benchmark) {
    benchmark->RangeMultiplier(16)->Range(1 << 8, 1 << 20)->Complexity(benchmark::oN);
}

BENCHMARK(ValidNames);
BENCHMARK(ValidNamesBitset);
BENCHMARK(ValidNamesRanges);
BENCHMARK(RepairNames);
BENCHMARK(CopyNames);
BENCHMARK(Shades);
BENCHMARK(ShadesFloatingPoint);
BENCHMARK(Convert);
BENCHMARK(SwapChannels);
BENCHMARK(ColorTexts);
BENCHMARK(ColorTextsC);
BENCHMARK(HoldsOne)->Apply(Sizes);
BENCHMARK(HoldsOneLoop)->Apply(Sizes);
BENCHMARK(HoldsAny)->Apply(Sizes);
BENCHMARK(HoldsAnySorted)->RangeMultiplier(16)->Range(1 << 8, 1 << 20)->Complexity(benchmark::oNLogN);
BENCHMARK(HoldsAnyLoops)->RangeMultiplier(4)->Range(1 << 6, 1 << 12)->Complexity(benchmark::oNSquared);
BENCHMARK(Indexes)->Apply(Sizes);
BENCHMARK(IndexesLoops)->Apply(Sizes);

}  // namespace
