#include "RkUtilities/logging/CrkLogWriter.h"

#include "RkUtilities/foundation/CFileException.h"
#include "RkUtilities/foundation/NativePath.h"
#include "RkUtilities/logging/CrkLogException.h"
#include "RkUtilities/logging/LogEntryText.h"
#include "RkUtilities/logging/LogFileTail.h"
#include "RkUtilities/paths/CrkPathUtilities.h"
#include "RkUtilities/platform/AppendFile.h"
#include "RkUtilities/platform/DateText.h"
#include "RkUtilities/platform/Files.h"
#include "RkUtilities/platform/Threads.h"

#include <cstdio>
#include <memory>
#include <string>
#include <system_error>
#include <utility>

// Destroyed after the static objects of all files, whose destructors may still log.
[[gnu::init_priority(101)]] constinit CString CrkLogWriter::m_path = CString::Literal(u"~/Corvane.Log/");
constinit CString CrkLogWriter::m_activeFileName = CString::Literal(u"messages.xml");
constinit CrkLogSettings* CrkLogWriter::m_pLogSettings = nullptr;
constinit bool CrkLogWriter::m_isInitialized = false;
constinit CrkLogWriter::ErkLogLevel CrkLogWriter::m_logLevel = LogDebug;
constinit std::uint64_t CrkLogWriter::m_maxFileLength = 20'000'000;
constinit std::mutex CrkLogWriter::m_mutex;
constinit const CString CrkLogWriter::c_generalCategory = CString::Literal(u"General");

namespace {

// The file that ended with a whole entry when we left it, and its length then: as long as both are the same, it still
// does. Guarded by CrkLogWriter::m_mutex.
struct KnownEnd {
    rk::platform::AppendFile::Identity file;
    std::uint64_t byteCount = 0;
    friend bool operator==(const KnownEnd&, const KnownEnd&) = default;
};
constinit KnownEnd lastEnd;

KnownEnd EndOf(const rk::platform::AppendFile& file)
{
    return {.file = file.WhichFile(), .byteCount = file.ByteCount()};
}

void Echo(const CString& message)
{
    const std::string bytes = message.ToUtf8();
    std::fwrite(bytes.data(), 1, bytes.size(), stderr);
}

bool IsMissingFolder(const std::error_code& error, const std::string& path)
{
    // ENOENT may also mean that the file is a link that leads nowhere.
    if (error == std::errc::no_such_file_or_directory)
        return !rk::platform::HasExistingFolder(path);
    return CFileException::ErrnoToException(error.value()) == CFileException::badPath;
}

void ThrowIfFailed(const std::error_code& error, const CString& path)
{
    if (error)
        throw new CFileException(CFileException::ErrnoToException(error.value()), error.value(), path);
}

}  // namespace

CrkLogWriter::~CrkLogWriter() = default;

CString CrkLogWriter::GetClassName() const
{
    return u"CrkLogWriter";
}

void CrkLogWriter::Init(const CString& settingsPath, const CString& logFolder)
{
    rk::platform::HoldAcrossForks(m_mutex);
    auto settings = std::make_unique<CrkLogSettings>(settingsPath);
    const bool isEnabled = settings->m_enable;
    if (isEnabled)
        rk::platform::DateTextFormat::Prepare();  // an entry's time is made while the lock is held
    {
        const std::lock_guard lock(m_mutex);
        m_path = logFolder;
        settings.reset(std::exchange(m_pLogSettings, settings.release()));
        m_isInitialized = true;
    }
    if (isEnabled)
        CrkPathUtilities::AssurePathExists(logFolder);  // a failure shows when an entry is to be written
}

void CrkLogWriter::Uninitialize()
{
    const std::lock_guard lock(m_mutex);
    m_isInitialized = false;
    delete std::exchange(m_pLogSettings, nullptr);
}

void CrkLogWriter::LogInternal(ErkLogLevel level, const CString& message, const CString& category,
                               const CString& description, CFUUIDBytes id)
{
    // Once more when the folder was made; somebody may remove it again, but not without end.
    if (TryToLog(level, message, category, description, id) == Outcome::FolderWasMissing &&
        TryToLog(level, message, category, description, id) == Outcome::FolderWasMissing)
        throw CrkLogException();
}

CrkLogWriter::Outcome CrkLogWriter::TryToLog(ErkLogLevel level, const CString& message, const CString& category,
                                             const CString& description, const CFUUIDBytes& id)
{
    if (!Admits(level, category))
        return Outcome::Done;
    const std::lock_guard lock(m_mutex);
    if (m_pLogSettings->m_stdOut)
        Echo(message);

    const CString path = m_path + m_activeFileName;
    const std::string nativePath = rk::NativePath(path);
    rk::platform::AppendFile file;
    if (const std::error_code error = file.Open(nativePath, m_maxFileLength)) {
        if (!IsMissingFolder(error, nativePath))
            return Outcome::Done;
        if (!CrkPathUtilities::AssurePathExists(m_path))
            throw CrkLogException();
        return Outcome::FolderWasMissing;
    }

    if (EndOf(file) != lastEnd)
        rk::RemoveTornEntry(file);
    const CString entry = rk::LogEntryText(message, category, level, description, id);
    ThrowIfFailed(file.Append(entry.ToUtf8()), path);
    lastEnd = EndOf(file);

    // Still under the file's lock: nobody else writes to it or moves it. But it may have been moved before we had the
    // lock.
    if (file.ByteCount() > m_maxFileLength && file.StandsAt(nativePath))
        Bak();
    ThrowIfFailed(file.Close(), path);
    return Outcome::Done;
}
