#include "RkUtilities/platform/storage/PreferenceStore.h"

#include "RkUtilities/platform/files/FileCalls.h"
#include "RkUtilities/platform/storage/PreferenceDatabase.h"
#include "RkUtilities/platform/storage/PreferencePlace.h"

#include <algorithm>
#include <atomic>
#include <memory>
#include <optional>
#include <utility>

namespace rk::platform {

namespace {

class Store {
public:
    void Find(std::u16string_view name, const std::function<void(const PreferenceValue& value)>& use) {
        EnsureRead();
        m_values.Find(name, use);
    }

    std::vector<std::u16string> Names() {
        EnsureRead();
        std::vector<std::u16string> names = m_values.Names();
        std::sort(names.begin(), names.end());
        return names;
    }

    void Set(PreferenceScope scope, std::u16string_view name, PreferenceValue&& value) {
        EnsureRead();
        m_values.Set(scope, name, std::move(value));
        m_hasSet = true;
        if (m_isEnding)
            Synchronize();
    }

    bool Synchronize() {
        const std::lock_guard lock(m_mutex);
        return SynchronizeAlone();
    }

    void Describe(std::string& database, std::string& lastFailure, std::string& damagedDatabase) {
        const std::lock_guard lock(m_mutex);
        database = m_database ? m_place.database : "";
        lastFailure = m_lastFailure;
        damagedDatabase = m_damagedDatabase;
    }

    /// The process ends. A later value is stored at once; a child that has set no preference stores nothing.
    void End() noexcept {
        m_isEnding = true;
        try {
            const std::lock_guard lock(m_mutex);
            if (m_hasSet)
                SynchronizeAlone();
            Close();
        } catch (...) {  // without memory the waiting values are lost
        }
    }

    /// The child of a fork has set nothing yet. Without the lock it stores nothing: a lost thread was inside SQLite.
    void BeginInChild(bool isHeld) noexcept {
        m_values.BeginInChild();
        m_hasSet = false;
        if (isHeld)
            return;
        std::construct_at(&m_mutex);
        m_cutShort = {StorageOutcome::Failed, "the process was forked while another thread stored"};
    }

    /// Called with the mutex held. A child would inherit a connection that is open during a fork, without its locks.
    void Close() noexcept {
        if (m_database && !m_cutShort)
            m_database->Close();
    }

private:
    void EnsureRead() {
        if (m_isRead)
            return;
        const std::lock_guard lock(m_mutex);
        if (!m_isRead)
            SynchronizeAlone();
        m_isRead = true;
    }

    // --- Called with the mutex held

    bool SynchronizeAlone() {
        const FileSizeSignalGuard guard;
        const StorageOutcome outcome = m_cutShort ? m_cutShort : SynchronizeOpen();
        if (m_isEnding)
            Close();
        m_lastFailure = outcome.reason;
        return !outcome;
    }

    StorageOutcome SynchronizeOpen() {
        constexpr int kMostTries = 3;  // putting a database aside leaves two: to begin a new file, and to fill it
        StorageOutcome outcome;
        for (int tries = 0; tries < kMostTries; ++tries) {
            outcome = Open();
            bool isFinished = !m_isAnother;
            if (!outcome)
                outcome = StoreAndRead();
            if (outcome.kind == StorageOutcome::Damaged) {
                outcome = PutAside();
                isFinished = false;
            }
            if (outcome.kind == StorageOutcome::Failed || isFinished)
                break;
        }
        if (m_database && !m_database->IsOpen() && outcome.kind == StorageOutcome::Failed)  // a full disk, say
            static_cast<void>(m_database->ReadUnwritable(m_taker));
        return outcome;
    }

    StorageOutcome Open() {
        if (m_database && m_database->IsOpen())
            return {};
        StorageOutcome outcome = FindPreferencePlace(m_place);
        FileHandle alone;
        if (!outcome)
            outcome = LockFolder(m_place.folder, alone);
        if (outcome)
            return outcome;
        m_isAnother |= m_database && !m_database->IsInPlace();
        m_database.emplace(m_place.database, m_place.hostId);
        return m_database->Open();
    }

    StorageOutcome StoreAndRead() {
        const PreferenceMap storing = m_values.BeginStoring();
        StorageOutcome outcome = storing.empty() ? StorageOutcome() : m_database->Store(storing);
        if (!m_database->IsInPlace())  // no process will see what was stored
            outcome = {StorageOutcome::Damaged, "the database has been moved"};
        m_values.EndStoring(!outcome);
        if (outcome.kind == StorageOutcome::Damaged || !m_database->IsOpen())
            return outcome;
        const StorageOutcome reading = m_database->ReadIfChanged(m_taker);
        return outcome ? outcome : reading;
    }

    /// Moves a damaged database out of the way; a new database gets all values known here.
    StorageOutcome PutAside() {
        if (m_database->IsOpen())
            static_cast<void>(m_database->ReadIfChanged(m_taker));  // what can still be read is known
        Close();
        m_isAnother = true;
        FileHandle alone;
        if (const StorageOutcome outcome = LockFolder(m_place.folder, alone))
            return outcome;
        PreferenceDatabase again(m_place.database, m_place.hostId);
        StorageOutcome found = again.Open();  // another process may have put it aside already
        if (!found)
            found = again.Check();
        if (found.kind != StorageOutcome::Damaged)
            return {};
        again.Close();
        std::string aside = MoveAside(m_place.database);
        if (aside.empty())
            return {StorageOutcome::Failed, found.reason};
        m_damagedDatabase = std::move(aside);
        return {};
    }

    std::mutex& m_mutex = MutexOf(Lock::Preferences);  // guards what follows, except the values
    PreferencePlace m_place;
    std::optional<PreferenceDatabase> m_database;
    bool m_isAnother = false;  // the values came from another database
    const PreferenceDatabase::Taker m_taker = [this](PreferenceMap read) {
        m_values.Take(std::move(read), m_isAnother);
        m_isAnother = false;
    };
    StorageOutcome m_cutShort;  // in a child forked inside a synchronisation: its copy of SQLite is unusable
    std::string m_lastFailure;
    std::string m_damagedDatabase;

    PreferenceValues m_values;
    std::atomic<bool> m_isRead = false;
    std::atomic<bool> m_hasSet = false;  // by this process, not by the parent that forked it
    std::atomic<bool> m_isEnding = false;
};

Store& TheStore() {
    // Never destroyed, since other objects may still write while the process ends.
    static Store& store = *new Store;
    static const struct AtExit {
        ~AtExit() { store.End(); }
    } atExit;
    return store;
}

/// Makes the store when the library is loaded, so that no fork comes meanwhile.
[[maybe_unused]] const bool isRegistered = [] {
    TheStore();
    CallAtForks(Lock::Preferences, {.before = []() noexcept { TheStore().Close(); },
                                    .inChild = [](bool isHeld) noexcept { TheStore().BeginInChild(isHeld); }});
    return true;
}();

}  // namespace

void FindPreference(std::u16string_view name, const std::function<void(const PreferenceValue& value)>& use) {
    TheStore().Find(name, use);
}

std::vector<std::u16string> PreferenceNames() { return TheStore().Names(); }

void SetPreference(PreferenceScope scope, std::u16string_view name, PreferenceValue value) {
    TheStore().Set(scope, name, std::move(value));
}

bool SynchronizePreferences() { return TheStore().Synchronize(); }

void DescribeStorage(std::string& database, std::string& lastFailure, std::string& damagedDatabase) {
    TheStore().Describe(database, lastFailure, damagedDatabase);
}

}  // namespace rk::platform
