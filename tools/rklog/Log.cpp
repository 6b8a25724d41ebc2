#include "rklog/Log.h"

#include "rklog/DateRecognition.h"
#include "rklog/FilesSource.h"
#include "rklog/FollowedSource.h"
#include "rklog/LogFiles.h"

#include <algorithm>
#include <system_error>

namespace rklog {

namespace {

std::optional<Seconds> FirstWallOf(const std::string& path, const DateReader& reader) {
    EntryReader entries(path);
    constexpr int kMostEntries = 100;
    Entry entry;
    for (int i = 0; i < kMostEntries && entries.Next(entry); ++i) {
        if (const std::optional<Seconds> wall = reader.Read(ReadTimestamp(entry.timestamp).date))
            return wall;
    }
    return {};
}

/// The files are in the order of their last changes. Copying changes that; where the first dates of the files say
/// otherwise, by more than a clock change does, they are put into the order of those dates.
void CheckOrder(std::vector<std::string>& paths, const DateReader& reader) {
    struct Dated {
        std::optional<Seconds> wall;
        std::string path;
    };
    std::vector<Dated> files;
    files.reserve(paths.size());
    for (const std::string& path : paths)
        files.push_back({FirstWallOf(path, reader), path});
    const bool areDated = std::all_of(files.begin(), files.end(), [](const Dated& file) { return file.wall; });
    const auto goesBack = [](const Dated& a, const Dated& b) { return *b.wall < *a.wall - kSecondsOfHour; };
    if (!areDated || std::adjacent_find(files.begin(), files.end(), goesBack) == files.end())
        return;
    std::stable_sort(files.begin(), files.end(), [](const Dated& a, const Dated& b) { return *a.wall < *b.wall; });
    std::transform(files.begin(), files.end(), paths.begin(), [](const Dated& file) { return file.path; });
}

}  // namespace

Log::Log(std::string path, Reading reading, Trouble& trouble)
    : m_path(std::move(path)), m_reading(std::move(reading)), m_trouble(trouble) {
    if (m_reading.follows && m_path != "-")
        m_source = std::make_unique<FollowedSource>(m_path, m_trouble);
}

/// A log that is followed may come later, so its dates are looked at when its first entry is there.
void Log::Open() {
    std::vector<std::string> paths;
    try {
        paths = FilesOf(m_path);
        if (m_reading.needsTimes) {
            const DateReader reader(Recognise(paths));
            if (paths.size() > 1 && !m_source)
                CheckOrder(paths, reader);
            m_times.emplace(reader);
        }
    } catch (const std::system_error& error) {
        m_trouble.Say(error.what());
        m_times.emplace(DateReader(m_reading.users));
    }
    if (!m_source)
        m_source = std::make_unique<FilesSource>(std::move(paths), m_trouble);
}

DateStyle Log::Recognise(const std::vector<std::string>& paths) {
    if (m_reading.isNamed)
        return m_reading.users;
    DateSamples samples;
    for (const std::string& path : paths)
        samples.TakeFrom(path);
    const auto [style, isAmbiguous, isReadable] = samples.Recognise(m_reading.users);
    if (!isReadable)
        m_trouble.Note(m_path + ": the dates are not understood; name their locale with --locale");
    else if (isAmbiguous)
        m_trouble.Note(m_path + ": the dates may be in another order; they are read as " +
                       std::string(NameOf(style.order)) + ", and --locale decides");
    return style;
}

bool Log::Next() {
    m_time.reset();
    if (!m_source)
        Open();
    if (!m_source->Next(m_entry))
        return false;
    if (m_reading.needsTimes) {
        if (!m_times)
            Open();
        m_times->Notice(m_entry);
    }
    return true;
}

const EntryTime& Log::Time() {
    if (!m_time)
        m_time = m_times->Of(m_entry);
    return *m_time;
}

MergedLogs::MergedLogs(std::vector<std::unique_ptr<Log>> logs) {
    for (auto& log : logs)
        m_heads.push_back({.log = std::move(log)});
}

Log* MergedLogs::Next() {
    if (m_given != nullptr)
        m_given->hasEntry = false;
    m_given = nullptr;
    for (Head& head : m_heads) {
        if (!head.hasEntry)
            head.hasEntry = head.log->Next();
        if (head.hasEntry && (m_given == nullptr || head.log->Time().utc < m_given->log->Time().utc))
            m_given = &head;
    }
    return m_given == nullptr ? nullptr : m_given->log.get();
}

}  // namespace rklog
