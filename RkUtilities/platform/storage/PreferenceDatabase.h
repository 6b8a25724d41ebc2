#pragma once

#include "RkUtilities/platform/files/FileCalls.h"
#include "RkUtilities/platform/process/Patience.h"
#include "RkUtilities/platform/storage/PreferenceValues.h"
#include "RkUtilities/platform/storage/StorageOutcome.h"

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <sqlite3.h>
#include <string>

namespace rk::platform {

/// One SQLite database with the table `preferences` (scope, name, type, value). Not safe from two threads at once.
/// After each call the database is closed or in no transaction.
class PreferenceDatabase {
public:
    using Taker = std::function<void(PreferenceMap read)>;

    /// Opens nothing yet. `hostId` tells this host's values from those of others.
    PreferenceDatabase(std::string path, const std::string& hostId);

    StorageOutcome Open();  ///< Opens or makes the file (mode 0600).
    void Close() noexcept;
    [[nodiscard]] bool IsOpen() const noexcept { return m_database != nullptr; }
    /// Whether the path still leads to the file that was opened last.
    [[nodiscard]] bool IsInPlace() const noexcept;
    StorageOutcome Check();  ///< Looks at every page of the file, reads it, and tries to write.

    StorageOutcome Store(const PreferenceMap& values) noexcept;  ///< Stores all values, or after a failure no value.
    /// Gives all values to `take` if another process has stored a value since the last taking.
    StorageOutcome ReadIfChanged(const Taker& take);
    /// Opens the database for this call alone and gives all values to `take`, where nothing can be written.
    StorageOutcome ReadUnwritable(const Taker& take);

private:
    struct Closer {
        void operator()(sqlite3* database) const noexcept { sqlite3_close_v2(database); }
        void operator()(sqlite3_stmt* statement) const noexcept { sqlite3_finalize(statement); }
    };
    enum Command : unsigned char { Begin, Insert, Commit, Select, Version, QuickCheck, CommandCount };

    StorageOutcome OpenWith(const std::string& path, int flags) noexcept;
    [[nodiscard]] StorageOutcome Judge(int code) const noexcept;
    void Rollback() noexcept;
    // These give SQLITE_OK, or the code of the failure.
    int Compile(Command command) noexcept;
    int Run(Command command, std::int64_t* number = nullptr) noexcept;
    int InsertAll(const PreferenceMap& values) noexcept;
    int CheckPages() noexcept;
    int ReadAll(PreferenceMap& values);

    const std::string m_path;
    const std::string m_thisHost;        // the scope as the database spells it
    std::optional<FileIdentity> m_file;  // the file that was opened last
    Patience m_patience{{}};
    std::unique_ptr<sqlite3, Closer> m_database;
    std::array<std::unique_ptr<sqlite3_stmt, Closer>, CommandCount> m_commands;  // compiled when they are first needed
    std::int64_t m_takenVersion = -1;  // SQLite's data_version when the values were last taken
};

}  // namespace rk::platform
