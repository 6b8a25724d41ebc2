#pragma once

#include "rklog/DateReader.h"
#include "rklog/Entry.h"
#include "rklog/Process.h"

#include <map>
#include <memory>
#include <optional>
#include <string>

namespace rklog {

/// When an entry was written and by which process, as far as that is known.
struct EntryTime {
    std::optional<IsoTime> time;  ///< to the second and with its zone when the process is known, else to the minute
    Seconds utc = 0;              ///< of `time`, or of the entry before when `time` cannot be read; for comparing
    bool isBeforeAll = false;     ///< no entry so far had a time that can be read
    std::shared_ptr<const Process> process;
};

/// The last part of a timestamp, behind its last ":": the seconds since the library was loaded.
struct Timestamp {
    std::string_view date;  ///< "11/16/26, 9:52 PM"
    std::optional<Seconds> sinceLoad;
};
[[nodiscard]] Timestamp ReadTimestamp(std::string_view text);

/// Tells the times and processes of the entries of one log, asked for in the order of the log.
///
/// An entry belongs to the process whose start, with the seconds that the entry counts since then, falls into the
/// entry's minute; of several such processes to that which wrote from the entry's thread before. A clock change while
/// a process runs is allowed for.
class EntryTimes {
public:
    explicit EntryTimes(DateReader reader) : m_reader(std::move(reader)) {}

    /// Takes note of the starts of processes; every entry has to pass here.
    void Notice(const Entry& entry);
    /// The time of an entry that passed last.
    [[nodiscard]] EntryTime Of(const Entry& entry);

private:
    using ProcessPointer = std::shared_ptr<const Process>;

    [[nodiscard]] std::optional<Seconds> WallOf(std::string_view date);
    [[nodiscard]] ProcessPointer ProcessOf(const Entry& entry, std::optional<Seconds> wall, Seconds sinceLoad);

    DateReader m_reader;
    std::multimap<Seconds, ProcessPointer> m_processes;  // by the time on their wall when they were loaded
    std::map<std::string, ProcessPointer> m_threads;
    std::string m_lastDate;  // entries of one minute follow each other
    std::optional<Seconds> m_lastWall;
    std::optional<Seconds> m_lastUtc;
    std::optional<Seconds> m_minuteUtc;
};

}  // namespace rklog
