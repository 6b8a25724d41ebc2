#include "rklog/EntryCutter.h"

#include "rklog/EntryText.h"

#include <algorithm>
#include <cstring>

namespace rklog {

char* EntryCutter::Room() {
    if (m_begin > 0) {
        std::memmove(m_bytes.data(), m_bytes.data() + m_begin, m_end - m_begin);
        m_offset += m_begin;
        m_searched = std::max(m_searched, m_begin) - m_begin;
        m_end -= m_begin;
        m_begin = 0;
    }
    if (m_bytes.size() - m_end < kBlockByteCount)
        m_bytes.resize(std::max(2 * m_bytes.size(), m_end + kBlockByteCount));
    return m_bytes.data() + m_end;
}

void EntryCutter::StartAt(std::uint64_t offset) {
    m_begin = m_end = m_searched = 0;
    m_offset = offset;
    m_isFinished = m_isPaused = false;
}

bool EntryCutter::Next(Entry& entry) {
    if (FindNextStart())
        Give(m_nextStart, entry);
    else if (m_begin < m_end &&
             (m_isFinished || m_end - m_begin > m_longestByteCount || (m_isPaused && HasWholeEntryAtEnd())))
        Give(m_end, entry);
    else
        return false;
    return true;
}

/// Goes from line to line: the C library finds a byte several times as fast as any search finds a longer text.
bool EntryCutter::FindNextStart() {
    m_searched = std::max(m_searched, m_begin);
    while (m_searched < m_end) {
        const char* const from = m_bytes.data() + m_searched;
        const auto* const lineEnd = static_cast<const char*>(std::memchr(from, '\n', m_end - m_searched));
        if (lineEnd == nullptr) {
            m_searched = m_end;
            return false;
        }
        const auto lineStart = static_cast<std::size_t>(lineEnd - m_bytes.data()) + 1;
        const std::string_view line(m_bytes.data() + lineStart, m_end - lineStart);
        if (line.starts_with(kEntryStart)) {
            m_searched = lineStart - 1;  // found again when stray text comes first
            m_nextStart = lineStart;
            return true;
        }
        m_searched = lineStart;
        if (line.size() < kEntryStart.size() && kEntryStart.starts_with(line)) {
            m_searched = lineStart - 1;  // may turn out to be a start tag
            return false;
        }
    }
    return false;
}

bool EntryCutter::HasWholeEntryAtEnd() const {
    const std::string_view bytes(m_bytes.data() + m_begin, m_end - m_begin);
    return bytes.ends_with(kEntryEnd) && bytes.starts_with(kEntryStart);
}

void EntryCutter::Give(std::size_t end, Entry& entry) {
    std::string_view bytes(m_bytes.data() + m_begin, end - m_begin);
    if (bytes.starts_with(kEntryStart) && !bytes.ends_with(kEntryEnd)) {
        const std::size_t footer = bytes.rfind(kEntryEnd);
        if (footer != std::string_view::npos)
            bytes = bytes.substr(0, footer + kEntryEnd.size());  // stray text is next
    }
    entry.offset = Offset();
    m_begin += bytes.size();
    TakeApart(bytes, entry);
}

}  // namespace rklog
