#include "RkUtilities/platform/PreferenceStore.h"

#include "RkUtilities/platform/ApplicationName.h"
#include "RkUtilities/platform/PreferenceDatabase.h"
#include "RkUtilities/platform/PreferenceState.h"
#include "RkUtilities/platform/UserFolders.h"

#include <algorithm>
#include <ctime>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <mutex>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>
#include <unordered_map>

namespace rk::platform {

namespace {

using Result = PreferenceDatabase::Result;

constexpr const char* kAnyHost = "user";

/// "host <machine id>": a home folder that two machines share keeps them apart.
std::string ThisHostScope()
{
    std::string machine;
    std::ifstream("/etc/machine-id") >> machine;
    if (machine.empty()) {
        char name[256] = {};
        if (gethostname(name, sizeof name - 1) == 0)
            machine = name;
    }
    return "host " + machine;
}

std::string ExecutableName()
{
    std::error_code error;
    const std::filesystem::path path = std::filesystem::read_symlink("/proc/self/exe", error);
    return error || !path.has_filename() ? "application" : path.filename().string();
}

std::string DatedName(const std::string& path)
{
    const std::time_t now = std::time(nullptr);
    std::tm fields{};
    localtime_r(&now, &fields);
    char date[32];
    const std::size_t length = std::strftime(date, sizeof date, "-damaged-%Y%m%d-%H%M%S", &fields);
    return path + std::string(date, length);
}

/// Keeps other processes from putting the same database aside, or opening it meanwhile.
class FolderLock {
public:
    explicit FolderLock(const std::string& folder)
        : m_descriptor(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC))
    {
        if (m_descriptor >= 0)
            flock(m_descriptor, LOCK_EX);
    }
    ~FolderLock()
    {
        if (m_descriptor >= 0)
            ::close(m_descriptor);
    }
    FolderLock(const FolderLock&) = delete;
    FolderLock& operator=(const FolderLock&) = delete;

private:
    int m_descriptor;
};

class Store {
public:
    ~Store()
    {
        if (m_used)
            Synchronize();
    }

    void Name(std::string_view name)
    {
        const std::lock_guard lock(m_valuesMutex);
        m_applicationName.assign(name);
        std::replace_if(
            m_applicationName.begin(), m_applicationName.end(), [](char c) { return c == '/' || c == '\0'; }, '_');
    }

    std::optional<PreferenceValue> Find(std::u16string_view name)
    {
        EnsureRead();
        const std::lock_guard lock(m_valuesMutex);
        const auto found = m_byName.find(std::u16string(name));
        return found != m_byName.end() ? std::optional(found->second) : std::nullopt;
    }

    void Set(PreferenceScope scope, std::u16string_view name, PreferenceValue value)
    {
        EnsureRead();
        const PreferenceKey key(scope == PreferenceScope::ThisHost ? m_thisHost : kAnyHost, name);
        const std::lock_guard lock(m_valuesMutex);
        m_pending.insert_or_assign(key, value);
        m_values.insert_or_assign(key, std::move(value));
        Index(key.second);
    }

    bool Synchronize()
    {
        const std::lock_guard storage(m_storageMutex);
        m_used = true;
        const Result result = SynchronizeOpen();
        const std::lock_guard lock(m_valuesMutex);
        m_state.lastFailure = result == Result::Done ? "" : m_failure;
        return result == Result::Done;
    }

    PreferenceState State()
    {
        const std::lock_guard lock(m_valuesMutex);
        return m_state;
    }

private:
    void EnsureRead()
    {
        std::call_once(m_firstRead, [this] { Synchronize(); });
    }

    /// The lookup of a name: this host first. With the values' mutex held.
    void Index(const std::u16string& name)
    {
        auto found = m_values.find({m_thisHost, name});
        if (found == m_values.end())
            found = m_values.find({kAnyHost, name});
        if (found != m_values.end())
            m_byName.insert_or_assign(name, found->second);
    }

    Result SynchronizeOpen()
    {
        Result result = OpenOnce();
        if (result == Result::Done)
            result = StoreAndRead();
        if (result != Result::Damaged)
            return result;
        PutAside();
        result = OpenOnce();
        return result == Result::Done ? StoreAndRead() : result;
    }

    Result OpenOnce()
    {
        if (m_process != getpid()) {
            m_database.Abandon();
            m_process = getpid();
        }
        if (m_database.IsOpen())
            return Result::Done;
        const std::string folder = MakeFolder();
        if (folder.empty()) {
            m_failure = "there is no folder for preferences";
            return Result::Failed;
        }
        const FolderLock alone(folder);
        const std::string path = folder + "/preferences.sqlite";
        const Result result = m_database.Open(path);
        if (result != Result::Done) {
            m_failure = m_database.Failure();
            m_database = PreferenceDatabase();
        }
        const std::lock_guard lock(m_valuesMutex);
        m_state.database = path;
        return result;
    }

    /// The application's folder, made when it is missing; "" when there can be none.
    std::string MakeFolder()
    {
        const std::string preferences = UserFolderPath(UserFolder::Preferences);
        if (preferences.empty())
            return {};
        std::string name;
        {
            const std::lock_guard lock(m_valuesMutex);
            name = m_applicationName.empty() ? ExecutableName() : m_applicationName;
        }
        std::string folder = preferences + '/' + (name == "." || name == ".." ? "_" : name);
        std::error_code error;
        std::filesystem::create_directories(preferences, error);
        if (::mkdir(folder.c_str(), 0700) != 0 && !std::filesystem::is_directory(folder, error))
            return {};
        return folder;
    }

    Result StoreAndRead()
    {
        PreferenceMap storing;
        {
            const std::lock_guard lock(m_valuesMutex);
            storing.swap(m_pending);
        }
        std::optional<PreferenceMap> read;
        Result result = storing.empty() ? Result::Done : m_database.Store(storing);
        const bool stored = result == Result::Done;
        if (stored)
            result = m_database.ReadIfChanged(read);
        if (result != Result::Done)
            m_failure = m_database.Failure();
        const std::lock_guard lock(m_valuesMutex);
        if (!stored)
            m_pending.merge(storing);  // what was written meanwhile is newer
        if (read)
            Replace(std::move(*read));
        return result;
    }

    /// Takes what the database holds; what is not stored yet lies over it. With the values' mutex held.
    void Replace(PreferenceMap read)
    {
        for (const auto& [key, value] : m_pending)
            read.insert_or_assign(key, value);
        m_values = std::move(read);
        m_byName.clear();
        for (const auto& [key, value] : m_values) {
            if (key.first == kAnyHost || key.first == m_thisHost)
                Index(key.second);
        }
    }

    /// Moves a damaged database out of the way, to a dated name; everything known here is stored again in the new one.
    void PutAside()
    {
        m_database = PreferenceDatabase();
        const std::lock_guard lock(m_valuesMutex);
        const std::string path = m_state.database;
        const FolderLock alone(path.substr(0, path.rfind('/')));
        PreferenceDatabase again;  // another process may have put it aside already
        std::optional<PreferenceMap> read;
        if (again.Open(path) == Result::Done && again.ReadIfChanged(read) == Result::Done)
            return;
        again = PreferenceDatabase();
        const std::string aside = DatedName(path);
        for (const char* const suffix : {"", "-wal", "-shm"}) {
            if (std::rename((path + suffix).c_str(), (aside + suffix).c_str()) == 0 && *suffix == '\0')
                m_state.damagedDatabase = aside;
        }
        for (const auto& [key, value] : m_values)
            m_pending.emplace(key, value);
    }

    const std::string m_thisHost = ThisHostScope();
    std::once_flag m_firstRead;

    std::mutex m_storageMutex;  // taken before the other one
    PreferenceDatabase m_database;
    pid_t m_process = getpid();
    std::string m_failure;
    bool m_used = false;

    std::mutex m_valuesMutex;
    std::string m_applicationName;
    PreferenceMap m_values;
    PreferenceMap m_pending;  // written, not stored yet
    std::unordered_map<std::u16string, PreferenceValue> m_byName;
    PreferenceState m_state;
};

Store& TheStore()
{
    static Store store;  // its destructor is the synchronisation at normal exit
    return store;
}

}  // namespace

std::optional<PreferenceValue> FindPreference(std::u16string_view name)
{
    return TheStore().Find(name);
}

void SetPreference(PreferenceScope scope, std::u16string_view name, PreferenceValue value)
{
    TheStore().Set(scope, name, std::move(value));
}

bool SynchronizePreferences()
{
    return TheStore().Synchronize();
}

PreferenceState GetPreferenceState()
{
    return TheStore().State();
}

void SetApplicationName(std::string_view name)
{
    TheStore().Name(name);
}

}  // namespace rk::platform
