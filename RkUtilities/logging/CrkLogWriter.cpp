#include "RkUtilities/logging/CrkLogWriter.h"

#include "RkUtilities/foundation/CFileException.h"
#include "RkUtilities/foundation/NativePath.h"
#include "RkUtilities/logging/CrkLogException.h"
#include "RkUtilities/logging/detail/LogEntryText.h"
#include "RkUtilities/logging/detail/LogFileTail.h"
#include "RkUtilities/paths/CrkPathUtilities.h"
#include "RkUtilities/platform/files/AppendFile.h"
#include "RkUtilities/platform/files/FileFacts.h"
#include "RkUtilities/platform/process/Threads.h"

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

// The file's length when we left it, with a whole entry at its end. Guarded by CrkLogWriter::m_mutex.
constinit std::uint64_t lastByteCount = 0;

// The active file's path in bytes, made again when its text has changed, and each time when it depends on the
// environment, as one that begins with "~" does.
struct ActivePath {
    CString folder;
    CString name;
    std::string native = rk::NativePath(folder + name);

    [[nodiscard]] bool IsOf(const CString& otherFolder, const CString& otherName) const
    {
        return !folder.IsEmpty() && folder.GetAt(0) != u'~' && IsAlike(folder, otherFolder) && IsAlike(name, otherName);
    }

    // A text that is still the one we copied shares its units with the copy.
    static bool IsAlike(const CString& kept, const CString& text)
    {
        return kept.begin() == text.begin() ? kept.GetLength() == text.GetLength() : kept == text;
    }
};
// Guarded by CrkLogWriter::m_mutex. Destroyed when CrkLogWriter::m_path is.
[[gnu::init_priority(101)]] constinit std::unique_ptr<const ActivePath> activePath;

const std::string& NativeActivePath()
{
    const CString& folder = CrkLogWriter::m_path;
    const CString& name = CrkLogWriter::m_activeFileName;
    if (activePath == nullptr || !activePath->IsOf(folder, name))
        activePath = std::make_unique<const ActivePath>(ActivePath{.folder = folder, .name = name});
    return activePath->native;
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

void ThrowIfFailed(const std::error_code& error)
{
    if (error)
        throw new CFileException(CFileException::ErrnoToException(error.value()), error.value(),
                                 CrkLogWriter::m_path + CrkLogWriter::m_activeFileName);
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
        static_cast<void>(
            CurrentTimeString(kCFDateFormatterShortStyle));  // the format of an entry's time, while there is memory
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

    const std::string& nativePath = NativeActivePath();
    rk::platform::AppendFile file;
    if (const std::error_code error = file.Open(nativePath, m_maxFileLength, lastByteCount)) {
        if (!IsMissingFolder(error, nativePath))
            return Outcome::Done;
        if (!CrkPathUtilities::AssurePathExists(m_path))
            throw CrkLogException();
        return Outcome::FolderWasMissing;
    }

    if (!file.IsAsLeft())
        rk::RemoveTornEntry(file);
    rk::EntryBytes entry;
    rk::AppendEntry(entry, message, category, level, description, id);
    ThrowIfFailed(file.Append(entry.View()));
    lastByteCount = file.ByteCount();

    // Still under the file's lock: nobody else writes to it or moves it. But it may have been moved before we had the
    // lock.
    if (file.ByteCount() > m_maxFileLength && file.StandsAt(nativePath))
        Bak();
    ThrowIfFailed(file.Close());
    return Outcome::Done;
}
