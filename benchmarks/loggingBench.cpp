// What an entry costs that is written, dropped, or read as settings, beside the bare system calls. Items are entries.
#include "RkUtilities/logging/CrkLogTypes.h"
#include "RkUtilities/logging/CrkLogWriter.h"

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

namespace {

const CString kMessage =
    u"Map saved: 4096 topics, 512 relationships, 37 attachments; autosave took 182 ms; next run in "
    u"300 s; undo depth 64 steps.";

/// A log in a folder that lasts as long as the program, as a settings file would make it.
class Log {
public:
    static const Log& Start() {
        static const Log log;
        std::filesystem::remove(log.m_folder + "/messages.xml");
        return log;
    }
    ~Log() {
        std::error_code ignored;
        std::filesystem::remove_all(m_folder, ignored);
    }
    Log(const Log&) = delete;
    Log& operator=(const Log&) = delete;

    std::string Settings() const { return m_folder + "/settings.xml"; }

private:
    Log() : m_folder((std::filesystem::temp_directory_path() / "log-bench-XXXXXX").string()) {
        if (mkdtemp(m_folder.data()) == nullptr)
            std::abort();
        std::ofstream(Settings()) << "<settings><ls:Enable>true</ls:Enable><ls:Level>LogWarning</ls:Level>"
                                     "<ls:IncludeCategory>*</ls:IncludeCategory>"
                                     "<ls:ExcludeCategory>Cache</ls:ExcludeCategory></settings>";
        CrkLogWriter::Init(CString(Settings()), CString(m_folder + "/"));
    }

    std::string m_folder;
};

void DroppedByLevel(benchmark::State& state) {
    Log::Start();
    for (auto _ : state)
        CrkLogWriter::Log(CrkLogWriter::LogInfo, kMessage);
}

void DroppedByCategory(benchmark::State& state) {
    Log::Start();
    for (auto _ : state)
        CrkLogWriter::Log(CrkLogWriter::LogWarning, kMessage, CrkLogTypes::LogTypeCache);
}

void Admitted(benchmark::State& state) {
    if (state.thread_index() == 0)
        Log::Start();
    for (auto _ : state)
        CrkLogWriter::Log(CrkLogWriter::LogWarning, kMessage);
    state.SetItemsProcessed(state.iterations());
}

void AdmittedInFourProcesses(benchmark::State& state) {
    constexpr int kProcesses = 4, kEntries = 5000;
    Log::Start();
    for (auto _ : state) {
        for (int process = 0; process < kProcesses; ++process) {
            if (fork() == 0) {
                for (int entry = 0; entry < kEntries; ++entry)
                    CrkLogWriter::Log(CrkLogWriter::LogWarning, kMessage);
                _exit(0);
            }
        }
        while (wait(nullptr) > 0) {
        }
    }
    state.SetItemsProcessed(state.iterations() * kProcesses * kEntries);
}

/// The floor of `Admitted`: ready bytes, no other writer, no look at the file's length.
void OpenWriteClose(benchmark::State& state) {
    Log::Start();
    const std::string path = CrkLogWriter::m_path.ToUtf8() + "messages.xml";
    const std::string entry = (CrkLogWriter::EntryHeader(u"General", CrkLogWriter::LogWarning, {}, {}) + u"<l:Body>" +
                               kMessage + u"</l:Body>" + CrkLogWriter::EntryFooter())
                                  .ToUtf8();
    for (auto _ : state) {
        const int descriptor = open(path.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0666);
        benchmark::DoNotOptimize(write(descriptor, entry.data(), entry.size()));
        close(descriptor);
    }
    state.SetItemsProcessed(state.iterations());
}

void HeaderText(benchmark::State& state) {
    for (auto _ : state)
        benchmark::DoNotOptimize(CrkLogWriter::EntryHeader(u"General", CrkLogWriter::LogWarning, {}, {}));
}

void Settings(benchmark::State& state) {
    const CString path(Log::Start().Settings());
    for (auto _ : state)
        benchmark::DoNotOptimize(CrkLogSettings(path).m_enable);
}

BENCHMARK(DroppedByLevel);
BENCHMARK(DroppedByCategory);
BENCHMARK(Admitted)->Threads(1)->Threads(8)->UseRealTime();
BENCHMARK(AdmittedInFourProcesses)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(OpenWriteClose)->UseRealTime();
BENCHMARK(HeaderText);
BENCHMARK(Settings);

}  // namespace
