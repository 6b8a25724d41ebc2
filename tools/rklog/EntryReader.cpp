#include "rklog/EntryReader.h"

namespace rklog {

bool EntryReader::Next(Entry& entry) {
    entry.file = m_file.Path();
    while (!m_scanner.Next(entry)) {
        if (m_isAtEnd)
            return false;
        const std::size_t byteCount = m_file.Read(m_scanner.Room(), EntryScanner::kBlockByteCount);
        m_scanner.Took(byteCount);
        m_isAtEnd = byteCount == 0;
        if (m_isAtEnd)
            m_scanner.Finish();
        else if (byteCount < EntryScanner::kBlockByteCount)
            m_scanner.Pause();  // a pipe that waits
    }
    return true;
}

}  // namespace rklog
