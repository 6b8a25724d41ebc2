#include "RkUtilities/logging/CrkLogSettings.h"

#include "RkUtilities/foundation/NativePath.h"
#include "RkUtilities/logging/detail/LogEntryText.h"
#include "RkUtilities/platform/xml/XmlReader.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace {

std::optional<rk::ErkLogLevel> LevelOf(std::string_view text) {
    const auto* const found = std::find(std::begin(rk::kLevelNames), std::end(rk::kLevelNames), text);
    if (found == std::end(rk::kLevelNames))
        return std::nullopt;
    return static_cast<rk::ErkLogLevel>(found - std::begin(rk::kLevelNames));
}

}  // namespace

CrkLogSettings::CrkLogSettings(const CString& settingsPath) : m_path(settingsPath) {
    constexpr unsigned int kBucketCount = 64;
    m_includeCategories.InitHashTable(kBucketCount);
    m_excludeCategories.InitHashTable(kBucketCount);
    // The texts by the names of their elements, in the order of the file; they count once it was read to its end.
    std::map<std::string_view, std::vector<std::string>> said = {
        {"ls:Enable", {}}, {"ls:StdOut", {}}, {"ls:Level", {}}, {"ls:IncludeCategory", {}}, {"ls:ExcludeCategory", {}}};
    m_fault =
        rk::platform::ReadXmlFile(rk::NativePath(settingsPath), [&](std::string_view name, std::string_view text) {
            if (const auto setting = said.find(name); setting != said.end())
                setting->second.emplace_back(text);
        });
    constexpr std::size_t kMostCategories = 10'000;  // whose hashes may all be alike
    const std::size_t longer = std::max(said["ls:IncludeCategory"].size(), said["ls:ExcludeCategory"].size());
    if (m_fault.empty() && longer > kMostCategories)
        m_fault = "more than 10,000 categories";
    if (!m_fault.empty())
        return;
    const auto first = [&](std::string_view name) { return said[name].empty() ? "" : std::string_view(said[name][0]); };
    m_enable = first("ls:Enable") == "true";
    m_stdOut = first("ls:StdOut") == "true";
    m_level = LevelOf(first("ls:Level")).value_or(m_level);
    for (const std::string& category : said["ls:IncludeCategory"]) {
        if (category == "*")
            m_includeAll = true;
        else
            m_includeCategories.SetAt(category, true);
    }
    for (const std::string& category : said["ls:ExcludeCategory"])
        m_excludeCategories.SetAt(category, true);
}

CrkLogSettings::~CrkLogSettings() = default;
