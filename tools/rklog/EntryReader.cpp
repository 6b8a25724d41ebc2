#include "rklog/EntryReader.h"

namespace rklog {

bool EntryReader::Next(Entry& entry) {
    entry.file = m_file.Path();
    while (!m_cutter.Next(entry)) {
        if (m_isAtEnd)
            return false;
        const std::size_t byteCount = m_file.Read(m_cutter.Room(), EntryCutter::kBlockByteCount);
        m_cutter.Took(byteCount);
        m_isAtEnd = byteCount == 0;
        if (m_isAtEnd)
            m_cutter.Finish();
        else if (byteCount < EntryCutter::kBlockByteCount)
            m_cutter.Pause();  // a pipe that waits
    }
    return true;
}

}  // namespace rklog
