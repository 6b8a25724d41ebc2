#include "rklog/FollowedSource.h"

#include "rklog/LogFiles.h"

#include <system_error>

namespace rklog {

bool FollowedSource::Next(Entry& entry) {
    try {
        for (;;) {
            if (m_file) {
                entry.file = m_file->Path();
                if (m_cutter.Next(entry))
                    return true;
                if (ReadOn())
                    continue;
                if (!IsDone())
                    return false;
                m_cutter.Finish();  // what is left has no footer, and no footer will come
                if (m_cutter.Next(entry))
                    return true;
                m_finished = std::move(m_file);
            }
            if (!OpenNext())
                return false;
        }
    } catch (const std::system_error& error) {
        m_file.reset();
        if (m_lastTrouble != error.what())
            m_trouble.Say(error.what());
        m_lastTrouble = error.what();
        return false;
    }
}

/// False when there is nothing new in the file; then nothing is kept of an entry that has not come whole, since the
/// writer may replace a beginning by another entry.
bool FollowedSource::ReadOn() {
    const std::size_t byteCount = m_file->Read(m_cutter.Room(), EntryCutter::kBlockByteCount);
    m_cutter.Took(byteCount);
    if (byteCount > 0) {
        if (byteCount < EntryCutter::kBlockByteCount)
            m_cutter.Pause();
        return true;
    }
    const std::uint64_t fileByteCount = m_file->Look().byteCount;
    if (fileByteCount >= m_cutter.Offset())
        return false;
    GoTo(0);
    return fileByteCount > 0;
}

bool FollowedSource::IsDone() {
    if (!m_isLast)
        return true;
    InputFile::Facts facts;
    if (InputFile::Look(m_file->Path(), facts) && facts.identity == m_identity) {
        m_wasMoved = false;
    } else if (m_wasMoved) {
        return true;
    } else {
        m_wasMoved = true;  // a process that opened it before may still write to it
    }
    GoTo(m_cutter.Offset());
    return false;
}

void FollowedSource::GoTo(std::uint64_t offset) {
    m_file->GoTo(offset);
    m_cutter.StartAt(offset);
}

void FollowedSource::FindFiles() {
    std::set<InputFile::Identity> there;
    InputFile::Facts facts;
    if (!InputFile::Look(m_path, facts))
        return;
    for (const std::string& path : FilesOf(m_path)) {
        if (!InputFile::Look(path, facts))
            continue;
        there.insert(facts.identity);
        // A new file may have the number of a file that was read and is gone. The active file's last number counts.
        const bool isActive = path == m_path || path == ActiveFileOf(m_path);
        if (isActive ? m_identity != facts.identity : !m_known.contains(facts.identity))
            m_paths.push_back(path);
    }
    m_known = std::move(there);
}

bool FollowedSource::OpenNext() {
    if (m_paths.empty())
        FindFiles();
    if (m_paths.empty())
        return false;
    m_file = std::make_unique<InputFile>(m_paths.front());
    m_paths.pop_front();
    m_identity = m_file->Look().identity;
    m_isLast = m_paths.empty();
    m_wasMoved = false;
    m_cutter.StartAt(0);
    return true;
}

}  // namespace rklog
