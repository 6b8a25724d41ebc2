#include "RkUtilities/logging/CrkLogSettings.h"

#include "RkUtilities/foundation/NativePath.h"
#include "RkUtilities/logging/detail/LogEntryText.h"
#include "RkUtilities/platform/xml/XmlReader.h"

#include <algorithm>
#include <functional>
#include <iterator>
#include <map>
#include <optional>
#include <string_view>
#include <vector>

namespace {

std::optional<rk::ErkLogLevel> LevelOf(std::string_view text) {
    const auto* const found = std::find(std::begin(rk::kLevelNames), std::end(rk::kLevelNames), text);
    if (found == std::end(rk::kLevelNames))
        return std::nullopt;
    return static_cast<rk::ErkLogLevel>(found - std::begin(rk::kLevelNames));
}

// Gathers the texts of a settings file by the names of their elements; they count once the file was read to its end.
class SettingsReceiver final : public rk::platform::XmlReceiver {
public:
    void ElementBegins(std::string_view qualifiedName) override {
        if (++m_depth != kDepthOfSettings)
            return;
        if (const auto setting = m_texts.find(qualifiedName); setting != m_texts.end())
            m_text = &setting->second.emplace_back();
    }
    void Text(std::string_view piece) override {
        if (m_text != nullptr)
            *m_text += piece;
    }
    void ElementEnds() override {
        if (m_depth-- == kDepthOfSettings)
            m_text = nullptr;
    }

    // All texts of a setting in the order of the file.
    [[nodiscard]] const std::vector<std::string>& All(const char* name) const { return m_texts.find(name)->second; }
    // The first text of a setting, which decides; "" for a setting that is not in the file.
    [[nodiscard]] std::string First(const char* name) const { return All(name).empty() ? "" : All(name).front(); }

private:
    static constexpr int kDepthOfSettings = 2;

    std::map<std::string, std::vector<std::string>, std::less<>> m_texts = {
        {"ls:Enable", {}}, {"ls:StdOut", {}}, {"ls:Level", {}}, {"ls:IncludeCategory", {}}, {"ls:ExcludeCategory", {}}};
    std::string* m_text = nullptr;  // of the setting that is being read
    int m_depth = 0;                // of the innermost open element; the root's is 1
};

}  // namespace

CrkLogSettings::CrkLogSettings(const CString& settingsPath) : m_path(settingsPath) {
    constexpr unsigned int kBucketCount = 64;
    m_includeCategories.InitHashTable(kBucketCount);
    m_excludeCategories.InitHashTable(kBucketCount);
    SettingsReceiver said;
    m_fault = rk::platform::ReadXmlFile(rk::NativePath(settingsPath), said);
    if (!m_fault.empty())
        return;
    m_enable = said.First("ls:Enable") == "true";
    m_stdOut = said.First("ls:StdOut") == "true";
    m_level = LevelOf(said.First("ls:Level")).value_or(m_level);
    for (const std::string& category : said.All("ls:IncludeCategory")) {
        if (category == "*")
            m_includeAll = true;
        else
            m_includeCategories.SetAt(category, true);
    }
    for (const std::string& category : said.All("ls:ExcludeCategory"))
        m_excludeCategories.SetAt(category, true);
}

CrkLogSettings::~CrkLogSettings() = default;
