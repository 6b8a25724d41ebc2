#include "rklog/EntryTimes.h"

#include <charconv>
#include <iterator>

namespace rklog {

namespace {

/// A log of many runs is read in constant memory: the oldest starts are forgotten, and with them the threads.
constexpr std::size_t kMostProcesses = 10'000;
constexpr std::size_t kMostThreads = 100'000;

/// How far a clock change may have moved the wall's time away from the wall's time at the process's start.
constexpr Seconds kClockChanges[] = {0, kSecondsOfHour, -kSecondsOfHour};

}  // namespace

Timestamp ReadTimestamp(std::string_view text) {
    const std::size_t colon = text.rfind(':');
    if (colon == std::string_view::npos)
        return {.date = text, .sinceLoad = {}};
    const std::string_view digits = text.substr(colon + 1);
    Seconds seconds = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), seconds);
    const bool isRead = error == std::errc() && end == digits.data() + digits.size();
    return {.date = text.substr(0, colon), .sinceLoad = isRead ? std::optional(seconds) : std::nullopt};
}

void EntryTimes::Notice(const Entry& entry) {
    const std::optional<Process> process = ReadLogStart(entry);
    if (!process)
        return;
    const auto shared = std::make_shared<const Process>(*process);
    m_processes.emplace(process->loadedUtc + process->zoneOffset, shared);
    if (m_processes.size() > kMostProcesses)
        m_processes.erase(m_processes.begin());
    if (m_threads.size() > kMostThreads)
        m_threads.clear();
    m_threads.insert_or_assign(std::string(entry.thread), shared);
}

std::optional<Seconds> EntryTimes::WallOf(std::string_view date) {
    if (m_lastDate != date) {
        m_lastDate = date;
        m_lastWall = m_reader.Read(date);
        m_minuteUtc = m_lastWall ? std::optional(UtcOfWall(*m_lastWall)) : std::nullopt;
    }
    return m_lastWall;
}

EntryTimes::ProcessPointer EntryTimes::ProcessOf(const Entry& entry, std::optional<Seconds> wall, Seconds sinceLoad) {
    const auto known = m_threads.find(std::string(entry.thread));
    ProcessPointer ofThread = known == m_threads.end() ? nullptr : known->second;
    if (!wall)
        return ofThread;
    for (const Seconds change : kClockChanges) {
        const Seconds loaded = *wall - sinceLoad + change;
        const auto first = m_processes.lower_bound(loaded);
        const auto end = m_processes.lower_bound(loaded + kSecondsOfMinute);
        if (first == end)
            continue;
        if (std::next(first) == end) {
            if (ofThread != first->second && m_threads.size() <= kMostThreads)
                m_threads.insert_or_assign(std::string(entry.thread), first->second);
            return first->second;
        }
        for (auto candidate = first; candidate != end; ++candidate) {
            if (candidate->second == ofThread)
                return ofThread;
        }
        return nullptr;
    }
    return nullptr;
}

EntryTime EntryTimes::Of(const Entry& entry) {
    EntryTime result;
    const auto [date, sinceLoad] = ReadTimestamp(entry.timestamp);
    const std::optional<Seconds> wall = WallOf(date);
    if (sinceLoad && !m_processes.empty())
        result.process = ProcessOf(entry, wall, *sinceLoad);
    if (result.process) {
        m_lastUtc = result.process->loadedUtc + *sinceLoad;
        Seconds offset = result.process->zoneOffset;
        if (wall)  // a clock change moves the wall's time by whole hours from the time at the start's offset
            offset += (*wall - (*m_lastUtc + offset - (*m_lastUtc + offset) % kSecondsOfMinute)) / kSecondsOfHour *
                      kSecondsOfHour;
        result.time = {.wall = *m_lastUtc + offset, .zoneOffset = offset, .precision = 1};
    } else if (wall) {
        m_lastUtc = m_minuteUtc;
        result.time = {.wall = *wall, .zoneOffset = {}, .precision = kSecondsOfMinute};
    }
    result.utc = m_lastUtc.value_or(0);
    result.isBeforeAll = !m_lastUtc;
    return result;
}

}  // namespace rklog
