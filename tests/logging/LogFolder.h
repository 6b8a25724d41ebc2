#pragma once

#include "RkUtilities/logging/CrkLogWriter.h"

#include "../support/ScopedFolder.h"

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

inline constexpr std::string_view kEverything =
    "<settings><ls:Enable>true</ls:Enable><ls:IncludeCategory>*</ls:IncludeCategory></settings>";

/// A folder with settings and a log, and the writer switched on for it; all of it goes with the object.
class LogFolder : public ScopedFolder {
public:
    explicit LogFolder(std::string_view settings = kEverything, std::string_view logName = "log/")
        : m_log(Path(logName))
    {
        Write("settings.xml", settings);
        Init();
    }
    ~LogFolder()
    {
        CrkLogWriter::Uninitialize();
        CrkLogWriter::m_maxFileLength = 20'000'000;
    }
    void Init() const { CrkLogWriter::Init(Text("settings.xml"), rk::PathText(m_log)); }
    const std::string& Log() const { return m_log; }
    std::string ActiveFile() const { return m_log + "messages.xml"; }
    std::vector<std::string> Backups() const
    {
        std::vector<std::string> paths;
        for (const auto& entry : std::filesystem::directory_iterator(m_log)) {
            if (entry.path() != ActiveFile())
                paths.push_back(entry.path());
        }
        return paths;
    }

private:
    std::string m_log;
};

inline std::string ReadAll(const std::string& path)
{
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

inline void WriteAll(const std::string& path, std::string_view bytes)
{
    std::ofstream(path, std::ios::binary) << bytes;
}

/// The seven fields of a whole entry without its line feed, timestamp to body; none of anything else.
inline std::vector<std::string> Fields(std::string_view entry)
{
    std::vector<std::string> fields;
    std::string_view mark = "<l:LogEntry>";
    for (const std::string_view name : {"Timestamp", "Tid", "Category", "Severity", "Id", "Description", "Body"}) {
        const std::string begin = std::string(mark) + "<l:" + std::string(name) + ">",
                          end = "</l:" + begin.substr(begin.rfind(':') + 1);
        const std::size_t length = entry.find(end, begin.size());
        if (!entry.starts_with(begin) || length == entry.npos)
            return {};
        fields.emplace_back(entry.substr(begin.size(), length - begin.size()));
        entry.remove_prefix(length + end.size());
        mark = "";
    }
    const bool isWhole = entry == "</l:LogEntry>" &&
                         fields[1].find_first_not_of("0123456789abcdef") == std::string::npos &&
                         fields[0].find_last_not_of("0123456789") == fields[0].rfind(':') && fields[4].size() == 36;
    return isWhole ? fields : std::vector<std::string>();
}

/// The entries in the bytes of a log file as "category/severity/body"; what is no whole entry gives "torn: " and its
/// bytes.
inline std::vector<std::string> Entries(std::string_view bytes)
{
    std::vector<std::string> entries;
    while (!bytes.empty()) {
        const std::size_t length = std::min(bytes.find('\n'), bytes.size());
        const std::vector<std::string> fields = Fields(bytes.substr(0, length));
        entries.push_back(fields.empty() || length == bytes.size() ? "torn: " + std::string(bytes.substr(0, length))
                                                                   : fields[2] + "/" + fields[3] + "/" + fields[6]);
        bytes.remove_prefix(std::min(length + 1, bytes.size()));
    }
    return entries;
}
