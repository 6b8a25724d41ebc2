// Preferences beside a map in memory, what a read cannot avoid, and beside a file that is written and brought to the
// disk, what a durable write cannot avoid. XDG_CONFIG_HOME is in the temporary folder: name a disk with TMPDIR.
#include "RkUtilities/preferences/SECRegistry.h"
#include "benchmarks/ScratchFolder.h"

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <fcntl.h>
#include <string>
#include <unistd.h>
#include <unordered_map>
#include <vector>

namespace {

constexpr std::size_t kNames = 1024;
constexpr unsigned kAnyMachine = 0, kThisMachine = 1;
constexpr auto kRead = static_cast<SECRegistry::CreatePermissions>(0x20019);

std::vector<CString> MakeNames() {
    std::vector<CString> names;
    for (std::size_t i = 0; i < kNames; ++i)
        names.push_back(CString("Window placement " + std::to_string(i)));
    return names;
}

const std::vector<CString>& Names() {
    static const std::vector<CString> names = MakeNames();
    return names;
}

/// A store that holds every name.
SECRegistry Store(unsigned rootKey) {
    SECRegistry store;
    store.Open(u"Software", kRead);
    for (const CString& name : Names())
        store.SetValue(name, name);
    store.Close();
    store.Connect(rootKey, nullptr, false);
    return store;
}

void Read(benchmark::State& state) {
    const SECRegistry store = Store(kAnyMachine);
    CString value;
    for (std::size_t i = 0; auto _ : state)
        benchmark::DoNotOptimize(store.GetValue(Names()[i++ % kNames], value));
}

void ReadMap(benchmark::State& state) {
    std::unordered_map<std::u16string, CString> map;
    for (const CString& name : Names())
        map.emplace(name.View(), name);
    for (std::size_t i = 0; auto _ : state) {
        CString value = map.find(std::u16string(Names()[i++ % kNames].View()))->second;
        benchmark::DoNotOptimize(value);
    }
}

void Write(benchmark::State& state) {
    SECRegistry store = Store(kAnyMachine);
    for (std::size_t i = 0; auto _ : state) {
        const CString& name = Names()[i++ % kNames];
        benchmark::DoNotOptimize(store.SetValue(name, static_cast<std::uint32_t>(i)));
    }
    state.SetItemsProcessed(state.iterations());
}

void WriteMap(benchmark::State& state) {
    std::unordered_map<std::u16string, std::uint32_t> map;
    for (std::size_t i = 0; auto _ : state) {
        const CString& name = Names()[i++ % kNames];
        map.insert_or_assign(std::u16string(name.View()), static_cast<std::uint32_t>(i));
    }
    state.SetItemsProcessed(state.iterations());
}

/// `state.range(0)` writes, then one synchronisation.
void WriteAndClose(benchmark::State& state) {
    SECRegistry store = Store(kAnyMachine);
    for (std::uint32_t round = 0; auto _ : state) {
        ++round;
        for (std::int64_t i = 0; i < state.range(0); ++i)
            store.SetValue(Names()[static_cast<std::size_t>(i)], round);
        store.Close();
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void WriteThisMachine(benchmark::State& state) {
    SECRegistry store = Store(kThisMachine);
    for (std::uint32_t round = 0; auto _ : state)
        store.SetValue(Names()[7], ++round);
    state.SetItemsProcessed(state.iterations());
}

/// The floor of a durable write: 32 bytes a value in a new file, on the disk before it replaces the old file.
void WriteFileDurably(benchmark::State& state) {
    const ScratchFolder folder;
    const std::string path = folder.Path("preferences");
    const std::string fresh = path + ".new";
    const std::string content(static_cast<std::size_t>(state.range(0)) * 32, 'p');
    for (auto _ : state) {
        const int file = open(fresh.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
        if (write(file, content.data(), content.size()) != static_cast<ssize_t>(content.size()) || fdatasync(file) != 0)
            state.SkipWithError("cannot write");
        close(file);
        rename(fresh.c_str(), path.c_str());
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

BENCHMARK(Read);
BENCHMARK(ReadMap);
BENCHMARK(Write);
BENCHMARK(WriteMap);
BENCHMARK(WriteAndClose)->Arg(1)->Arg(kNames)->UseRealTime();
BENCHMARK(WriteThisMachine)->UseRealTime();
BENCHMARK(WriteFileDurably)->Arg(1)->Arg(kNames)->UseRealTime();

}  // namespace

int main(int argc, char** argv) {
    const ScratchFolder folder;
    setenv("XDG_CONFIG_HOME", folder.Path("").c_str(), 1);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
