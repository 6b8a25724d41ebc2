#include "RkUtilities/platform/storage/PreferenceDatabase.h"

#include "RkUtilities/platform/files/FileFacts.h"

#include <algorithm>
#include <chrono>
#include <fcntl.h>
#include <iterator>
#include <sys/stat.h>
#include <sys/vfs.h>
#include <unistd.h>

namespace rk::platform {

namespace {

/// Waits for another process, two seconds from the first try on; SQLite alone tries ten times a second only.
int WaitForOthers(void* patience, int tries) {
    auto& waiting = *static_cast<Patience*>(patience);
    if (tries == 0)
        waiting = Patience(std::chrono::seconds(2));
    return waiting.Sleep() ? 1 : 0;
}

/// UTF-16 inside keeps any sequence of code units, lone surrogates and U+0000 included.
constexpr const char* kEncoding = "PRAGMA encoding = 'UTF-16le';";
/// A write-ahead journal needs one flush a transaction, but its users share memory: a database whose users may be on
/// several machines has the older kind of journal. A flush after a write that makes the journal longer takes half as
/// long again as a flush after a write over old pages, so the journal starts over after 128 pages (SQLite: 1000).
constexpr const char* kJournalOfOneMachine = "PRAGMA journal_mode = WAL; PRAGMA wal_autocheckpoint = 128;";
constexpr const char* kJournalOfSeveral = "PRAGMA journal_mode = TRUNCATE;";
/// FULL waits for the disk, so that values that are reported as stored survive a power cut.
constexpr const char* kTable = "PRAGMA synchronous = FULL;"
                               "CREATE TABLE IF NOT EXISTS preferences (scope TEXT NOT NULL, name TEXT NOT NULL,"
                               " type TEXT NOT NULL, value, PRIMARY KEY (scope, name)) WITHOUT ROWID;";

bool MayBeOnSeveralMachines(const std::string& path) {
    constexpr std::uint32_t kSharedFileSystems[] = {
        0x6969,      // NFS
        0x517B,      // SMB
        0xFF534D42,  // CIFS
        0xFE534D42,  // SMB 2 and 3
        0x5346414F,  // AFS
        0x00C36400,  // Ceph
        0x01021997,  // 9P
        0x65735546,  // FUSE, which sshfs and others use
    };
    struct statfs facts{};
    return statfs(path.c_str(), &facts) == 0 &&
           std::find(std::begin(kSharedFileSystems), std::end(kSharedFileSystems),
                     static_cast<std::uint32_t>(facts.f_type)) != std::end(kSharedFileSystems);
}

/// A path as SQLite's URIs spell it.
std::string UriOf(const std::string& path) {
    std::string uri = "file:";
    for (const char character : path) {
        const auto byte = static_cast<unsigned char>(character);
        uri.append({'%', "0123456789ABCDEF"[byte >> 4], "0123456789ABCDEF"[byte & 0xF]});
    }
    return uri;
}

/// The texts of PreferenceDatabase::Command.
constexpr const char* kCommands[] = {"BEGIN IMMEDIATE",
                                     "INSERT OR REPLACE INTO preferences VALUES (?1, ?2, ?3, ?4)",
                                     "COMMIT",
                                     "SELECT scope, name, type, value FROM preferences",
                                     "PRAGMA data_version",
                                     "PRAGMA quick_check(1)"};

/// The types by the index of PreferenceValue.
constexpr const char* kTypes[] = {"boolean", "number", "string", "deleted"};

/// Makes a statement ready to run again.
struct Resetter {
    void operator()(sqlite3_stmt* statement) const noexcept {
        sqlite3_reset(statement);
        sqlite3_clear_bindings(statement);
        sqlite3_stmt_status(statement, SQLITE_STMTSTATUS_VM_STEP, 1);  // each run may take kMostSteps
    }
};
using Running = std::unique_ptr<sqlite3_stmt, Resetter>;

// The caller keeps a text that is bound in place until the row is written.

/// A text that begins with U+FEFF or U+FFFE goes in as bytes in the database's order, which read as the text again:
/// SQLite would take the unit for a byte-order mark.
int BindText(sqlite3_stmt* statement, int index, std::u16string_view text) {
    const std::size_t byteCount = text.size() * sizeof(char16_t);
    if (!text.starts_with(u'\xFEFF') && !text.starts_with(u'\xFFFE')) {
        const auto* const bytes = reinterpret_cast<const char*>(text.empty() ? u"" : text.data());
        return sqlite3_bind_text64(statement, index, bytes, byteCount, SQLITE_STATIC, SQLITE_UTF16);
    }
    auto* const bytes = static_cast<unsigned char*>(sqlite3_malloc64(byteCount));
    if (bytes == nullptr)
        return SQLITE_NOMEM;
    for (std::size_t i = 0; i < byteCount; ++i)
        bytes[i] = static_cast<unsigned char>((text[i / 2] >> (i % 2 * 8)) & 0xFFU);
    return sqlite3_bind_blob64(statement, index, bytes, byteCount, sqlite3_free);
}

int BindValue(sqlite3_stmt* statement, int index, const PreferenceValue& value) {
    if (const auto* const text = std::get_if<std::u16string>(&value))
        return BindText(statement, index, *text);
    if (std::holds_alternative<std::monostate>(value))
        return sqlite3_bind_null(statement, index);
    const auto* const number = std::get_if<std::int64_t>(&value);
    return sqlite3_bind_int64(statement, index, number != nullptr ? *number : std::int64_t{std::get<bool>(value)});
}

std::u16string TextAt(sqlite3_stmt* statement, int column) {
    const void* const units = sqlite3_column_text16(statement, column);
    const auto byteCount = static_cast<std::size_t>(sqlite3_column_bytes16(statement, column));
    return units != nullptr ? std::u16string(static_cast<const char16_t*>(units), byteCount / sizeof(char16_t))
                            : std::u16string();
}

std::string AsciiAt(sqlite3_stmt* statement, int column) {
    const unsigned char* const text = sqlite3_column_text(statement, column);
    return text != nullptr ? reinterpret_cast<const char*>(text) : "";
}

/// The value of a row; nullopt for a deleted value and a type that another program has written there.
std::optional<PreferenceValue> ValueAt(sqlite3_stmt* row) {
    const std::string type = AsciiAt(row, 2);
    if (type == kTypes[0])
        return sqlite3_column_int64(row, 3) != 0;
    if (type == kTypes[1])
        return std::int64_t{sqlite3_column_int64(row, 3)};
    if (type == kTypes[2])
        return TextAt(row, 3);
    return std::nullopt;
}

/// The steps that a statement may take. No sound database needs nearly as many: a longer statement never ends.
constexpr int kMostSteps = 50'000'000;

/// The codes that tell of a file which is no sound database of preferences.
constexpr int kDamage[] = {SQLITE_ERROR,  SQLITE_INTERRUPT,  SQLITE_CORRUPT,
                           SQLITE_NOTADB, SQLITE_CONSTRAINT, SQLITE_MISMATCH};

/// The parts of a database that would run by themselves.
constexpr int kForbidden[] = {SQLITE_DBCONFIG_ENABLE_TRIGGER, SQLITE_DBCONFIG_ENABLE_VIEW,
                              SQLITE_DBCONFIG_TRUSTED_SCHEMA};

}  // namespace

PreferenceDatabase::PreferenceDatabase(std::string path, const std::string& hostId)
    : m_path(std::move(path)), m_thisHost(std::string(kThisHostScope) + ' ' + hostId) {}

StorageOutcome PreferenceDatabase::Open() {
    // The file is made here, so that it is never open to other users; SQLite's files beside it take over its mode.
    static_cast<void>(OpenAt(PlaceOf(m_path), O_RDWR | O_CREAT | O_NOFOLLOW | O_NONBLOCK, S_IRUSR | S_IWUSR));
    if (KindOf(m_path).value_or(FileKind::File) != FileKind::File)
        return {StorageOutcome::Damaged, "the database is no file"};
    StorageOutcome outcome = OpenWith(m_path, SQLITE_OPEN_READWRITE);
    m_file = IdentityAt(m_path);
    const char* const journal = MayBeOnSeveralMachines(m_path) ? kJournalOfSeveral : kJournalOfOneMachine;
    for (const char* const statements : {kEncoding, journal, kTable}) {
        if (!outcome)
            outcome = Judge(sqlite3_exec(m_database.get(), statements, nullptr, nullptr, nullptr));
    }
    if (outcome)
        Close();
    return outcome;
}

StorageOutcome PreferenceDatabase::OpenWith(const std::string& path, int flags) noexcept {
    sqlite3* database = nullptr;
    const int code = sqlite3_open_v2(path.c_str(), &database, flags | SQLITE_OPEN_FULLMUTEX, nullptr);
    m_database.reset(database);
    if (code != SQLITE_OK)
        return Judge(code);
    sqlite3_busy_handler(database, &WaitForOthers, &m_patience);
    const auto end = [](void*) { return 1; };
    sqlite3_progress_handler(database, kMostSteps, end, nullptr);
    for (const int forbidden : kForbidden)
        sqlite3_db_config(database, forbidden, 0, nullptr);
    return {};
}

void PreferenceDatabase::Close() noexcept {
    for (auto& command : m_commands)
        command.reset();
    m_database.reset();
    m_takenVersion = -1;
}

bool PreferenceDatabase::IsInPlace() const noexcept { return m_file && IdentityAt(m_path) == m_file; }

StorageOutcome PreferenceDatabase::Check() {
    PreferenceMap read;
    const StorageOutcome outcome =
        Judge(FirstFailure([&] { return Run(Begin); }, [&] { return InsertAll({{{"", u""}, true}}); },
                           [&] { return CheckPages(); }, [&] { return ReadAll(read); }));
    Rollback();
    return outcome;
}

StorageOutcome PreferenceDatabase::Store(const PreferenceMap& values) noexcept {
    const StorageOutcome outcome =
        Judge(FirstFailure([&] { return Run(Begin); }, [&] { return InsertAll(values); }, [&] { return Run(Commit); }));
    if (outcome)
        Rollback();
    return outcome;
}

/// Rolling back may need memory; without it the transaction, and its lock, end with the connection.
void PreferenceDatabase::Rollback() noexcept {
    sqlite3_exec(m_database.get(), "ROLLBACK", nullptr, nullptr, nullptr);
    if (sqlite3_get_autocommit(m_database.get()) == 0)
        Close();
}

StorageOutcome PreferenceDatabase::ReadIfChanged(const Taker& take) {
    std::int64_t version = 0;
    PreferenceMap read;
    int code = Run(Version, &version);
    if (code == SQLITE_OK && version == m_takenVersion)
        return {};
    if (code == SQLITE_OK)
        code = ReadAll(read);
    if (code == SQLITE_OK) {
        take(std::move(read));
        m_takenVersion = version;  // last, so that values that could not be taken are read again
    }
    return Judge(code);
}

StorageOutcome PreferenceDatabase::ReadUnwritable(const Taker& take) {
    // With an empty journal the file holds all values, and SQLite needs to make no file beside it.
    struct stat journal{};
    const bool hasJournal = stat((m_path + "-wal").c_str(), &journal) == 0 && journal.st_size > 0;
    const char* const mode = hasJournal ? "?mode=ro" : "?immutable=1";
    StorageOutcome outcome = OpenWith(UriOf(m_path) + mode, SQLITE_OPEN_READONLY | SQLITE_OPEN_URI);
    if (!outcome)
        outcome = ReadIfChanged(take);
    Close();
    return outcome;
}

int PreferenceDatabase::Compile(Command command) noexcept {
    sqlite3_stmt* statement = nullptr;
    if (m_commands[command] != nullptr)
        return SQLITE_OK;
    const int code =
        sqlite3_prepare_v3(m_database.get(), kCommands[command], -1, SQLITE_PREPARE_PERSISTENT, &statement, nullptr);
    m_commands[command].reset(statement);
    return code;
}

/// The number in the command's first row goes to `number`.
int PreferenceDatabase::Run(Command command, std::int64_t* number) noexcept {
    if (const int code = Compile(command); code != SQLITE_OK)
        return code;
    const Running statement(m_commands[command].get());
    const int code = sqlite3_step(statement.get());
    if (code == SQLITE_ROW && number != nullptr)
        *number = sqlite3_column_int64(statement.get(), 0);
    return code == SQLITE_ROW || code == SQLITE_DONE ? SQLITE_OK : code;
}

// NOLINTNEXTLINE(bugprone-exception-escape): no value of a map is without one of its types
int PreferenceDatabase::InsertAll(const PreferenceMap& values) noexcept {
    int code = Compile(Insert);
    for (auto row = values.begin(); row != values.end() && code == SQLITE_OK; ++row) {
        const auto& [scope, name] = row->first;
        const char* const scopeText = (scope == kThisHostScope ? m_thisHost : scope).c_str();
        const Running insert(m_commands[Insert].get());
        code =
            std::max({sqlite3_bind_text(insert.get(), 1, scopeText, -1, SQLITE_STATIC), BindText(insert.get(), 2, name),
                      sqlite3_bind_text(insert.get(), 3, kTypes[row->second.index()], -1, SQLITE_STATIC),
                      BindValue(insert.get(), 4, row->second)});  // SQLITE_OK is 0
        if (code == SQLITE_OK)
            code = sqlite3_step(insert.get());
        if (code == SQLITE_DONE)
            code = SQLITE_OK;
    }
    return code;
}

int PreferenceDatabase::CheckPages() noexcept {
    if (const int code = Compile(QuickCheck); code != SQLITE_OK)
        return code;
    const Running check(m_commands[QuickCheck].get());
    if (const int code = sqlite3_step(check.get()); code != SQLITE_ROW)
        return code;
    const unsigned char* const found = sqlite3_column_text(check.get(), 0);
    if (found == nullptr)
        return SQLITE_NOMEM;
    return std::string_view(reinterpret_cast<const char*>(found)) == "ok" ? SQLITE_OK : SQLITE_CORRUPT;
}

int PreferenceDatabase::ReadAll(PreferenceMap& values) {
    if (const int code = Compile(Select); code != SQLITE_OK)
        return code;
    const Running rows(m_commands[Select].get());
    int code = SQLITE_OK;
    while ((code = sqlite3_step(rows.get())) == SQLITE_ROW) {
        std::string scope = AsciiAt(rows.get(), 0);
        if (scope == m_thisHost)
            scope = kThisHostScope;
        if (std::optional<PreferenceValue> value = ValueAt(rows.get()))
            values.insert_or_assign({std::move(scope), TextAt(rows.get(), 1)}, std::move(*value));
    }
    return code == SQLITE_DONE ? SQLITE_OK : code;  // SQLITE_NOMEM also when a column's text could not be made
}

StorageOutcome PreferenceDatabase::Judge(int code) const noexcept {
    if (code == SQLITE_OK)
        return {};
    // SQLite never writes to a file that says that only later versions may write, whatever the permissions.
    const bool saysItIsReadOnly = code == SQLITE_READONLY &&
                                  sqlite3_extended_errcode(m_database.get()) == SQLITE_READONLY &&
                                  faccessat(AT_FDCWD, m_path.c_str(), W_OK, AT_EACCESS) == 0;
    const bool isDamage =
        saysItIsReadOnly || std::find(std::begin(kDamage), std::end(kDamage), code) != std::end(kDamage);
    return {isDamage ? StorageOutcome::Damaged : StorageOutcome::Failed, sqlite3_errstr(code)};
}

}  // namespace rk::platform
