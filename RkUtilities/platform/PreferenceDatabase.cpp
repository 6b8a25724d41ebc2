#include "RkUtilities/platform/PreferenceDatabase.h"

#include <cstdlib>
#include <fcntl.h>
#include <sqlite3.h>
#include <unistd.h>
#include <vector>

namespace rk::platform {

namespace {

constexpr int kBusyMilliseconds = 10000;

// UTF-16 inside keeps any sequence of code units, lone surrogates and U+0000 included. The journal written ahead needs one
// flush a transaction; FULL waits for it, so that what is reported as stored survives a power cut.
constexpr const char* kOpening = "PRAGMA encoding = 'UTF-16le';"
                                 "PRAGMA journal_mode = WAL;"
                                 "PRAGMA synchronous = FULL;"
                                 "CREATE TABLE IF NOT EXISTS preferences (scope TEXT NOT NULL, name TEXT NOT NULL,"
                                 " type TEXT NOT NULL, value, PRIMARY KEY (scope, name)) WITHOUT ROWID;";

constexpr const char* kBoolean = "boolean";
constexpr const char* kNumber = "number";
constexpr const char* kString = "string";

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

void Bind(sqlite3_stmt* statement, int index, std::u16string_view text)
{
    sqlite3_bind_text16(statement, index, text.empty() ? u"" : text.data(),
                        static_cast<int>(text.size() * sizeof(char16_t)), SQLITE_TRANSIENT);
}

void Bind(sqlite3_stmt* statement, const PreferenceKey& key, const PreferenceValue& value)
{
    sqlite3_bind_text(statement, 1, key.first.c_str(), static_cast<int>(key.first.size()), SQLITE_TRANSIENT);
    Bind(statement, 2, key.second);
    if (const auto* const boolean = std::get_if<bool>(&value)) {
        sqlite3_bind_text(statement, 3, kBoolean, -1, SQLITE_STATIC);
        sqlite3_bind_int(statement, 4, *boolean ? 1 : 0);
    } else if (const auto* const number = std::get_if<std::int64_t>(&value)) {
        sqlite3_bind_text(statement, 3, kNumber, -1, SQLITE_STATIC);
        sqlite3_bind_int64(statement, 4, *number);
    } else {
        sqlite3_bind_text(statement, 3, kString, -1, SQLITE_STATIC);
        Bind(statement, 4, std::get<std::u16string>(value));
    }
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

}  // namespace

void PreferenceDatabase::Close::operator()(sqlite3* database) const noexcept
{
    sqlite3_close_v2(database);
}

PreferenceDatabase::PreferenceDatabase() noexcept = default;
PreferenceDatabase::~PreferenceDatabase() = default;
PreferenceDatabase::PreferenceDatabase(PreferenceDatabase&& other) noexcept = default;
PreferenceDatabase& PreferenceDatabase::operator=(PreferenceDatabase&& other) noexcept = default;

PreferenceDatabase::Result PreferenceDatabase::Open(const std::string& path)
{
    m_database.reset();
    m_readVersion = -1;
    // Made here, so that it is never open to others; the files beside it take over its mode.
    const int descriptor = ::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600);
    if (descriptor >= 0)
        ::close(descriptor);
    sqlite3* database = nullptr;
    const int code = sqlite3_open_v2(path.c_str(), &database, SQLITE_OPEN_READWRITE | SQLITE_OPEN_FULLMUTEX, nullptr);
    m_database.reset(database);
    if (code != SQLITE_OK)
        return Judge(code);
    sqlite3_busy_timeout(database, kBusyMilliseconds);
    sqlite3_extended_result_codes(database, 0);
    return Run(kOpening);
}

void PreferenceDatabase::Abandon()
{
    static auto& abandoned = *new std::vector<sqlite3*>;  // what is still reachable counts as no leak
    if (m_database != nullptr)
        abandoned.push_back(m_database.release());
}

PreferenceDatabase::Result PreferenceDatabase::Store(const PreferenceMap& values)
{
    if (const Result begun = Run("BEGIN IMMEDIATE"); begun != Result::Done)
        return begun;
    for (const auto& [key, value] : values) {
        Statement insert(m_database.get(), "INSERT OR REPLACE INTO preferences VALUES (?1, ?2, ?3, ?4)");
        Bind(insert.Get(), key, value);
        if (const int code = insert.Step(); code != SQLITE_DONE) {
            const Result failure = Judge(code);
            sqlite3_exec(m_database.get(), "ROLLBACK", nullptr, nullptr, nullptr);
            return failure;
        }
    }
    const Result committed = Run("COMMIT");
    if (committed != Result::Done)
        sqlite3_exec(m_database.get(), "ROLLBACK", nullptr, nullptr, nullptr);
    return committed;
}

PreferenceDatabase::Result PreferenceDatabase::ReadIfChanged(std::optional<PreferenceMap>& values)
{
    values.reset();
    Statement version(m_database.get(), "PRAGMA data_version");
    if (const int code = version.Step(); code != SQLITE_ROW)
        return Judge(code);
    const std::int64_t current = sqlite3_column_int64(version.Get(), 0);
    if (current == m_readVersion)
        return Result::Done;
    PreferenceMap read;
    Statement rows(m_database.get(), "SELECT scope, name, type, value FROM preferences");
    int code = rows.Step();
    for (; code == SQLITE_ROW; code = rows.Step()) {
        if (std::optional<PreferenceValue> value = ValueAt(rows.Get()))
            read.insert_or_assign({AsciiAt(rows.Get(), 0), TextAt(rows.Get(), 1)}, std::move(*value));
    }
    if (code != SQLITE_DONE)
        return Judge(code);
    m_readVersion = current;
    values = std::move(read);
    return Result::Done;
}

PreferenceDatabase::Result PreferenceDatabase::Run(const char* statements)
{
    return Judge(sqlite3_exec(m_database.get(), statements, nullptr, nullptr, nullptr));
}

PreferenceDatabase::Result PreferenceDatabase::Judge(int code)
{
    if (code == SQLITE_OK || code == SQLITE_DONE) {
        m_failure.clear();
        return Result::Done;
    }
    m_failure = m_database != nullptr ? sqlite3_errmsg(m_database.get()) : sqlite3_errstr(code);
    return code == SQLITE_CORRUPT || code == SQLITE_NOTADB ? Result::Damaged : Result::Failed;
}

}  // namespace rk::platform
