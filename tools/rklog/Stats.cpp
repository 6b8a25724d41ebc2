#include "rklog/Stats.h"

#include "rklog/EntryText.h"
#include "rklog/VisibleText.h"

#include <RkUtilities/foundation/CString.h>

#include <algorithm>
#include <iomanip>
#include <ostream>

namespace rklog {

namespace {

constexpr std::size_t kRowsOfTable = 20;
constexpr std::size_t kMinutesOfTable = 60;  // all minutes of an hour; of a longer log the busiest
constexpr std::size_t kMessageLength = 200;  // bytes that tell messages apart

void WriteTable(std::ostream& out, std::string_view title, const Tally& tally, std::vector<Tally::Row> rows) {
    out << '\n' << title;
    if (rows.size() < tally.RowCount())
        out << ", the " << rows.size() << " highest of " << tally.RowCount();
    if (tally.PossibleError() > 0)
        out << ", counts at most " << tally.PossibleError() << " too low";
    out << ":\n";
    for (const auto& [text, count] : rows) {
        std::string visible;
        AppendVisible(CString(Unescaped(text)).ToUtf8(), visible);
        out << std::setw(12) << count << "  " << visible << '\n';
    }
}

std::string_view FirstLineOf(std::string_view message) {
    return message.substr(0, std::min(message.find('\n'), kMessageLength));
}

}  // namespace

void Stats::Count(const Entry& entry, const EntryTime& time) {
    ++m_entryCount;
    ++m_levels[static_cast<std::size_t>(entry.level.value_or(static_cast<rk::ErkLogLevel>(kLevelCount)))];
    m_categories.Count(entry.category);
    m_processes.Count(time.process ? time.process->Name() : "(unknown)");
    m_messages.Count(FirstLineOf(entry.message));
    if (!time.time)
        return;
    IsoTime minute = *time.time;
    minute.wall -= minute.wall % kSecondsOfMinute;
    minute.precision = kSecondsOfMinute;
    minute.zoneOffset.reset();
    m_minutes.Count(IsoText(minute));
    if (m_before && time.utc - m_before->utc > m_gap.length)
        m_gap = {.length = time.utc - m_before->utc, .begin = *m_before->time, .end = *time.time};
    m_before = time;
}

void Stats::Write(std::ostream& out) const {
    out << m_entryCount << (m_entryCount == 1 ? " entry" : " entries") << "\n\nby level:\n";
    for (int level = 0; level <= kLevelCount; ++level) {
        const std::uint64_t count = m_levels[static_cast<std::size_t>(level)];
        if (count > 0)
            out << std::setw(12) << count << "  "
                << (level < kLevelCount ? NameOf(static_cast<rk::ErkLogLevel>(level)) : "(none)") << '\n';
    }
    WriteTable(out, "by category", m_categories, m_categories.Highest(kRowsOfTable));
    WriteTable(out, "by process", m_processes, m_processes.Highest(kRowsOfTable));
    std::vector<Tally::Row> minutes = m_minutes.Highest(kMinutesOfTable);
    std::sort(minutes.begin(), minutes.end());
    WriteTable(out, "by minute", m_minutes, std::move(minutes));
    if (m_gap.length > 0)
        out << "\nlongest gap:\n"
            << std::setw(12) << m_gap.length << "  seconds, from " << IsoText(m_gap.begin) << " to "
            << IsoText(m_gap.end) << '\n';
    WriteTable(out, "most frequent messages", m_messages, m_messages.Highest(kRowsOfTable));
}

}  // namespace rklog
