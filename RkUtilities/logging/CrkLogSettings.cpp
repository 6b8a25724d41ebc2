#include "RkUtilities/logging/CrkLogSettings.h"

#include "RkUtilities/foundation/NativePath.h"
#include "RkUtilities/platform/xml/XmlReader.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>

namespace {

using Categories = CAtlMap<CString, bool>;

Categories NoCategories()
{
    constexpr unsigned int kBucketCount = 64;
    Categories categories;
    categories.InitHashTable(kBucketCount);
    return categories;
}

// Indexed by level.
constexpr std::string_view kLevelTexts[] = {"LogEmergency", "LogCritical", "LogError", "LogWarning",
                                            "LogNotice",    "LogInfo",     "LogDebug"};

std::optional<rk::ErkLogLevel> LevelOf(std::string_view text)
{
    const auto* const found = std::find(std::begin(kLevelTexts), std::end(kLevelTexts), text);
    if (found == std::end(kLevelTexts))
        return std::nullopt;
    return static_cast<rk::ErkLogLevel>(found - std::begin(kLevelTexts));
}

// Gathers what a settings file says; it counts only once the file was read to its end.
class SettingsReceiver final : public rk::platform::XmlReceiver {
public:
    void ElementBegins(std::string_view qualifiedName) override
    {
        if (++m_depth == kDepthOfSettings)
            m_reader = ReaderOf(qualifiedName);
    }
    void Text(std::string_view piece) override
    {
        if (m_reader != nullptr)
            m_text += piece;
    }
    void ElementEnds() override
    {
        if (m_depth-- != kDepthOfSettings || m_reader == nullptr)
            return;
        (this->*m_reader)();
        m_reader = nullptr;
        m_text.clear();
    }

    std::optional<bool> m_enable;
    std::optional<bool> m_stdOut;
    std::optional<std::optional<rk::ErkLogLevel>> m_level;  // the inner one is empty for a text that names no level
    bool m_includeAll = false;
    Categories m_included = NoCategories();
    Categories m_excluded = NoCategories();

private:
    using Reader = void (SettingsReceiver::*)();
    static constexpr int kDepthOfSettings = 2;

    static Reader ReaderOf(std::string_view qualifiedName)
    {
        struct Setting {
            std::string_view name;
            Reader reader;
        };
        static constexpr Setting kSettings[] = {
            {"ls:Enable", &SettingsReceiver::ReadEnable},
            {"ls:StdOut", &SettingsReceiver::ReadStdOut},
            {"ls:Level", &SettingsReceiver::ReadLevel},
            {"ls:IncludeCategory", &SettingsReceiver::ReadIncludedCategory},
            {"ls:ExcludeCategory", &SettingsReceiver::ReadExcludedCategory},
        };
        const auto* const found = std::find_if(std::begin(kSettings), std::end(kSettings),
                                               [&](const Setting& setting) { return setting.name == qualifiedName; });
        return found == std::end(kSettings) ? nullptr : found->reader;
    }

    void ReadEnable() { m_enable = m_enable.value_or(m_text == "true"); }
    void ReadStdOut() { m_stdOut = m_stdOut.value_or(m_text == "true"); }
    void ReadLevel() { m_level = m_level.value_or(LevelOf(m_text)); }
    void ReadIncludedCategory()
    {
        if (m_text == "*")
            m_includeAll = true;
        else
            m_included.SetAt(m_text, true);
    }
    void ReadExcludedCategory() { m_excluded.SetAt(m_text, true); }

    int m_depth = 0;  // of the innermost open element; the root's is 1
    Reader m_reader = nullptr;
    std::string m_text;
};

}  // namespace

CrkLogSettings::CrkLogSettings(const CString& settingsPath)
    : m_includeCategories(NoCategories()), m_excludeCategories(NoCategories()), m_path(settingsPath)
{
    SettingsReceiver said;
    m_fault = rk::platform::ReadXmlFile(rk::NativePath(settingsPath), said);
    if (!m_fault.empty())
        return;
    m_enable = said.m_enable.value_or(false);
    m_stdOut = said.m_stdOut.value_or(false);
    if (said.m_level && *said.m_level)
        m_level = **said.m_level;
    m_includeAll = said.m_includeAll;
    m_includeCategories = std::move(said.m_included);
    m_excludeCategories = std::move(said.m_excluded);
}

CrkLogSettings::~CrkLogSettings() = default;
