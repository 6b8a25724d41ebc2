// Files and folders beside std::filesystem and plain system calls, in the temporary folder (TMPDIR=/dev/shm keeps the
// disk out of the figures).
#include "RkUtilities/foundation/CFile.h"
#include "RkUtilities/foundation/CFileStatus.h"
#include "RkUtilities/foundation/NativePath.h"
#include "RkUtilities/paths/SECFileSystem.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <memory>
#include <random>
#include <string>
#include <strings.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace {

namespace fs = std::filesystem;

/// The folder of one benchmark's run.
class Folder {
public:
    Folder() : m_path(fs::temp_directory_path() / ("rk-bench-" + std::to_string(getpid()))) {
        fs::remove_all(m_path);
        fs::create_directory(m_path);
    }
    ~Folder() { fs::remove_all(m_path); }
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;

    std::string Path(const std::string& name) const { return m_path / name; }
    CString Text(const std::string& name) const { return rk::PathText(Path(name)); }
    void Write(const std::string& name, const std::string& content) const { std::ofstream(Path(name)) << content; }

private:
    fs::path m_path;
};

void MakeTree(const Folder& folder, std::int64_t fileCount) {
    fs::create_directory(folder.Path("from"));
    for (std::int64_t i = 0; i < fileCount; ++i) {
        if (i % 50 == 0)
            fs::create_directory(folder.Path("from/" + std::to_string(i / 50)));
        folder.Write("from/" + std::to_string(i / 50) + "/file" + std::to_string(i) + ".mind", std::string(4000, 'm'));
    }
}

template <class Copy> void CopyTree(benchmark::State& state, const Copy& copy) {
    const Folder folder;
    MakeTree(folder, state.range(0));
    for (auto _ : state) {
        state.PauseTiming();
        fs::remove_all(folder.Path("to"));
        state.ResumeTiming();
        copy(folder);
    }
    state.SetComplexityN(state.range(0));
}

void CopyTreeOurs(benchmark::State& state) {
    CopyTree(state, [](const Folder& folder) {
        const SECFileSystem files;
        files.MakeDirectory(folder.Text("to"));
        files.CopyFiles(folder.Text("from"), folder.Text("to"), 0, 1);
    });
}
BENCHMARK(CopyTreeOurs)->Arg(1000)->Arg(10000);

void CopyTreeStd(benchmark::State& state) {
    CopyTree(state, [](const Folder& folder) {
        fs::copy(folder.Path("from"), folder.Path("to"), fs::copy_options::recursive);
    });
}
BENCHMARK(CopyTreeStd)->Arg(1000)->Arg(10000);

template <class Delete> void DeleteTree(benchmark::State& state, const Delete& remove) {
    const Folder folder;
    for (auto _ : state) {
        state.PauseTiming();
        MakeTree(folder, state.range(0));
        state.ResumeTiming();
        remove(folder);
    }
}

void DeleteTreeOurs(benchmark::State& state) {
    DeleteTree(state, [](const Folder& folder) { SECFileSystem().DeleteDirectory(folder.Text("from"), 1); });
}
BENCHMARK(DeleteTreeOurs)->Arg(1000);

void DeleteTreeStd(benchmark::State& state) {
    DeleteTree(state, [](const Folder& folder) { fs::remove_all(folder.Path("from")); });
}
BENCHMARK(DeleteTreeStd)->Arg(1000);

constexpr std::size_t kBlock = 64 << 10;

template <class Compare> void CompareFiles(benchmark::State& state, const Compare& compare) {
    const Folder folder;
    std::mt19937_64 random(1);
    std::string content(static_cast<std::size_t>(state.range(0)), '\0');
    for (char& c : content)
        c = static_cast<char>(random());
    folder.Write("a", content);
    folder.Write("b", content);
    const std::string a = folder.Path("a");
    const std::string b = folder.Path("b");
    for (auto _ : state)
        benchmark::DoNotOptimize(compare(a, b));
    state.SetBytesProcessed(state.iterations() * 2 * state.range(0));
}

void CompareFilesOurs(benchmark::State& state) {
    CompareFiles(state, [](const std::string& a, const std::string& b) {
        return SECFileSystem().CompareFiles(CString(a), CString(b), kBlock);
    });
}
BENCHMARK(CompareFilesOurs)->Arg(4 << 10)->Arg(64 << 20);

void CompareFilesFloor(benchmark::State& state) {
    CompareFiles(state, [](const std::string& a, const std::string& b) {
        std::vector<char> x(kBlock);
        std::vector<char> y(kBlock);
        const int f = open(a.c_str(), O_RDONLY | O_CLOEXEC);
        const int g = open(b.c_str(), O_RDONLY | O_CLOEXEC);
        for (;;) {
            const ssize_t count = read(f, x.data(), kBlock);
            if (read(g, y.data(), kBlock) != count || count <= 0 ||
                std::memcmp(x.data(), y.data(), static_cast<std::size_t>(count)) != 0) {
                close(f);
                close(g);
                return count == 0;
            }
        }
    });
}
BENCHMARK(CompareFilesFloor)->Arg(4 << 10)->Arg(64 << 20);

template <class List> void ListFolder(benchmark::State& state, const List& list) {
    const Folder folder;
    std::mt19937 random(1);
    constexpr const char* kWords[] = {"Budget", "plan", "Review", "meeting", "Notes", "central", "Topic", "archive"};
    for (std::int64_t i = 0; i < state.range(0); ++i)
        folder.Write(std::string(kWords[random() % 8]) + ' ' + kWords[random() % 8] + ' ' + std::to_string(i) + ".mind",
                     "");
    std::size_t count = 0;
    for (auto _ : state)
        count = list(folder);
    if (count != static_cast<std::size_t>(state.range(0)))
        state.SkipWithError("entries are missing");
    state.SetComplexityN(state.range(0));
}

void ListFolderOurs(benchmark::State& state) {
    ListFolder(state, [](const Folder& folder) {
        return std::unique_ptr<CAtlList<CString>>(SECFileSystem().GetFileList(folder.Text("*.*"), 0xFF))->GetCount();
    });
}
BENCHMARK(ListFolderOurs)->RangeMultiplier(10)->Range(100, 100'000)->Complexity();

/// Less work: no order of a language, no look at the file.
void ListFolderStd(benchmark::State& state) {
    ListFolder(state, [](const Folder& folder) {
        std::vector<std::string> names;
        for (const auto& entry : fs::directory_iterator(folder.Path("")))
            names.push_back(entry.path().string());
        std::sort(names.begin(), names.end(),
                  [](const std::string& a, const std::string& b) { return strcasecmp(a.c_str(), b.c_str()) < 0; });
        return names.size();
    });
}
BENCHMARK(ListFolderStd)->RangeMultiplier(10)->Range(100, 100'000)->Complexity();

template <class Make> void MakeEightLevels(benchmark::State& state, const Make& make) {
    const Folder folder;
    for (auto _ : state) {
        make(folder.Path("a/b/c/d/e/f/g/h"));
        state.PauseTiming();
        fs::remove_all(folder.Path("a"));
        state.ResumeTiming();
    }
}

void MakeEightLevelsOurs(benchmark::State& state) {
    MakeEightLevels(state, [](const std::string& path) { return SECFileSystem().MakePath(CString(path)); });
}
BENCHMARK(MakeEightLevelsOurs);

void MakeEightLevelsStd(benchmark::State& state) {
    MakeEightLevels(state, [](const std::string& path) { return fs::create_directories(path); });
}
BENCHMARK(MakeEightLevelsStd);

void StatusOurs(benchmark::State& state) {
    const Folder folder;
    folder.Write("file", "content");
    const CString path = folder.Text("file");
    CFileStatus status;
    for (auto _ : state)
        benchmark::DoNotOptimize(CFile::GetStatus(path, status));
}
BENCHMARK(StatusOurs);

void StatusFloor(benchmark::State& state) {
    const Folder folder;
    folder.Write("file", "content");
    const std::string path = folder.Path("file");
    struct stat status{};
    for (auto _ : state)
        benchmark::DoNotOptimize(stat(path.c_str(), &status));
}
BENCHMARK(StatusFloor);

void OpenWriteCloseOurs(benchmark::State& state) {
    const Folder folder;
    const CString path = folder.Text("file");
    const CString text(std::string(200, 't'));
    for (auto _ : state) {
        CFile file;
        file.Open(path, CFile::modeCreate | CFile::modeReadWrite | CFile::shareDenyNone);
        file.WriteString(text);
        file.Close();
    }
}
BENCHMARK(OpenWriteCloseOurs);

void OpenWriteCloseFloor(benchmark::State& state) {
    const Folder folder;
    const std::string path = folder.Path("file");
    const std::string text(200, 't');
    for (auto _ : state) {
        const int file = open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0666);
        benchmark::DoNotOptimize(write(file, text.data(), text.size()));
        close(file);
    }
}
BENCHMARK(OpenWriteCloseFloor);

}  // namespace
