#pragma once

#include "rklog/Levels.h"
#include "rklog/Record.h"
#include "rklog/Tally.h"

#include <array>
#include <cstdint>
#include <iosfwd>
#include <optional>
#include <string>

namespace rklog {

/// What a log holds, in numbers: entries by level, category, process and minute, the longest gap between two entries
/// that follow each other, and the most frequent messages by their first lines.
class Stats {
public:
    void Count(const Entry& entry, const EntryTime& time);
    void Write(std::ostream& out) const;

private:
    struct Gap {
        Seconds length = 0;
        IsoTime begin;
        IsoTime end;
    };

    std::uint64_t m_entryCount = 0;
    std::array<std::uint64_t, kLevelCount + 1> m_levels{};  // the last: entries without a level
    Tally m_categories;
    Tally m_processes;
    Tally m_minutes;
    Tally m_messages;
    std::optional<EntryTime> m_before;
    Gap m_gap;
};

}  // namespace rklog
