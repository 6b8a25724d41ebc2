#include "rklog/FilesSource.h"

#include <system_error>

namespace rklog {

bool FilesSource::Next(Entry& entry) {
    for (;;) {
        try {
            if (m_reader && m_reader->Next(entry))
                return true;
            if (m_nextPath == m_paths.size())
                return false;
            m_reader.reset();
            m_reader = std::make_unique<EntryReader>(m_paths[m_nextPath++]);
        } catch (const std::system_error& error) {
            m_reader.reset();
            m_trouble.Say(error.what());
        }
    }
}

}  // namespace rklog
