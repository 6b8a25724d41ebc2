#pragma once

#include "rklog/DateReader.h"
#include "rklog/EntryTimes.h"
#include "rklog/Trouble.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace rklog {

/// How a log is to be read.
struct Reading {
    DateStyle users;       ///< how dates are written in the user's locale
    bool isNamed = false;  ///< the user named the locale: dates are in it, and nothing has to be recognised
    bool needsTimes = true;
    bool follows = false;
};

/// One log: a file, or a folder with the active file and its backups. It stands at an entry, or behind the last entry.
class Log {
public:
    Log(std::string path, Reading reading, Trouble& trouble);

    /// Goes to the next entry; false when there is no further entry, or not yet when the log is followed.
    bool Next();
    [[nodiscard]] const Entry& Current() const { return m_entry; }
    /// The time of the current entry. To have it, a log must be read with `needsTimes`.
    [[nodiscard]] const EntryTime& Time();

private:
    void Open();
    [[nodiscard]] DateStyle Recognise(const std::vector<std::string>& paths);

    std::string m_path;
    Reading m_reading;
    Trouble& m_trouble;
    std::unique_ptr<EntrySource> m_source;
    std::optional<EntryTimes> m_times;
    Entry m_entry;
    std::optional<EntryTime> m_time;
};

/// Several logs as one, by time; the order inside each log stays.
class MergedLogs {
public:
    explicit MergedLogs(std::vector<std::unique_ptr<Log>> logs);

    /// The log that stands at the next entry, until the next call; null when there is no further entry, or not yet.
    Log* Next();

private:
    struct Head {
        std::unique_ptr<Log> log;
        bool hasEntry = false;
    };
    std::vector<Head> m_heads;
    Head* m_given = nullptr;
};

}  // namespace rklog
