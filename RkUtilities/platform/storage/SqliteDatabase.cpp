#include "RkUtilities/platform/storage/StorageServices.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <fcntl.h>
#include <iterator>
#include <optional>
#include <sqlite3.h>
#include <sys/stat.h>
#include <sys/vfs.h>
#include <unistd.h>
#include <vector>

namespace rk::platform {

namespace {

constexpr int kBusyMilliseconds = 10000;

// UTF-16 inside keeps any sequence of code units, lone surrogates and U+0000 included.
constexpr const char* kEncoding = "PRAGMA encoding = 'UTF-16le';";
// A journal written ahead needs one flush a transaction, but also memory that all who use the database share: where
// they may be on several machines, it is the older kind of journal.
//
// A flush behind a write that makes the journal longer takes half as long again as one behind a write over old pages:
// the journal begins at its start again after 128 pages, not after SQLite's 1000.
constexpr const char* kJournalOfOneMachine = "PRAGMA journal_mode = WAL; PRAGMA wal_autocheckpoint = 128;";
constexpr const char* kJournalOfSeveral = "PRAGMA journal_mode = TRUNCATE;";
// FULL waits for the disk, so that what is reported as stored survives a power cut.
constexpr const char* kTable = "PRAGMA synchronous = FULL;"
                               "CREATE TABLE IF NOT EXISTS preferences (scope TEXT NOT NULL, name TEXT NOT NULL,"
                               " type TEXT NOT NULL, value, PRIMARY KEY (scope, name)) WITHOUT ROWID;";

bool MayBeOnSeveralMachines(const std::string& path)
{
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
    struct statfs facts {};
    return statfs(path.c_str(), &facts) == 0 &&
           std::find(std::begin(kSharedFileSystems), std::end(kSharedFileSystems),
                     static_cast<std::uint32_t>(facts.f_type)) != std::end(kSharedFileSystems);
}

std::optional<std::pair<std::uint64_t, std::uint64_t>> FileAt(const std::string& path)
{
    struct stat facts {};
    if (stat(path.c_str(), &facts) != 0)
        return std::nullopt;
    return std::pair<std::uint64_t, std::uint64_t>(facts.st_dev, facts.st_ino);
}

/// A path as SQLite's URIs spell it.
std::string UriOf(const std::string& path)
{
    constexpr char kDigits[] = "0123456789ABCDEF";
    std::string uri = "file:";
    for (const char c : path) {
        const auto byte = static_cast<unsigned char>(c);
        if (c == '%' || c == '?' || c == '#')
            uri.append({'%', kDigits[byte / 16U], kDigits[byte % 16U]});
        else
            uri += c;
    }
    return uri;
}

constexpr const char* kBoolean = "boolean";
constexpr const char* kNumber = "number";
constexpr const char* kString = "string";

/// The texts of SqliteDatabase::Command.
constexpr const char* kCommands[] = {"BEGIN IMMEDIATE", "INSERT OR REPLACE INTO preferences VALUES (?1, ?2, ?3, ?4)",
                                     "COMMIT", "PRAGMA data_version"};

class Statement {
public:
    Statement(sqlite3* database, const char* text) noexcept
        : m_code(sqlite3_prepare_v2(database, text, -1, &m_statement, nullptr))
    {}
    ~Statement() { sqlite3_finalize(m_statement); }
    Statement(const Statement&) = delete;
    Statement& operator=(const Statement&) = delete;

    [[nodiscard]] int Step() noexcept { return m_code == SQLITE_OK ? sqlite3_step(m_statement) : m_code; }
    [[nodiscard]] sqlite3_stmt* Get() const noexcept { return m_statement; }

private:
    sqlite3_stmt* m_statement = nullptr;
    int m_code;
};

// These give SQLITE_OK, or why not: a value that is not bound would be stored as NULL.

int FirstFailure(int code, int nextCode)
{
    return code != SQLITE_OK ? code : nextCode;
}

int BindText(sqlite3_stmt* statement, int index, std::u16string_view text)
{
    return sqlite3_bind_text64(statement, index, reinterpret_cast<const char*>(text.empty() ? u"" : text.data()),
                               text.size() * sizeof(char16_t), SQLITE_STATIC, SQLITE_UTF16);
}

int BindValue(sqlite3_stmt* statement, int typeIndex, int valueIndex, const PreferenceValue& value)
{
    const auto bindType = [&](const char* type) {
        return sqlite3_bind_text(statement, typeIndex, type, -1, SQLITE_STATIC);
    };
    if (const auto* const boolean = std::get_if<bool>(&value))
        return FirstFailure(bindType(kBoolean), sqlite3_bind_int(statement, valueIndex, *boolean ? 1 : 0));
    if (const auto* const number = std::get_if<std::int64_t>(&value))
        return FirstFailure(bindType(kNumber), sqlite3_bind_int64(statement, valueIndex, *number));
    return FirstFailure(bindType(kString), BindText(statement, valueIndex, std::get<std::u16string>(value)));
}

/// The texts are the caller's, which keeps them until the row is written.
int Bind(sqlite3_stmt* statement, const PreferenceKey& key, const PreferenceValue& value)
{
    const int scope = sqlite3_bind_text(statement, 1, key.first.c_str(), -1, SQLITE_STATIC);
    return FirstFailure(scope, FirstFailure(BindText(statement, 2, key.second), BindValue(statement, 3, 4, value)));
}

std::u16string TextAt(sqlite3_stmt* statement, int column)
{
    const void* const units = sqlite3_column_text16(statement, column);
    const auto byteCount = static_cast<std::size_t>(sqlite3_column_bytes16(statement, column));
    return units != nullptr ? std::u16string(static_cast<const char16_t*>(units), byteCount / sizeof(char16_t))
                            : std::u16string();
}

std::string AsciiAt(sqlite3_stmt* statement, int column)
{
    const unsigned char* const text = sqlite3_column_text(statement, column);
    return text != nullptr ? reinterpret_cast<const char*>(text) : "";
}

/// The value of a row; none for a type that somebody else has written there.
std::optional<PreferenceValue> ValueAt(sqlite3_stmt* row)
{
    const std::string type = AsciiAt(row, 2);
    if (type == kBoolean)
        return sqlite3_column_int64(row, 3) != 0;
    if (type == kNumber)
        return std::int64_t{sqlite3_column_int64(row, 3)};
    if (type == kString)
        return TextAt(row, 3);
    return std::nullopt;
}

class SqliteDatabase final : public PreferenceDatabase {
public:
    Result Open(const std::string& path) override;
    void Close() override { *this = SqliteDatabase(); }
    [[nodiscard]] bool IsOpen() const noexcept override { return m_database != nullptr; }
    [[nodiscard]] bool IsInPlace() const override;
    Result Check() override;
    void Abandon() override;
    Result Store(const PreferenceMap& values) override;
    Result ReadIfChanged(std::optional<PreferenceMap>& values) override;
    Result ReadUnwritable(const std::string& path, std::optional<PreferenceMap>& values) override;
    [[nodiscard]] const std::string& Failure() const noexcept override { return m_failure; }

private:
    struct Closer {
        void operator()(sqlite3* database) const noexcept { sqlite3_close_v2(database); }
        void operator()(sqlite3_stmt* statement) const noexcept { sqlite3_finalize(statement); }
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

    std::unique_ptr<sqlite3, Closer> m_database;
    std::array<std::unique_ptr<sqlite3_stmt, Closer>, CommandCount> m_commands;
    std::string m_path;
    std::pair<std::uint64_t, std::uint64_t> m_file;  // device and inode
    std::int64_t m_readVersion = -1;                 // SQLite's data_version at the last reading
    // The same inside the last store, for the reading behind it: nobody else could store before that was committed.
    std::optional<std::int64_t> m_storeVersion;
    std::string m_failure;
};

PreferenceDatabase::Result SqliteDatabase::Open(const std::string& path)
{
    *this = SqliteDatabase();
    // Made here, so that it is never open to others; the files beside it take over its mode.
    const int descriptor = ::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600);
    if (descriptor >= 0)
        ::close(descriptor);
    m_path = path;
    if (const Result opened = OpenWith(path, SQLITE_OPEN_READWRITE); opened != Result::Done)
        return opened;
    m_file = FileAt(path).value_or(m_file);
    const char* const journal = MayBeOnSeveralMachines(path) ? kJournalOfSeveral : kJournalOfOneMachine;
    return Run((std::string(kEncoding) + journal + kTable).c_str());
}

PreferenceDatabase::Result SqliteDatabase::OpenWith(const std::string& path, int flags)
{
    sqlite3* database = nullptr;
    const int code = sqlite3_open_v2(path.c_str(), &database, flags | SQLITE_OPEN_FULLMUTEX, nullptr);
    m_database.reset(database);
    if (code != SQLITE_OK)
        return Judge(code);
    sqlite3_busy_timeout(database, kBusyMilliseconds);
    sqlite3_extended_result_codes(database, 0);
    return Result::Done;
}

bool SqliteDatabase::IsInPlace() const
{
    return FileAt(m_path) == m_file;
}

PreferenceDatabase::Result SqliteDatabase::Check()
{
    Statement check(m_database.get(), "PRAGMA quick_check(1)");
    if (const int code = check.Step(); code != SQLITE_ROW)
        return Judge(code);
    return AsciiAt(check.Get(), 0) == "ok" ? Result::Done : Judge(SQLITE_CORRUPT);
}

void SqliteDatabase::Abandon()
{
    static auto& abandoned = *new std::vector<SqliteDatabase>;  // what is still reachable counts as no leak
    if (m_database != nullptr)
        abandoned.push_back(std::exchange(*this, SqliteDatabase()));
}

sqlite3_stmt* SqliteDatabase::Compiled(Command command, int& code)
{
    auto& kept = m_commands[command];
    if (kept == nullptr) {
        sqlite3_stmt* statement = nullptr;
        code = sqlite3_prepare_v3(m_database.get(), kCommands[command], -1, SQLITE_PREPARE_PERSISTENT, &statement,
                                  nullptr);
        kept.reset(statement);
    }
    return kept.get();
}

int SqliteDatabase::StepOnce(Command command, std::int64_t* number)
{
    int code = SQLITE_OK;
    sqlite3_stmt* const statement = Compiled(command, code);
    if (statement == nullptr)
        return code;
    code = sqlite3_step(statement);
    if (code == SQLITE_ROW && number != nullptr)
        *number = sqlite3_column_int64(statement, 0);
    sqlite3_reset(statement);
    return code == SQLITE_ROW || code == SQLITE_DONE ? SQLITE_OK : code;
}

int SqliteDatabase::InsertAll(const PreferenceMap& values)
{
    int code = SQLITE_OK;
    sqlite3_stmt* const insert = Compiled(Insert, code);
    if (insert == nullptr)
        return code;
    for (auto value = values.begin(); value != values.end() && code == SQLITE_OK; ++value) {
        code = Bind(insert, value->first, value->second);
        if (code == SQLITE_OK)
            code = StepOnce(Insert);
    }
    sqlite3_clear_bindings(insert);
    return code;
}

PreferenceDatabase::Result SqliteDatabase::Store(const PreferenceMap& values)
{
    int code = StepOnce(Begin);
    if (code != SQLITE_OK)
        return Judge(code);
    std::int64_t version = 0;
    code = StepOnce(Version, &version);
    if (code == SQLITE_OK)
        code = InsertAll(values);
    if (code == SQLITE_OK)
        code = StepOnce(Commit);
    const Result result = Judge(code);
    if (result == Result::Done)
        m_storeVersion = version;
    else
        sqlite3_exec(m_database.get(), "ROLLBACK", nullptr, nullptr, nullptr);
    return result;
}

PreferenceDatabase::Result SqliteDatabase::ReadIfChanged(std::optional<PreferenceMap>& values)
{
    values.reset();
    std::int64_t current = 0;
    if (m_storeVersion)
        current = *std::exchange(m_storeVersion, std::nullopt);
    else if (const int code = StepOnce(Version, &current); code != SQLITE_OK)
        return Judge(code);
    if (current == m_readVersion)
        return Result::Done;
    const Result result = ReadAll(values);
    if (result == Result::Done)
        m_readVersion = current;
    return result;
}

PreferenceDatabase::Result SqliteDatabase::ReadUnwritable(const std::string& path, std::optional<PreferenceMap>& values)
{
    // Where there is no journal the file is all there is, and nothing needs to be made beside it.
    const char* const mode = access((path + "-wal").c_str(), F_OK) == 0 ? "?mode=ro" : "?immutable=1";
    const Result opened = OpenWith(UriOf(path) + mode, SQLITE_OPEN_READONLY | SQLITE_OPEN_URI);
    return opened == Result::Done ? ReadAll(values) : opened;
}

PreferenceDatabase::Result SqliteDatabase::ReadAll(std::optional<PreferenceMap>& values)
{
    PreferenceMap read;
    Statement rows(m_database.get(), "SELECT scope, name, type, value FROM preferences");
    int code = rows.Step();
    for (; code == SQLITE_ROW; code = rows.Step()) {
        if (std::optional<PreferenceValue> value = ValueAt(rows.Get()))
            read.insert_or_assign({AsciiAt(rows.Get(), 0), TextAt(rows.Get(), 1)}, std::move(*value));
    }
    if (code != SQLITE_DONE)
        return Judge(code);
    values = std::move(read);
    return Result::Done;
}

PreferenceDatabase::Result SqliteDatabase::Run(const char* statements)
{
    return Judge(sqlite3_exec(m_database.get(), statements, nullptr, nullptr, nullptr));
}

PreferenceDatabase::Result SqliteDatabase::Judge(int code)
{
    if (code == SQLITE_OK || code == SQLITE_DONE) {
        m_failure.clear();
        return Result::Done;
    }
    m_failure = m_database != nullptr ? sqlite3_errmsg(m_database.get()) : sqlite3_errstr(code);
    return code == SQLITE_CORRUPT || code == SQLITE_NOTADB ? Result::Damaged : Result::Failed;
}

std::unique_ptr<PreferenceDatabase> MakeDatabase()
{
    return std::make_unique<SqliteDatabase>();
}

constexpr StorageServices kServices{.database = &MakeDatabase};

}  // namespace

const StorageServices& Storage()
{
    return kServices;
}

}  // namespace rk::platform
