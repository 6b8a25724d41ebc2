#include "RkUtilities/platform/storage/PreferenceStore.h"

#include "RkUtilities/platform/files/FileCalls.h"
#include "RkUtilities/platform/storage/PreferenceDatabase.h"
#include "RkUtilities/platform/storage/PreferencePlace.h"

#include <atomic>
#include <ctime>
#include <fcntl.h>
#include <mutex>
#include <optional>
#include <pthread.h>
#include <unistd.h>
#include <utility>

namespace rk::platform {

namespace {

/// Two seconds at most: a handler of a crash may fork in a thread that holds the mutex.
bool LockForFork(std::mutex& mutex) noexcept
{
    timespec deadline{};
    clock_gettime(CLOCK_REALTIME, &deadline);
    deadline.tv_sec += 2;
    return pthread_mutex_timedlock(mutex.native_handle(), &deadline) == 0;
}
constinit thread_local bool isHeldForFork = false;

class Store {
public:
    void Find(std::u16string_view name, const std::function<void(const PreferenceView& value)>& use)
    {
        EnsureRead();
        m_values.Find(name, use);
    }

    void Set(PreferenceScope scope, std::u16string_view name, const PreferenceView& value)
    {
        EnsureRead();
        m_values.Set(scope, name, value);
        m_hasSet = true;
        if (m_isEnding)
            Synchronize();
    }

    bool Synchronize()
    {
        const std::lock_guard lock(m_mutex);
        return SynchronizeAlone();
    }

    StorageState State()
    {
        const std::lock_guard lock(m_mutex);
        return m_state;
    }

    /// The process ends. What is written after this is stored at once; a child that has used nothing does nothing.
    void End() noexcept
    {
        m_isEnding = true;
        if (!m_isUsed && !m_hasSet)
            return;
        try {
            const std::lock_guard lock(m_mutex);
            if (m_hasSet)
                SynchronizeAlone();
            Close();
        } catch (...) {  // without memory, what waits is not stored
        }
    }

    /// A connection that is open during a fork would count for the child too, which has none of its locks.
    void BeforeFork() noexcept
    {
        if (!LockForFork(m_mutex))
            return;
        Close();
        if (LockForFork(m_values.Mutex()))
            isHeldForFork = true;
        else
            m_mutex.unlock();
    }
    void AfterFork(bool isChild) noexcept
    {
        if (isChild)
            m_isUsed = m_hasSet = false;
        if (!std::exchange(isHeldForFork, false))
            return;
        m_values.Mutex().unlock();
        m_mutex.unlock();
    }

private:
    void EnsureRead()
    {
        if (m_isRead)
            return;
        const std::lock_guard lock(m_mutex);
        if (!m_isRead)
            SynchronizeAlone();
        m_isRead = true;
    }

    // What follows is called with the mutex held.

    bool SynchronizeAlone()
    {
        const FileSizeSignalGuard guard;
        m_isUsed = true;
        const StorageOutcome outcome = SynchronizeOpen();
        if (m_isEnding)
            Close();
        m_state.lastFailure = outcome.reason;
        return outcome.kind == StorageOutcome::Done;
    }

    StorageOutcome SynchronizeOpen()
    {
        constexpr int kMostTries = 3;  // a database that is put aside leaves two: to begin a new one, and to fill it
        StorageOutcome outcome;
        for (int tries = 0; tries < kMostTries; ++tries) {
            outcome = Open();
            bool isFinished = !m_isAnother;
            if (outcome.kind == StorageOutcome::Done)
                outcome = StoreAndRead();
            if (outcome.kind == StorageOutcome::Damaged) {
                outcome = PutAside();
                isFinished = false;
            }
            if (outcome.kind == StorageOutcome::Failed || isFinished)
                break;
        }
        if (m_database && !m_database->IsOpen() && faccessat(AT_FDCWD, m_place.folder.c_str(), W_OK, AT_EACCESS) != 0)
            static_cast<void>(m_database->ReadUnwritable(m_taker));
        return outcome;
    }

    StorageOutcome Open()
    {
        if (m_database && m_database->IsOpen())
            return {};
        StorageOutcome outcome = FindPreferencePlace(m_place);
        FileHandle alone;
        if (outcome.kind == StorageOutcome::Done)
            outcome = LockFolder(m_place.folder, alone);
        if (outcome.kind != StorageOutcome::Done)
            return outcome;
        m_isAnother |= m_database && !m_database->IsInPlace();
        m_state.database = m_place.database;
        m_database.emplace(m_place.database, m_place.hostId);
        return m_database->Open();
    }

    StorageOutcome StoreAndRead()
    {
        const PreferenceMap& storing = m_values.BeginStoring();
        StorageOutcome outcome = storing.empty() ? StorageOutcome() : m_database->Store(storing);
        if (!m_database->IsInPlace())  // what was stored is out of everybody's sight
            outcome = {StorageOutcome::Damaged, "the database has been moved"};
        m_values.EndStoring(outcome.kind == StorageOutcome::Done);
        if (outcome.kind == StorageOutcome::Damaged || !m_database->IsOpen())
            return outcome;
        const StorageOutcome reading = m_database->ReadIfChanged(m_taker);
        return outcome.kind == StorageOutcome::Done ? reading : outcome;
    }

    /// Moves a damaged database out of the way; everything known here is stored again in the new one.
    StorageOutcome PutAside()
    {
        if (m_database->IsOpen())
            static_cast<void>(m_database->ReadIfChanged(m_taker));  // what can still be read is known
        Close();
        m_isAnother = true;
        FileHandle alone;
        if (const StorageOutcome outcome = LockFolder(m_place.folder, alone); outcome.kind != StorageOutcome::Done)
            return outcome;
        PreferenceDatabase again(m_place.database, m_place.hostId);
        StorageOutcome found = again.Open();  // another process may have put it aside already
        if (found.kind == StorageOutcome::Done)
            found = again.Check();
        if (found.kind != StorageOutcome::Damaged)
            return {};
        again.Close();
        std::string aside = MoveAside(m_place.database);
        if (aside.empty())
            return {StorageOutcome::Failed, found.reason};
        m_state.damagedDatabase = std::move(aside);
        return {};
    }

    void Close() noexcept
    {
        if (m_database)
            m_database->Close();
    }

    std::mutex m_mutex;  // of what follows but for the values; taken before their mutex
    PreferencePlace m_place;
    std::optional<PreferenceDatabase> m_database;
    bool m_isAnother = false;  // the database is another one than the values came from
    const PreferenceDatabase::Taker m_taker = [this](PreferenceMap read) {
        m_values.Take(std::move(read), m_isAnother);
        m_isAnother = false;
    };
    StorageState m_state;

    PreferenceValues m_values;
    std::atomic<bool> m_isRead = false;
    std::atomic<bool> m_isUsed = false;  // this and the next: in this process, not in one that it was forked from
    std::atomic<bool> m_hasSet = false;
    std::atomic<bool> m_isEnding = false;
};

Store& TheStore()
{
    // Never destroyed, since other objects may still write while the process ends.
    static Store& store = *new Store;
    static const struct AtExit {
        ~AtExit() { store.End(); }
    } atExit;
    return store;
}

/// Made at load: no fork comes while it is being made.
[[maybe_unused]] const int isRegistered = [] {
    TheStore();
    return pthread_atfork([] { TheStore().BeforeFork(); }, [] { TheStore().AfterFork(/*isChild=*/false); },
                          [] { TheStore().AfterFork(/*isChild=*/true); });
}();

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

}  // namespace rk::platform
