// Paths beside their floors: one search for what two paths have in common, two searches from the end, one listing.
#include "RkUtilities/foundation/NativePath.h"
#include "RkUtilities/paths/CrkPathUtilities.h"
#include "tests/support/ScopedFolder.h"

#include <benchmark/benchmark.h>

#include <fcntl.h>
#include <string>
#include <string_view>
#include <unistd.h>

namespace {

constexpr std::u16string_view kBase = u"/data/maps/2026/projects/atlas";
constexpr std::u16string_view kTarget = u"/data/maps/icons/flags/flag-red.png";
constexpr std::u16string_view kFile = u"/data/maps/2026/projects/atlas/Annual budget.review.mind";

void CalcRelativePathname(benchmark::State& state) {
    const CString base = kBase, target = kTarget;
    for (auto _ : state)
        benchmark::DoNotOptimize(CrkPathUtilities::CalcRelativePathname(target, base));
}

/// The floor: the common part up to a slash, "../" for each folder left, exact comparison and nothing to clean.
void RelativeFloor(benchmark::State& state) {
    std::u16string out;
    for (auto _ : state) {
        std::size_t i = 0, slash = 0;
        for (; i < kBase.size() && i < kTarget.size() && kBase[i] == kTarget[i]; ++i)
            slash = kBase[i] == u'/' ? i : slash;
        out.clear();
        for (std::size_t k = slash; k < kBase.size(); ++k)
            if (kBase[k] == u'/')
                out += u"../";
        out.append(kTarget, slash + 1);
        benchmark::DoNotOptimize(out.data());
    }
}

void SplitExtension(benchmark::State& state) {
    const CString path = kFile;
    for (auto _ : state) {
        benchmark::DoNotOptimize(CrkPathUtilities::FileWithoutExtensionFromFilename(path));
        benchmark::DoNotOptimize(CrkPathUtilities::GetExtensionFromFileName(path));
    }
}

/// The floor: the two results as texts.
void SplitFloor(benchmark::State& state) {
    for (auto _ : state) {
        benchmark::DoNotOptimize(CString(kFile.substr(31, 20)));
        benchmark::DoNotOptimize(CString(kFile.substr(52)));
    }
}

void NativePath(benchmark::State& state) {
    const CString path = kFile;
    for (auto _ : state)
        benchmark::DoNotOptimize(rk::NativePath(path));
}

void PathText(benchmark::State& state) {
    const std::string bytes = rk::NativePath(CString(kFile));
    for (auto _ : state)
        benchmark::DoNotOptimize(rk::PathText(bytes));
}

/// `range(0)` names are taken, the next one is free.
void MakeNameUnique(benchmark::State& state) {
    const ScopedFolder folder;
    for (int n = 1; n <= state.range(0); ++n) {
        const std::string name = n == 1 ? "Map.mind" : "Map (" + std::to_string(n) + ").mind";
        close(open(folder.Path(name).c_str(), O_CREAT | O_WRONLY | O_CLOEXEC, 0600));
    }
    const CString path = folder.Text();
    for (auto _ : state)
        benchmark::DoNotOptimize(CrkPathUtilities::MakeNameUnique(path, u"Map", u"mind"));
    state.SetComplexityN(state.range(0));
}

void AssurePathExists(benchmark::State& state) {
    const ScopedFolder folder;
    const CString path = folder.MakeFolder("a/b/c/d");
    for (auto _ : state)
        benchmark::DoNotOptimize(CrkPathUtilities::AssurePathExists(path));
}

BENCHMARK(CalcRelativePathname);
BENCHMARK(RelativeFloor);
BENCHMARK(SplitExtension);
BENCHMARK(SplitFloor);
BENCHMARK(NativePath);
BENCHMARK(PathText);
BENCHMARK(MakeNameUnique)->Arg(1)->RangeMultiplier(10)->Range(10, 100'000)->Complexity();
BENCHMARK(AssurePathExists);

}  // namespace
