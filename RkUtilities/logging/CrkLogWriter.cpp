#include "RkUtilities/logging/CrkLogWriter.h"

#include "RkUtilities/foundation/CFileException.h"
#include "RkUtilities/foundation/NativePath.h"
#include "RkUtilities/logging/CrkLogException.h"
#include "RkUtilities/logging/detail/LogEntryText.h"
#include "RkUtilities/logging/detail/LogFileTail.h"
#include "RkUtilities/logging/detail/LogTroubles.h"
#include "RkUtilities/paths/CrkPathUtilities.h"
#include "RkUtilities/platform/files/AppendFile.h"
#include "RkUtilities/platform/files/FileFacts.h"
#include "RkUtilities/platform/process/Patience.h"
#include "RkUtilities/platform/process/Threads.h"

#include <atomic>
#include <chrono>
#include <cstdio>
#include <memory>
#include <optional>
#include <string>
#include <system_error>
#include <utility>

/// Destroyed after the static objects of all files, whose destructors may still log.
[[gnu::init_priority(101)]] constinit CString CrkLogWriter::m_path = CString::Literal(u"~/Corvane.Log/");
constinit CString CrkLogWriter::m_activeFileName = CString::Literal(u"messages.xml");
constinit CrkLogSettings* CrkLogWriter::m_pLogSettings = nullptr;
constinit bool CrkLogWriter::m_isInitialized = false;
constinit CrkLogWriter::ErkLogLevel CrkLogWriter::m_logLevel = LogDebug;
constinit std::uint64_t CrkLogWriter::m_maxFileLength = 20'000'000;
constinit int CrkLogWriter::m_maxBackupCount = 0;
constinit bool CrkLogWriter::m_tellsFirstFailure = false;
constinit std::mutex CrkLogWriter::m_mutex;
constinit const CString CrkLogWriter::c_generalCategory = CString::Literal(u"General");
constinit const CString CrkLogWriter::c_noDescription = CString::Literal(u"");

namespace {

using rk::platform::AppendFile;

constexpr std::chrono::milliseconds kLongestWait{1000};

/// After a wait that was too long, no entry waits for the lock until it has been free.
constinit std::atomic<bool> hasGivenUp = false;

/// Guarded by CrkLogWriter::m_mutex.
[[gnu::init_priority(101)]] constinit std::optional<AppendFile::Left> left;
constinit const std::optional<AppendFile::Left> kNothing;

void Echo(const CString& message) {
    const std::string bytes = message.ToUtf8();
    std::fwrite(bytes.data(), 1, bytes.size(), stderr);
}

bool IsMissingFolder(const std::error_code& error, const std::string& path) {
    // A file may also count as missing where a link leads nowhere, a path as bad where a link leads to itself.
    const int cause = CFileException::ErrnoToException(error.value());
    return (cause == CFileException::fileNotFound || cause == CFileException::badPath) &&
           !rk::platform::HasExistingFolder(path);
}

}  // namespace

CrkLogWriter::~CrkLogWriter() = default;

void CrkLogWriter::Init(const CString& settingsPath, const CString& logFolder) {
    rk::platform::HoldAcrossForks(m_mutex);
    auto settings = std::make_unique<CrkLogSettings>(settingsPath);
    const bool isEnabled = settings->m_enable;
    if (isEnabled)
        static_cast<void>(
            CurrentTimeString(kCFDateFormatterShortStyle));  // the format of an entry's time, while there is memory
    {
        const std::lock_guard lock(m_mutex);
        m_path = logFolder;
        settings.reset(std::exchange(m_pLogSettings, settings.release()));
        m_isInitialized = true;
        rk::LogTroubles::Forget();
    }
    if (isEnabled)
        CrkPathUtilities::AssurePathExists(logFolder);  // a failure shows when an entry is to be written
}

void CrkLogWriter::Uninitialize() {
    const std::lock_guard lock(m_mutex);
    m_isInitialized = false;
    delete std::exchange(m_pLogSettings, nullptr);
}

void CrkLogWriter::LogInternal(ErkLogLevel level, const CString& message, const CString& category,
                               const CString& description, CFUUIDBytes id) {
    // A second time when the folder was made; where another process has removed it again meanwhile, the log gives up.
    if (TryToLog(level, message, category, description, id) == Outcome::FolderWasMissing &&
        TryToLog(level, message, category, description, id) == Outcome::FolderWasMissing)
        throw CrkLogException(m_path.ToUtf8());
}

CrkLogWriter::Outcome CrkLogWriter::TryToLog(ErkLogLevel level, const CString& message, const CString& category,
                                             const CString& description, const CFUUIDBytes& id) {
    if (!Admits(level, category))
        return Outcome::Done;
    rk::platform::Patience patience(hasGivenUp ? std::chrono::milliseconds::zero() : kLongestWait);
    std::unique_lock lock(m_mutex, std::defer_lock);
    if (patience.Lock(m_mutex))
        lock = std::unique_lock(m_mutex, std::adopt_lock);
    else
        hasGivenUp = true;
    if (m_pLogSettings->m_stdOut)
        Echo(message);

    std::string nativePath = rk::NativePath(m_path + m_activeFileName);
    const std::string entry = rk::EntryUtf8(message, category, level, description, id);
    AppendFile file;
    if (const std::error_code openError =
            file.Open(nativePath, m_maxFileLength, lock ? std::as_const(left) : kNothing, patience)) {
        if (!IsMissingFolder(openError, nativePath)) {
            rk::LogTroubles::NoteDroppedEntry(openError);
            return Outcome::Done;
        }
        if (!CrkPathUtilities::AssurePathExists(m_path)) {
            rk::LogTroubles::Note(rk::LogStep::MakeFolder, openError);
            throw CrkLogException(m_path.ToUtf8());
        }
        return Outcome::FolderWasMissing;
    }
    const bool isAlone = lock && file.IsLocked();
    hasGivenUp = !isAlone;
    if (!isAlone)
        rk::LogTroubles::Note(rk::LogStep::Lock, std::make_error_code(std::errc::timed_out));
    else if (!file.IsAsLeft())
        rk::MendTail(file);
    if (const std::error_code error = file.Append(entry)) {
        rk::LogTroubles::Note(rk::LogStep::Write, error);
        throw new CFileException(CFileException::ErrnoToException(error.value()), error.value(),
                                 m_path + m_activeFileName);
    }

    // The entry is in the file: from here on no failure may be told by an exception.
    if (isAlone) {
        // Under the file's lock no other writer writes to it or moves it, but it may have been moved before the lock.
        if (file.ByteCount() > m_maxFileLength && file.StandsAt(nativePath))
            Bak();
        file.Remember(std::move(nativePath), left);
    }
    if (const std::error_code error = file.Close())
        rk::LogTroubles::Note(rk::LogStep::Close, error);
    return Outcome::Done;
}

rk::LogState CrkLogWriter::GetLogState() {
    using Mode = rk::LogState::Mode;
    rk::LogState state;
    state.lastFailure = rk::LogTroubles::LastFailure();
    state.droppedEntries = rk::LogTroubles::DroppedEntries();
    if (m_pLogSettings == nullptr)
        return state;
    state.settingsFile = m_pLogSettings->Path().ToUtf8();
    state.settingsFault = m_pLogSettings->Fault();
    if (!state.settingsFault.empty())
        state.mode = Mode::BadSettings;
    else
        state.mode = m_pLogSettings->m_enable ? Mode::On : Mode::Disabled;
    return state;
}
