#include "RkUtilities/platform/storage/PreferenceStore.h"

#include "RkUtilities/platform/files/FileCalls.h"
#include "RkUtilities/platform/files/FreeNames.h"
#include "RkUtilities/platform/files/UserFolders.h"
#include "RkUtilities/platform/storage/StorageServices.h"

#include <algorithm>
#include <atomic>
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

/// A name beside `path` that tells the date and is free.
std::string DatedName(const std::string& path)
{
    const std::time_t now = std::time(nullptr);
    std::tm fields{};
    localtime_r(&now, &fields);
    char date[32];
    const std::size_t length = std::strftime(date, sizeof date, "-damaged-%Y%m%d-%H%M%S", &fields);
    const std::size_t nameStart = path.rfind('/') + 1;
    const NumberedName name{path.substr(nameStart) + std::string(date, length), ""};
    const std::string folder = path.substr(0, nameStart);
    std::error_code ignored;  // then the name that cannot be looked at is not taken either
    return folder + name.WithNumber(FirstFreeNumber(folder, name, TakenBy::Anything, ignored));
}

/// Keeps other processes from putting the same database aside, or opening it meanwhile.
FileHandle LockFolder(const std::string& folder)
{
    FileHandle handle(Uninterrupted([&] { return ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC); }));
    if (handle)
        static_cast<void>(Uninterrupted([&] { return flock(handle.Descriptor(), LOCK_EX); }));
    return handle;
}

PreferenceView ViewOf(const PreferenceValue& value)
{
    return std::visit([](const auto& held) { return PreferenceView(held); }, value);
}

PreferenceValue Owned(const PreferenceView& value)
{
    if (const auto* const text = std::get_if<std::u16string_view>(&value))
        return std::u16string(*text);
    if (const auto* const number = std::get_if<std::int64_t>(&value))
        return *number;
    return std::get<bool>(value);
}

/// A text takes the place of a text without a new allocation where it fits.
void Assign(PreferenceValue& target, const PreferenceView& value)
{
    auto* const old = std::get_if<std::u16string>(&target);
    const auto* const text = std::get_if<std::u16string_view>(&value);
    if (old != nullptr && text != nullptr)
        old->assign(*text);
    else
        target = Owned(value);
}

class Store {
public:
    /// The process ends. Who writes after this is stored at once.
    void End()
    {
        m_isEnding = true;
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

    void Find(std::u16string_view name, const std::function<void(const PreferenceView& value)>& use)
    {
        EnsureRead();
        const std::lock_guard lock(m_valuesMutex);
        if (const auto found = m_byName.find(name); found != m_byName.end())
            use(ViewOf(found->second.value));
    }

    void Set(PreferenceScope scope, std::u16string_view name, const PreferenceView& value)
    {
        EnsureRead();
        {
            const std::lock_guard lock(m_valuesMutex);
            LetWait(scope, name, Index(scope, name, value), value);
        }
        if (m_isEnding)
            Synchronize();
    }

    bool Synchronize()
    {
        const StorageServices& services = Storage();  // before a lock is held
        const std::lock_guard storage(m_storageMutex);
        const FileSizeSignalGuard guard;
        if (m_database == nullptr)
            m_database = services.database();
        m_used = true;
        const Result result = SynchronizeOpen();
        if (m_isEnding)
            m_database->Close();
        const std::lock_guard lock(m_valuesMutex);
        m_state.lastFailure = result == Result::Done ? "" : m_failure;
        return result == Result::Done;
    }

    StorageState State()
    {
        const std::lock_guard lock(m_valuesMutex);
        return m_state;
    }

private:
    void EnsureRead()
    {
        if (m_isRead.load(std::memory_order_acquire))
            return;
        Storage();  // before others may wait for the first reading
        std::call_once(m_firstRead, [this] {
            Synchronize();
            m_isRead.store(true, std::memory_order_release);
        });
    }

    /// What a name gives: this host's value before that of all hosts.
    struct Named {
        PreferenceValue value;
        PreferenceScope scope;
        PreferenceValue* waiting = nullptr;  // for all hosts, in m_pending
        std::uint64_t waitingRound = 0;      // the pointer's worth ends with the round
    };
    struct NameHash {
        using is_transparent = void;
        std::size_t operator()(std::u16string_view name) const noexcept
        {
            return std::hash<std::u16string_view>()(name);
        }
    };

    /// With the values' mutex held.
    Named& Index(PreferenceScope scope, std::u16string_view name, const PreferenceView& value)
    {
        const auto found = m_byName.find(name);
        if (found == m_byName.end())
            return m_byName.emplace(name, Named{Owned(value), scope}).first->second;
        Named& named = found->second;
        if (scope == PreferenceScope::ThisHost || named.scope == PreferenceScope::AnyHost) {
            Assign(named.value, value);
            named.scope = scope;
        }
        return named;
    }
    void Index(const PreferenceMap& values)
    {
        for (const auto& [key, value] : values) {
            if (key.first == kAnyHost)
                Index(PreferenceScope::AnyHost, key.second, ViewOf(value));
            else if (key.first == m_thisHost)
                Index(PreferenceScope::ThisHost, key.second, ViewOf(value));
        }
    }

    /// Lets a value wait for the next synchronisation. With the values' mutex held.
    void LetWait(PreferenceScope scope, std::u16string_view name, Named& named, const PreferenceView& value)
    {
        if (scope == PreferenceScope::ThisHost) {
            m_pending.insert_or_assign(PreferenceKey(m_thisHost, name), Owned(value));
        } else if (named.waiting != nullptr && named.waitingRound == m_round) {
            Assign(*named.waiting, value);  // set again and again, it costs neither a search nor memory
        } else {
            named.waiting = &m_pending.insert_or_assign(PreferenceKey(kAnyHost, name), Owned(value)).first->second;
            named.waitingRound = m_round;
        }
    }

    Result SynchronizeOpen()
    {
        constexpr int kMostTries = 3;  // a database that is put aside leaves two: to begin a new one, and to fill it
        Result result = Result::Failed;
        for (int tries = 0; tries < kMostTries; ++tries) {
            result = OpenOnce();
            if (result == Result::Done)
                result = StoreAndRead();
            if (result == Result::Damaged)
                PutAside();
            else if (result == Result::Failed || !m_hasMoreToStore)
                break;
        }
        std::optional<PreferenceMap> read;
        if (!m_database->IsOpen() && !m_path.empty() &&
            Storage().database()->ReadUnwritable(m_path, read) == Result::Done) {
            const std::lock_guard lock(m_valuesMutex);
            Replace(std::move(*read));
        }
        return result;
    }

    Result OpenOnce()
    {
        if (m_process != getpid()) {
            m_database->Abandon();
            m_process = getpid();
        }
        if (m_database->IsOpen())
            return Result::Done;
        const std::string folder = MakeFolder();
        if (folder.empty()) {
            m_failure = "there is no folder for preferences";
            return Result::Failed;
        }
        const FileHandle alone = LockFolder(folder);
        m_path = folder + "/preferences.sqlite";
        const Result result = m_database->Open(m_path);
        if (result != Result::Done) {
            m_failure = m_database->Failure();
            m_database->Close();
        }
        const std::lock_guard lock(m_valuesMutex);
        m_state.database = m_path;
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
            ++m_round;
        }
        Result result = storing.empty() ? Result::Done : m_database->Store(storing);
        m_failure = m_database->Failure();
        if (!m_database->IsInPlace())
            result = Result::Damaged;  // what was stored is out of everybody's sight
        const bool stored = result == Result::Done;
        std::optional<PreferenceMap> read;
        if (const Result reading = result == Result::Damaged ? result : m_database->ReadIfChanged(read);
            stored && reading != Result::Done) {
            m_failure = m_database->Failure();
            result = reading;
        }
        const std::lock_guard lock(m_valuesMutex);
        m_hasMoreToStore = false;
        if (stored)
            Keep(std::move(storing));
        else
            m_pending.merge(storing);  // what was written meanwhile is newer
        if (read)
            Replace(std::move(*read));
        return result;
    }

    /// Remembers what has been stored. With the values' mutex held.
    void Keep(PreferenceMap stored)
    {
        for (auto& [key, value] : stored)
            m_stored.insert_or_assign(key, std::move(value));
    }

    /// Takes what the database holds; what is not stored yet lies over it. With the values' mutex held.
    void Replace(PreferenceMap read)
    {
        if (m_isBegunAnew) {  // what the process knows and the new database does not
            for (const auto& [key, value] : m_stored)
                m_hasMoreToStore |= read.find(key) == read.end() && m_pending.emplace(key, value).second;
            m_isBegunAnew = false;
        }
        m_stored = std::move(read);
        m_byName.clear();
        Index(m_stored);
        Index(m_pending);
    }

    /// Moves a damaged database out of the way, to a dated name; everything known here is stored again in the new one.
    void PutAside()
    {
        m_database->Close();
        m_isBegunAnew = true;
        const FileHandle alone = LockFolder(m_path.substr(0, m_path.rfind('/')));
        const std::unique_ptr<PreferenceDatabase> again =
            Storage().database();  // another process may have put it aside already
        Result found = again->Open(m_path);
        if (found == Result::Done)
            found = again->Check();
        again->Close();
        if (found != Result::Damaged)
            return;
        const std::string aside = DatedName(m_path);
        for (const char* const suffix : {"", "-wal", "-shm", "-journal"}) {
            if (std::rename((m_path + suffix).c_str(), (aside + suffix).c_str()) == 0 && *suffix == '\0') {
                const std::lock_guard lock(m_valuesMutex);
                m_state.damagedDatabase = aside;
            }
        }
    }

    const std::string m_thisHost = ThisHostScope();
    std::once_flag m_firstRead;
    std::atomic<bool> m_isRead = false;

    std::mutex m_storageMutex;                       // taken before the other one
    std::unique_ptr<PreferenceDatabase> m_database;  // not null from the first synchronisation on
    std::string m_path;
    bool m_isBegunAnew = false;  // the database is another one than the values here came from
    bool m_hasMoreToStore = false;
    pid_t m_process = getpid();
    std::string m_failure;
    bool m_used = false;
    std::atomic<bool> m_isEnding = false;

    std::mutex m_valuesMutex;
    std::string m_applicationName;
    PreferenceMap m_stored;     // in the database, when it was last read or written
    PreferenceMap m_pending;    // written, not stored yet
    std::uint64_t m_round = 0;  // counts how often m_pending was taken away
    std::unordered_map<std::u16string, Named, NameHash, std::equal_to<>> m_byName;
    StorageState m_state;
};

Store& TheStore()
{
    // Never destroyed, since other objects may still write while the process ends.
    static Store& store = *new Store;
    static struct AtExit {
        ~AtExit() { store.End(); }
    } atExit;
    return store;
}

}  // namespace

void FindPreference(std::u16string_view name, const std::function<void(const PreferenceView& value)>& use)
{
    TheStore().Find(name, use);
}

void SetPreference(PreferenceScope scope, std::u16string_view name, const PreferenceView& value)
{
    TheStore().Set(scope, name, value);
}

bool SynchronizePreferences()
{
    return TheStore().Synchronize();
}

StorageState GetStorageState()
{
    return TheStore().State();
}

void NameApplication(std::string_view name)
{
    TheStore().Name(name);
}

}  // namespace rk::platform
