#pragma once

#include "tests/support/Test.h"

/// The text of a field of an entry.
inline std::string Field(std::string_view entry, const std::string& name) {
    const std::size_t begin = std::min(entry.find("<l:" + name + ">"), entry.size() - 1) + name.size() + 4;
    return std::string(entry.substr(std::min(begin, entry.size()), entry.find("</l:" + name + ">") - begin));
}

/// The entries of a log file as "category/severity/body"; what is no whole entry gives "torn".
inline std::vector<std::string> Entries(std::string_view file) {
    constexpr std::string_view kStart = "<l:LogEntry><l:Timestamp>", kEnd = "</l:LogEntry>\n";
    std::vector<std::string> entries;
    while (!file.empty()) {
        const std::string_view entry = file.substr(0, file.find('\n') + 1);
        const bool isWhole = entry.starts_with(kStart) && entry.rfind(kStart) == 0 && entry.ends_with(kEnd);
        entries.push_back(
            isWhole ? Field(entry, "Category") + "/" + Field(entry, "Severity") + "/" + Field(entry, "Body") : "torn");
        file.remove_prefix(entry.empty() ? file.size() : entry.size());
    }
    return entries;
}

/// A folder with settings and a log, and the writer switched on for it; all of it goes with the object.
class LogFolder : public ScopedFolder {
public:
    static constexpr const char* kEverything =
        "<x><ls:Enable>true</ls:Enable><ls:IncludeCategory>*</ls:IncludeCategory></x>";

    explicit LogFolder(std::string_view settings = kEverything, std::string_view logName = "log/")
        : m_logName(logName) {
        Write("settings.xml", settings);
        Init();
    }
    ~LogFolder() {
        CrkLogWriter::Uninitialize();
        CrkLogWriter::m_maxFileLength = 20'000'000;
    }
    void Init() const { CrkLogWriter::Init(Text("settings.xml"), Text(m_logName)); }
    std::string Active() const { return m_logName + "messages.xml"; }
    std::string ActivePath() const { return Path(Active()); }
    std::vector<std::string> Logged() const { return Entries(Read(Active())); }
    /// Puts something in the active file's place: "=content", "/", ">target", "|".
    void Replace(const std::string& kind) const {
        std::filesystem::remove_all(ActivePath());
        Make({Active() + kind});
    }
    /// The names of what stands in the log's folder beside the active file.
    std::vector<std::string> Backups() const {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(Path(m_logName)))
            if (entry.path() != ActivePath())
                names.push_back(m_logName + entry.path().filename().string());
        return names;
    }

private:
    std::string m_logName;
};
