// Lets each allocation and each system call of a workload fail, in a process of its own, and looks at what is left.
//
//     laboratory                 all points
//     laboratory --every 50      each fiftieth point
//     laboratory NAME...         the workloads whose names begin so
//
// For each point: no crash, no endless wait, a result or an exception that the header names, what the header says of
// the state, the same result as ever when the call is made again undisturbed, and no descriptor or (warm, where an
// allocation failed) block of memory left behind. "Cold" is the process's first call of the library, "warm" the second.
#include "tests/faults/Injection.h"
#include "tests/faults/Workload.h"

#include "tests/support/ScopedFolder.h"

#include <atomic>
#include <cstdio>
#include <cstring>
#include <iostream>
#include <numeric>
#include <set>
#include <sqlite3.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <thread>
#include <vector>

namespace fs = std::filesystem;

namespace faults {

void Scene::Make(std::initializer_list<std::pair<const char*, const char*>> files) const {
    for (const auto& [name, content] : files) {
        fs::create_directories(fs::path(Path(name)).parent_path());
        std::ofstream(Path(name), std::ios::binary) << content;
    }
}

namespace {

/// Who may remove nothing leaves the hidden folder of what was under way; the next call in its place removes it.
bool mayLeaveWork = false;

constexpr const char* kElsewhere = "elsewhere:\n";
/// A folder of this process on another file system than its scenes, where there are two.
std::string elsewhere;

std::string StoredPreferences(const std::string& path) {
    sqlite3* database = nullptr;
    std::string stored;
    const auto append = [](void* text, int, char** values, char**) {
        *static_cast<std::string*>(text) += std::string(values[0]) + '=' + values[1] + ';';
        return 0;
    };
    if (sqlite3_open_v2(path.c_str(), &database, SQLITE_OPEN_READWRITE, nullptr) == SQLITE_OK)  // it is there
        sqlite3_exec(database, "SELECT DISTINCT name, coalesce(value, 'deleted') FROM preferences ORDER BY name, value",
                     append, &stored, nullptr);
    sqlite3_close(database);
    return stored;
}

std::string ContentOf(const fs::path& path) {
    if (fs::is_symlink(path))
        return "->" + fs::read_symlink(path).string();
    if (!fs::is_regular_file(path))
        return "";
    std::ifstream file(path, std::ios::binary);
    std::string content(std::istreambuf_iterator<char>(file), {});
    if (content.find("<l:LogEntry>") == std::string::npos)
        return content;
    std::string bodies;  // the times of entries differ from run to run
    for (std::size_t at = 0; (at = content.find("<l:Body>", at)) != std::string::npos; ++at)
        bodies += content.substr(at, content.find_first_of("=<", at + 8) - at);
    return bodies + (content.find_last_of('>') + 3 > content.size() ? "" : " and a torn entry");
}

/// Removes a tree whose folders may have lost their permissions, which only root does without more ado.
void Remove(const std::string& folder) {
    if (!fs::exists(folder))
        return;
    for (const auto& entry : fs::recursive_directory_iterator(folder))  // goes into a folder after its visit
        if (!entry.is_symlink() && entry.is_directory())
            fs::permissions(entry.path(), fs::perms::owner_all, fs::perm_options::add);
    fs::remove_all(folder);
}

std::string TreeAt(const std::string& folder) {
    std::set<std::string> entries;
    for (const auto& entry : fs::recursive_directory_iterator(folder, fs::directory_options::skip_permission_denied)) {
        std::string name = entry.path().lexically_relative(folder).string();
        if (name.find("preferences.sqlite") != std::string::npos || (mayLeaveWork && name.starts_with(".rk-new-")))
            continue;
        if (const std::size_t made = name.find("draft-"); made != std::string::npos)
            name.resize(made);         // the rest is random
        if (name.starts_with("log/"))  // names of backups tell the time
            std::replace_if(name.begin(), name.end(), [](char c) { return c >= '0' && c <= '9'; }, '#');
        const bool isWritable = (entry.status().permissions() & fs::perms::owner_write) != fs::perms::none;
        entries.insert(name + '=' + ContentOf(entry.path()) + (isWritable ? "\n" : " read-only\n"));
    }
    return std::accumulate(entries.begin(), entries.end(), std::string());
}

}  // namespace

std::string Scene::State() const {
    std::string state = "text=" + Shown(text) + " other=" + Shown(other) + " number=" + Shown(number);
    const auto show = [&state](const char* name, const auto& elements) {
        state += name;
        for (const CString& element : elements)
            state += ' ' + Shown(element);
    };
    std::set<CString> pairs;
    for (const auto& [key, value] : map)
        pairs.insert(key + u'=' + value);
    show("\narray:", array);
    show("\nlist:", list);
    show("\nmap:", pairs);
    const std::string database = std::getenv("XDG_CONFIG_HOME") + std::string("/laboratory/preferences.sqlite");
    return state + "\npreferences: " + StoredPreferences(database) + "\ndisk:\n" + TreeAt(folder) + kElsewhere +
           TreeAt(elsewhere);
}

namespace {

constexpr std::size_t kTextRoom = 4096;

/// What a run tells its parent, in memory that both share.
struct Report {
    Counts counts;
    char outcome[kTextRoom], before[kTextRoom], after[kTextRoom], complaint[4 * kTextRoom];
    std::ptrdiff_t blocks, descriptors;
};

struct Totals {
    std::atomic<std::size_t> points[kFaults.size()], failures[kFaults.size()], next;
};

template <class Object> Object& Shared() {
    return *static_cast<Object*>(
        mmap(nullptr, sizeof(Object), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0));
}

template <std::size_t size> void Put(char (&room)[size], const std::string& text) {
    std::snprintf(room, size, "%s", text.c_str());
}

/// The call's result as text, or the name of what it threw. Counted and failing is the call alone.
std::string CallOf(const Workload& workload, Scene& scene) {
    try {
        return workload.call(scene);
    } catch (CFileException* failure) {
        failure->Delete();
        return "CFileException";
    } catch (const ATL::CAtlException&) {
        return "CAtlException";
    } catch (const CrkLogException&) {
        return "CrkLogException";
    } catch (const std::bad_alloc&) {
        return "bad_alloc";
    } catch (const std::system_error&) {
        return "system_error";
    } catch (const std::exception& other) {
        return std::string("unexpected: ") + other.what();
    }
}

std::ptrdiff_t OpenDescriptors() { return std::distance(fs::directory_iterator("/proc/self/fd"), {}); }

bool IsListed(const std::string& list, const std::string& outcome) {
    return list == "*" || ('|' + list + '|').find('|' + outcome + '|') != std::string::npos;
}

/// What is wrong with a call in which something failed; "": nothing.
std::string Judge(const Workload& workload, const Fault& fault, const Report& expected, const Report& report) {
    const std::string outcome = report.outcome, gives = "gives \"" + outcome + "\"";
    const bool isDone = outcome == expected.outcome;
    const bool isSystem = fault.error != kNoMemory;
    const bool mayThrow = (!isSystem || fault.error == ENOMEM) && outcome == "bad_alloc";
    if (!isDone && (fault.hasAnotherWay || !(mayThrow || IsListed(workload.failures, outcome))))
        return gives;
    const bool isBefore = std::strcmp(report.after, report.before) == 0;
    const bool isAfter = std::strcmp(report.after, expected.after) == 0;
    const bool isMoved =
        std::string_view(std::strstr(report.after, kElsewhere)) == std::strstr(expected.after, kElsewhere);
    if ((isDone ? isAfter : isBefore) || workload.keeps == Keeps::Nothing ||
        (workload.keeps == Keeps::Later && isDone && isBefore) ||
        (workload.keeps == Keeps::Moved && isSystem && isMoved) ||
        (workload.keeps >= Keeps::Either && isSystem && isAfter))
        return "";
    return gives + " and leaves\n" + report.after + "--- before:\n" + report.before + "--- undisturbed:\n" +
           expected.after;
}

struct Point {
    const Workload& workload;
    bool isWarm;
    const Fault& fault;
    std::size_t number;  // 0: undisturbed
};

/// The whole life of a process of its own: what is wrong with it. `expected` is `report` where nothing is to fail.
std::string Live(const Point& point, const std::string& folder, const Report& expected, Report& report) {
    const Workload& workload = point.workload;
    alarm(120);  // above all waits for locks that SQLite and the library allow themselves in some calls together
    for (const char* const variable : {"HOME", "TMPDIR", "XDG_CONFIG_HOME", "XDG_CACHE_HOME"})
        setenv(variable, (folder + "/own").c_str(), 1);
    setenv("TZ", "Europe/Berlin", 1);
    fs::create_directories(folder + "/own");
    int sceneCount = 0;
    Scene scene;
    const auto prepare = [&] {
        scene = Scene();
        scene.folder = folder + '/' + std::to_string(sceneCount++);
        fs::create_directories(scene.folder);
        Remove(elsewhere);
        fs::create_directories(elsewhere);
        if (workload.prepare != nullptr)
            workload.prepare(scene);
    };
    CatchSystemCalls();
    if (point.isWarm) {
        prepare();
        CallOf(workload, scene);
    }
    prepare();
    mayLeaveWork = point.fault.error != kNoMemory;
    if (!workload.readsZone)
        static_cast<void>(CTime::GetCurrentTime().GetHour());
    Put(report.before, scene.State());
    Arm(point.fault, point.number);
    std::string outcome = CallOf(workload, scene);
    report.counts = Disarm();
    Put(report.outcome, outcome);
    Put(report.after, scene.State());
    std::string complaint = point.number == 0 ? "" : Judge(workload, point.fault, expected, report);
    if (!complaint.empty() || workload.readsZone)
        return complaint;
    prepare();
    outcome = CallOf(workload, scene);
    const std::string state = scene.State();
    scene = Scene();
    report.descriptors = OpenDescriptors();
    report.blocks = LivingBlocks();
    if (outcome != expected.outcome || state != expected.after)
        return "then, undisturbed, gives \"" + outcome + "\" for \"" + expected.outcome + "\" and leaves\n" + state +
               "--- instead of\n" + expected.after;
    if (report.descriptors > expected.descriptors)
        return "leaves a descriptor open";
    const bool countsBlocks = point.isWarm && point.fault.error == kNoMemory && workload.keeps == Keeps::Before;
    if (countsBlocks && report.blocks > expected.blocks)
        return "leaves " + std::to_string(report.blocks - expected.blocks) + " blocks of memory";
    return "";
}

bool Run(const Point& point, const std::string& folder, const Report& expected, Report& report) {
    new (&report) Report();
    fs::create_directories(folder);
    fs::create_directory_symlink(elsewhere, folder + "/elsewhere");
    const pid_t child = fork();
    if (child == 0) {
        Put(report.complaint, Live(point, folder, expected, report));
        _exit(0);
    }
    int status = 0;
    waitpid(child, &status, 0);
    Remove(folder);
    Remove(elsewhere);
    if (WIFSIGNALED(status))
        Put(report.complaint, WTERMSIG(status) == SIGALRM ? "does not return" : strsignal(WTERMSIG(status)));
    if (report.complaint[0] == '\0')
        return true;
    std::cout << (std::string(point.workload.name) + (point.isWarm ? ", warm, " : ", cold, ") + point.fault.name + ' ' +
                  std::to_string(point.number) + ": " + report.complaint + '\n')
              << std::flush;
    return false;
}

/// All points of a workload; every n-th where n is more than 1, other points for each workload.
/// The few with another way are always run.
void Examine(const Workload& workload, std::size_t every, const std::string& folder, Totals& totals) {
    static Report &expected = Shared<Report>(), &report = Shared<Report>();
    std::size_t skipped = std::hash<std::string_view>()(workload.name);
    for (const bool isWarm : {false, true}) {
        if (!Run({workload, isWarm, kFaults[0], 0}, folder, expected, expected)) {
            ++totals.failures[0];
            continue;
        }
        for (std::size_t kind = 0; kind < kFaults.size(); ++kind) {
            for (std::size_t number = 1; number <= expected.counts[kind]; ++number) {
                if (++skipped % every != 0 && !kFaults[kind].hasAnotherWay)
                    continue;
                ++totals.points[kind];
                if (!Run({workload, isWarm, kFaults[kind], number}, folder, expected, report))
                    ++totals.failures[kind];
            }
        }
    }
}

int RunAll(const std::vector<Workload>& workloads, std::size_t every) {
    auto& totals = Shared<Totals>();
    if (!CatchSystemCalls())
        std::puts("Calls to the system do not fail here: this system lets no program catch its own.");
    const ScopedFolder folder;
    for (unsigned worker = 0; worker < std::max(1U, std::thread::hardware_concurrency()); ++worker) {
        if (fork() == 0) {
            elsewhere = (fs::temp_directory_path() == "/dev/shm" ? "/tmp/rk-faults-" : "/dev/shm/rk-faults-") +
                        std::to_string(getpid());
            for (std::size_t next = 0; (next = totals.next++) < workloads.size();)
                Examine(workloads[next], every, folder.Path(std::to_string(worker)), totals);
            _exit(0);
        }
    }
    std::size_t deadCount = 0;
    for (int status = 0; wait(&status) > 0;)
        deadCount += status == 0 ? 0 : 1;
    std::size_t pointCount = 0, failureCount = 0;
    for (std::size_t kind = 0; kind < kFaults.size(); ++kind) {
        std::printf("%-18s %7zu points %5zu failures\n", kFaults[kind].name, totals.points[kind].load(),
                    totals.failures[kind].load());
        pointCount += totals.points[kind];
        failureCount += totals.failures[kind];
    }
    std::printf("%zu workloads, %zu points, %zu failures", workloads.size(), pointCount, failureCount);
    if (deadCount > 0)
        std::printf("; not complete, workers that died: %zu", deadCount);
    std::puts("");
    return deadCount == 0 && failureCount == 0 && pointCount > 0 ? 0 : 1;
}

}  // namespace
}  // namespace faults

int main(int argumentCount, char** arguments) {
    std::size_t every = 1;
    std::vector<std::string_view> names(arguments + 1, arguments + argumentCount);
    if (names.size() >= 2 && names[0] == "--every") {
        every = std::max<std::size_t>(1, std::strtoul(arguments[2], nullptr, 10));
        names.erase(names.begin(), names.begin() + 2);
    }
    if (names.empty())
        names = {""};
    std::vector<faults::Workload> workloads;
    for (const auto& rows :
         {faults::kTextWorkloads, faults::kLocaleWorkloads, faults::kFileWorkloads, faults::kStorageWorkloads})
        std::ranges::copy_if(
            rows, std::back_inserter(workloads),
            [&](std::string_view row) {
                return std::ranges::any_of(names, [row](std::string_view name) { return row.starts_with(name); });
            },
            &faults::Workload::name);
    return faults::RunAll(workloads, every);
}
