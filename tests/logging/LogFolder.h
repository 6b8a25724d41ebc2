#pragma once

#include "RkUtilities/logging/CrkLogWriter.h"

#include "../support/ScopedFolder.h"

#include <algorithm>
#include <filesystem>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

/// A folder with settings and a log, and the writer switched on for it; all of it goes with the object.
class LogFolder : public ScopedFolder {
public:
    static constexpr const char* kEverything =
        "<x><ls:Enable>true</ls:Enable><ls:IncludeCategory>*</ls:IncludeCategory></x>";

    explicit LogFolder(std::string_view settings = kEverything, std::string_view logName = "log/") : m_logName(logName)
    {
        Write("settings.xml", settings);
        Init();
    }
    ~LogFolder()
    {
        CrkLogWriter::Uninitialize();
        CrkLogWriter::m_maxFileLength = 20'000'000;
    }
    void Init() const { CrkLogWriter::Init(Text("settings.xml"), Text(m_logName)); }
    std::string Active() const { return m_logName + "messages.xml"; }
    std::string ActivePath() const { return Path(Active()); }
    /// The names of what stands in the log's folder beside the active file.
    std::vector<std::string> Backups() const
    {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(Path(m_logName))) {
            if (entry.path() != ActivePath())
                names.push_back(m_logName + entry.path().filename().string());
        }
        return names;
    }

private:
    std::string m_logName;
};

/// The seven fields of a whole entry without its line feed, timestamp to body; none of anything else.
inline std::vector<std::string> Fields(std::string_view entry)
{
    std::vector<std::string> fields;
    std::string begin = "<l:LogEntry>";
    for (const std::string tag :
         {"l:Timestamp>", "l:Tid>", "l:Category>", "l:Severity>", "l:Id>", "l:Description>", "l:Body>"}) {
        begin += "<" + tag;
        const std::size_t end = entry.find("</" + tag);
        if (!entry.starts_with(begin) || end == entry.npos)
            return {};
        fields.emplace_back(entry.substr(begin.size(), end - begin.size()));
        entry.remove_prefix(end + 2 + tag.size());
        begin.clear();
    }
    const bool isWhole = entry == "</l:LogEntry>" &&
                         fields[1].find_first_not_of("0123456789abcdef") == std::string::npos &&
                         fields[0].find_last_not_of("0123456789") == fields[0].rfind(':') && fields[4].size() == 36;
    return isWhole ? fields : std::vector<std::string>();
}

/// Some fields of each entry in a log file, "category/severity/body"; what is no whole entry gives "torn: " and its
/// bytes.
inline std::vector<std::string> Entries(std::string_view file, std::initializer_list<std::size_t> wanted = {2, 3, 6})
{
    std::vector<std::string> entries;
    for (std::size_t end; !file.empty(); file.remove_prefix(std::min(end + 1, file.size()))) {
        end = file.find('\n');
        const std::vector<std::string> fields = Fields(file.substr(0, end));
        const bool isWhole = end != file.npos && !fields.empty();
        entries.push_back(isWhole ? "" : "torn: " + std::string(file.substr(0, end)));
        for (const std::size_t field : isWhole ? wanted : std::initializer_list<std::size_t>())
            entries.back() += (field == *wanted.begin() ? "" : "/") + fields[field];
        if (end == file.npos)
            break;
    }
    return entries;
}
