#pragma once

#include <RkUtilities/foundation/CString.h>
#include <RkUtilities/logging/CrkLogWriter.h>

#include <functional>

namespace mindmap {

/// The log of a run: entries in "messages.xml" of a folder, as long as the object lives.
///
/// The folder also holds "settings.xml", which says what is logged. The file is written where it is missing, with
/// everything switched on; a user who wants less changes it. A log that cannot be written never stops a run.
class RunLog {
public:
    /// @param folder  with or without a closing "/"; made when it is missing, but not the folder that it is in.
    ///                "" for no log.
    explicit RunLog(CString folder);
    ~RunLog();
    RunLog(const RunLog&) = delete;
    RunLog& operator=(const RunLog&) = delete;

    void Write(CrkLogWriter::ErkLogLevel level, const CString& message, const CString& category = CString(),
               const CFUUIDBytes& topicId = CrkGuid::c_nullGuid);

    [[nodiscard]] bool IsOff() const { return m_folder.IsEmpty(); }
    [[nodiscard]] bool IsBroken() const { return m_isBroken; }
    /// The path of "messages.xml".
    [[nodiscard]] CString FilePath() const { return m_folder + CrkLogWriter::m_activeFileName; }

private:
    void ProvideSettings(const CString& path);
    void Attempt(const std::function<void()>& call);

    CString m_folder;
    bool m_isBroken = false;
};

}  // namespace mindmap
