#include "mindmap/program/RunLog.h"

#include "mindmap/write/XmlStream.h"

#include <RkUtilities/foundation/CFile.h>
#include <RkUtilities/foundation/CFileException.h>
#include <RkUtilities/logging/CrkLogException.h>
#include <RkUtilities/paths/SECFileSystem.h>

#include <utility>

namespace mindmap {

namespace {

constexpr char16_t kSettings[] = uR"(<?xml version="1.0" encoding="UTF-8"?>
<settings xmlns:ls="urn:mindmap:log-settings">
  <ls:Enable>true</ls:Enable>
  <!-- LogEmergency, LogCritical, LogError, LogWarning, LogNotice, LogInfo, LogDebug: lesser entries are dropped -->
  <ls:Level>LogInfo</ls:Level>
  <ls:IncludeCategory>*</ls:IncludeCategory>
</settings>
)";

/// The log is XML, and what it tells of paths and outlines may hold anything.
CString Escaped(const CString& message) {
    CString escaped;
    const TextSink sink = [&](const CString& piece) { escaped += piece; };
    XmlStream xml(sink);
    xml.Text(message, Place::Content);
    xml.HandOnAll();
    return escaped;
}

}  // namespace

RunLog::RunLog(CString folder) : m_folder(std::move(folder)) {
    if (IsOff())
        return;
    if (m_folder.Right(1) != u"/")
        m_folder += u"/";
    const CString settingsPath = m_folder + u"settings.xml";
    Attempt([&] {
        ProvideSettings(settingsPath);
        CrkLogWriter::Init(settingsPath, m_folder);
        CrkLogWriter::LogStart();
    });
}

RunLog::~RunLog() {
    if (!IsOff())
        CrkLogWriter::Uninitialize();
}

void RunLog::ProvideSettings(const CString& path) {
    const SECFileSystem files;
    if (files.FileExists(path))
        return;
    if (!files.DirectoryExists(m_folder))
        files.MakeDirectory(m_folder);
    CFileException failure;
    CFile file;
    m_isBroken = !file.Open(path, CFile::modeReadWrite | CFile::modeCreate, &failure);
    if (m_isBroken)
        return;
    try {
        file.WriteString(kSettings);
        file.Close();
    } catch (CFileException*) {
        files.DeleteFile(path);  // half of the settings would switch the log off in every later run
        throw;
    }
}

void RunLog::Write(CrkLogWriter::ErkLogLevel level, const CString& message, const CString& category,
                   const CFUUIDBytes& topicId) {
    if (m_isBroken || IsOff())
        return;
    Attempt([&] { CrkLogWriter::Log(level, Escaped(message), category, topicId); });
}

void RunLog::Attempt(const std::function<void()>& call) {
    try {
        call();
    } catch (const CrkLogException&) {
        m_isBroken = true;
    } catch (CFileException* failure) {
        failure->Delete();
        m_isBroken = true;
    }
}

}  // namespace mindmap
