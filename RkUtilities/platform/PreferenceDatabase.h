#pragma once

#include "RkUtilities/platform/PreferenceStore.h"

#include <array>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>

struct sqlite3;
struct sqlite3_stmt;

namespace rk::platform {

/// A value's place: its scope as text ("user" or "host <machine>") and its name.
using PreferenceKey = std::pair<std::string, std::u16string>;
using PreferenceMap = std::map<PreferenceKey, PreferenceValue>;

/// One open database file with the table `preferences` (scope, name, type, value). Not safe from two threads at once.
class PreferenceDatabase {
public:
    enum class Result {
        Done,
        Failed,
        Damaged,  ///< the file is no sound database
    };

    PreferenceDatabase() noexcept;
    ~PreferenceDatabase();
    PreferenceDatabase(PreferenceDatabase&& other) noexcept;
    PreferenceDatabase& operator=(PreferenceDatabase&& other) noexcept;

    /// Opens or makes the file (mode 0600).
    Result Open(const std::string& path);
    [[nodiscard]] bool IsOpen() const noexcept { return m_database != nullptr; }
    /// Whether the path still leads to the open file.
    [[nodiscard]] bool IsInPlace() const;
    /// Looks at every page of the file.
    Result Check();
    /// Forgets the file without touching it: a connection must not be carried across `fork`.
    void Abandon();

    /// Stores all values or none.
    Result Store(const PreferenceMap& values);
    /// Reads all values if another process has stored some since the last reading, else none.
    Result ReadIfChanged(std::optional<PreferenceMap>& values);
    /// Reads all values of a file that may not be written, in a folder that may not be written.
    Result ReadUnwritable(const std::string& path, std::optional<PreferenceMap>& values);
    /// Why the last call failed.
    [[nodiscard]] const std::string& Failure() const noexcept { return m_failure; }

private:
    struct Close {
        void operator()(sqlite3* database) const noexcept;
        void operator()(sqlite3_stmt* statement) const noexcept;
    };
    enum Command { Begin, Insert, Commit, Version, CommandCount };

    Result OpenWith(const std::string& path, int flags);
    Result Run(const char* statements);
    /// The compiled command, kept for the next time; null, and the code set, when it cannot be compiled.
    sqlite3_stmt* Compiled(Command command, int& code);
    /// Runs the command; the number in its first row goes to `number`. SQLITE_OK, or why it failed.
    int StepOnce(Command command, std::int64_t* number = nullptr);
    int InsertAll(const PreferenceMap& values);
    Result ReadAll(std::optional<PreferenceMap>& values);
    Result Judge(int code);

    std::unique_ptr<sqlite3, Close> m_database;
    std::array<std::unique_ptr<sqlite3_stmt, Close>, CommandCount> m_commands;
    std::string m_path;
    std::pair<std::uint64_t, std::uint64_t> m_file;  // device and inode
    std::int64_t m_readVersion = -1;                 // SQLite's data_version at the last reading
    // The same inside the last store, for the reading behind it: nobody else could store before that was committed.
    std::optional<std::int64_t> m_storeVersion;
    std::string m_failure;
};

}  // namespace rk::platform
