#pragma once

#include "RkUtilities/RkExport.h"
#include "RkUtilities/foundation/CFDateFormatterStyle.h"
#include "RkUtilities/foundation/CFUUIDBytes.h"
#include "RkUtilities/foundation/CObject.h"
#include "RkUtilities/foundation/CString.h"
#include "RkUtilities/guid/CrkGuid.h"
#include "RkUtilities/logging/CrkLogSettings.h"
#include "RkUtilities/logging/ErkLogLevel.h"
#include "RkUtilities/logging/LogState.h"

#include <cstdint>
#include <mutex>

/// The log: writes entries, as XML, to one file in a folder that the application names at its start.
///
///     CrkLogWriter::Init(u"~/settings/log.xml", u"~/logs/");
///     CrkLogWriter::Log(CrkLogWriter::LogWarning, u"Disk full & retrying", CrkLogTypes::LogTypeCache);
///     CrkLogWriter::Uninitialize();
///
/// - `CrkLogSettings` says which entries are written. The others cost next to nothing: no lock, no memory, no file.
///   Build an expensive message only behind `CanLog`.
/// - Threads and processes: any number of writers that name the same folder may log at once. Every entry stands whole
///   in a file, in the order in which the writers took the lock, and a single writer moves a full file aside.
/// - `Init` must have returned before other threads log, and `Uninitialize` must be called when no thread logs any
///   more; both may be called again later, in any order.
/// - Fork: the child may log, also when other threads of the parent logged at that moment.
/// - Kill: a killed process leaves whole entries, except perhaps its last entry. The next writer removes such a
///   beginning of an entry from the end of the file; any other content there stays, and its last line is ended. Entries
///   reach the system before `Log` returns, so they outlive the process; they are not forced to the disk.
/// - A full disk, a limit on file sizes, no memory: `Log` throws, and nothing of the entry is in the file.
/// - Hostile neighbours: the file and its backups are for the owner only (0600, less what the umask takes). A process
///   that holds a lock delays entries by a second once; entries are then written without the lock, and a full file
///   stays until the lock is free. In a folder that others may write to, the writer follows no link, waits for no pipe,
///   and writes to no file of another user or with a second name: such entries are dropped. A file on another file
///   system than its backup is copied; an entry that is written without the lock in that instant is lost.
/// - The file is opened and closed for each entry, so it may be moved, deleted or emptied by others at any time.
///
/// A second backup within one minute REPLACES the first: set `m_maxBackupCount` where no entry may be lost that way.
class RK_EXPORT CrkLogWriter : public CObject {
public:
    /// How severe an entry is, from `LogEmergency` (0) down to `LogDebug` (6): rk::ErkLogLevel.
    using ErkLogLevel = rk::ErkLogLevel;
    using enum rk::ErkLogLevel;

    CrkLogWriter() = default;
    ~CrkLogWriter() override;
    virtual CString GetClassName() const { return u"CrkLogWriter"; }  ///< "CrkLogWriter".

    // --- Start and stop

    /// Reads the settings and switches the writer on; a writer that is on goes over to the new settings and folder. The
    /// settings are read here only. If they enable logging, the folder is created; when that fails, the first entry
    /// tries again. Throws `CAtlException` or `std::bad_alloc` when memory runs out; the writer is as before then.
    /// @param settingsPath  a missing or bad file leaves logging off; see CrkLogSettings
    /// @param logFolder     ends with "/": the file's name is put straight behind it. "~/" leads to the home folder.
    static void Init(const CString& settingsPath, const CString& logFolder);

    /// Switches the writer off and disposes of the settings. Nothing happens for a writer that is off.
    static void Uninitialize();

    // --- Writing

    /// Whether entries of the level are written, whatever their category; false while the writer is off.
    [[nodiscard]] static bool CanLog(ErkLogLevel level) {
        return m_isInitialized && m_pLogSettings->m_enable && level <= m_pLogSettings->m_level;
    }

    /// Writes an entry, if the settings admit its level and category. An empty category stands for "General"; without
    /// an id the entry has the null id, without a description an empty description. With "ls:StdOut" the message alone
    /// goes to standard error first, without a line break. A missing log folder is created, and the entry is then taken
    /// from the start again: its message goes to standard error a second time. An entry is dropped when the file cannot
    /// be opened for another reason (permission, no free descriptor, a link into a missing folder or to itself);
    /// `GetLogState` tells. After any exception nothing of the entry is in the file.
    ///
    /// @throws CrkLogException    the log folder is missing and cannot be created
    /// @throws CFileException*    the entry could not be written whole (`diskFull`)
    /// @throws std::bad_alloc     no memory for the entry; `std::length_error` from 2,147,483,647 units on
    static void Log(ErkLogLevel level, const CString& message);
    static void Log(ErkLogLevel level, const CString& message, const CrkGuid& id);  ///< With an id and no category.
    /// With category and id.
    static void Log(ErkLogLevel level, const CString& message, const CString& category, const CrkGuid& id);
    /// With category, body and id.
    static void Log(ErkLogLevel level, const CString& message, const CString& category,
                    const CString& description = c_noDescription, const CrkGuid& id = CrkGuid::c_nullGuid);
    // A CrkGuid, which is also a text, is never a category.
    template <class... Further>
    static void Log(ErkLogLevel level, const CString& message, const CrkGuid& id, const Further&... further) = delete;

    /// `Log` with all its arguments; here an empty category stays empty.
    static void LogInternal(ErkLogLevel level, const CString& message, const CString& category,
                            const CString& description, CFUUIDBytes id);

    /// Writes an entry that tells which program this is, so that readers of the log can tell processes apart. To be
    /// called after `Init`; throws what `Log` does. Its level is `LogInfo`, its category "Application Start", its body
    /// one line:
    ///
    ///     LogStart time="2026-11-16T21:52:05.123+01:00" loaded="2026-11-16T21:50:00+01:00" zone="CET" pid="4711"
    ///     host="desk" program="mindmap" library="0.1.0" system="Linux 6.1.0-13-amd64 x86_64"
    ///
    /// Times are local, by ISO 8601; an entry was written at `loaded` plus the seconds of its timestamp. The program is
    /// named as its preferences are. In values, double quotes, "%", "<", ">", "&" and control characters stand as "%"
    /// and two upper-case hexadecimal digits.
    static void LogStart();

    /// How the log fares. May be called when `Log` may be called. Throws `std::bad_alloc`.
    [[nodiscard]] static rk::LogState GetLogState();

    /// Moves the active file to a backup in the log folder, so that the next entry starts a new file. After a failure
    /// the file stays; `GetLogState` tells. Only for callers that hold `m_mutex`; the writer does this itself with a
    /// full file. The backup's name is the local date and time in the locale's short styles, "-" in place of "/" and
    /// ":", with ".xml" behind: "11-16-26, 9-52 PM.xml". A backup that has the name already is replaced, unless
    /// `m_maxBackupCount` says otherwise. Works across file systems.
    static void Bak();

    // --- The text of an entry
    //
    // Header, "<l:Body>", prepared message, "</l:Body>", footer. A file holds entries and
    // nothing else: no declaration, no root element. It is UTF-8; a lone surrogate becomes U+FFFD. Safe from any
    // thread at any time; the settings do not matter.

    /// All up to the body, in one line:
    ///
    ///     <l:LogEntry><l:Timestamp>11/16/26, 9:52 PM:125</l:Timestamp><l:Tid>70000e3a1000</l:Tid>
    ///     <l:Category>Cache</l:Category><l:Severity>Warning</l:Severity>
    ///     <l:Id>00000000-0000-0000-0000-000000000000</l:Id><l:Description></l:Description>
    ///
    /// Local date and time in the locale's short styles (English has U+202F before "PM"), ":" and whole seconds since
    /// the library was loaded (negative if the clock was set back); the thread's handle in hexadecimal; the id's bytes
    /// as they are stored, in another order than that of `CrkGuid::GuidToString`.
    [[nodiscard]] static CString EntryHeader(const CString& category, ErkLogLevel level, const CString& description,
                                             CFUUIDBytes id);
    [[nodiscard]] static CString EntryFooter();  ///< "</l:LogEntry>" and a line feed.
    /// The message as it stands in the body: each "&" becomes "&amp;", and everything up to the first "?>" goes,
    /// since a message may be an XML document, whose declaration must not stand inside an entry. Other markup passes
    /// as it is.
    [[nodiscard]] static CString PrepareXml(const CString& message);
    /// Makes each "&" into "&amp;", also an "&" that begins a reference already. Nothing else changes.
    static void EscapeXmlCharacters(CString& text) { text.Replace(u"&", u"&amp;"); }
    /// The local date and time in the user's locale, the style used for both; "" for no style and any other number.
    [[nodiscard]] static CString CurrentTimeString(CFDateFormatterStyle style);
    /// "Emergency", "Critical", "Error", "Warning", "Notice", "Info", "Debug"; "" for any other value.
    [[nodiscard]] static CString Severity(ErkLogLevel level);

    // --- State

    static CString m_path;                  ///< the log folder; "~/Corvane.Log/" until `Init`
    static CString m_activeFileName;        ///< "messages.xml"
    static CrkLogSettings* m_pLogSettings;  ///< owned; null while the writer is off
    static bool m_isInitialized;            ///< the writer is on
    static ErkLogLevel m_logLevel;          ///< `LogDebug`; for the application's own use, never read here
    static std::uint64_t m_maxFileLength;   ///< in bytes: a file that has become longer is moved aside; 20,000,000
    /// 0 or less: any number of backups, named by the minute; a later backup replaces an earlier. Otherwise no backup
    /// is replaced, and only this number of newest backups is kept: "messages.1.xml", "messages.2.xml" and so on.
    static int m_maxBackupCount;
    /// Whether the first failure since `Init` is told on standard error too; false.
    static bool m_tellsFirstFailure;
    /// Held while an entry is written and a file moved aside. A `std::mutex`, so usable before `Init`; its
    /// `native_handle()` is the POSIX mutex. A caller that holds it must not fork.
    static std::mutex m_mutex;
    static std::int32_t m_seconds;  ///< When the library was loaded, in whole seconds since 2001-01-01 00:00 UTC.

private:
    enum class Outcome { Done, FolderWasMissing };
    [[nodiscard]] static Outcome TryToLog(ErkLogLevel level, const CString& message, const CString& category,
                                          const CString& description, const CFUUIDBytes& id);
    [[nodiscard]] static bool Admits(ErkLogLevel level, const CString& category);

    static const CString c_generalCategory;  // "General"
    static const CString c_noDescription;    // ""
};

// --- Inline, so that an entry that is dropped costs no call into the library

inline bool CrkLogWriter::Admits(ErkLogLevel level, const CString& category) {
    return CanLog(level) && !m_pLogSettings->IsExcluded(category) &&
           (m_pLogSettings->m_includeAll || m_pLogSettings->IsIncluded(category));
}

inline void CrkLogWriter::Log(ErkLogLevel level, const CString& message) {
    if (CanLog(level))
        LogInternal(level, message, c_generalCategory, {}, CrkGuid::c_nullGuid);
}

inline void CrkLogWriter::Log(ErkLogLevel level, const CString& message, const CrkGuid& id) {
    if (CanLog(level))
        LogInternal(level, message, c_generalCategory, {}, id.Bytes());
}

inline void CrkLogWriter::Log(ErkLogLevel level, const CString& message, const CString& category, const CrkGuid& id) {
    Log(level, message, category, c_noDescription, id);
}

inline void CrkLogWriter::Log(ErkLogLevel level, const CString& message, const CString& category,
                              const CString& description, const CrkGuid& id) {
    if (const CString& name = category.IsEmpty() ? c_generalCategory : category; Admits(level, name))
        LogInternal(level, message, name, description, id.Bytes());
}
