#pragma once

#include "rklog/EntryCutter.h"
#include "rklog/InputFile.h"
#include "rklog/Trouble.h"

#include <deque>
#include <memory>
#include <set>
#include <string>

namespace rklog {

/// The entries of a log that is being written: what is there, and from then on what comes.
///
/// `Next` gives false when there is nothing new, and may be called again later. The log may not be there yet, and it
/// may go and come again. A file that becomes shorter is read from its start. Of a folder every file is read once,
/// under whatever name: the active file to its end after it has been moved aside, then the backups that were made
/// meanwhile, then the new active file. An entry without a footer at the end of the active file is waited for.
class FollowedSource : public EntrySource {
public:
    FollowedSource(std::string path, Trouble& trouble) : m_path(std::move(path)), m_trouble(trouble) {}
    bool Next(Entry& entry) override;

private:
    [[nodiscard]] bool ReadOn();
    [[nodiscard]] bool IsDone();
    [[nodiscard]] bool OpenNext();
    void FindFiles();
    void GoTo(std::uint64_t offset);

    std::string m_path;
    Trouble& m_trouble;
    std::string m_lastTrouble;  // is told once, though it comes with every call
    std::unique_ptr<InputFile> m_file;
    std::unique_ptr<InputFile> m_finished;  // the last file, kept open so that no new file gets its number
    InputFile::Identity m_identity;
    EntryCutter m_cutter;
    bool m_wasMoved = false;  // the file has lost its name, which another file may have; it is read once more
    bool m_isLast = false;    // of the files that were there: more may be written to it
    std::deque<std::string> m_paths;
    std::set<InputFile::Identity> m_known;
};

}  // namespace rklog
