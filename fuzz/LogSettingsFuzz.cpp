// A settings file of any bytes is applied as a whole or not at all, the same each time, and never expands an entity.
#include "fuzz/Fuzz.h"

namespace {

const std::string kEnabled = "<ls:Enable>true</ls:Enable>";

CrkLogSettings Applied(const std::string& bytes) {
    static const ScopedFolder folder;
    return CrkLogSettings(folder.Write("settings", bytes));
}

bool AreDefaults(const CrkLogSettings& settings) {
    return !settings.m_enable && !settings.m_stdOut && !settings.m_includeAll && settings.m_level == rk::LogDebug &&
           settings.m_includeCategories.IsEmpty() && settings.m_excludeCategories.IsEmpty();
}

}  // namespace

void Try(FuzzedDataProvider& data) {
    const std::string bytes = data.ConsumeRemainingBytesAsString();
    const CrkLogSettings settings = Applied(bytes), again = Applied(bytes);
    Require(settings.m_level >= rk::LogEmergency && settings.m_level <= rk::LogDebug);
    Require(settings.m_enable == again.m_enable && settings.m_includeCategories == again.m_includeCategories &&
            settings.m_excludeCategories == again.m_excludeCategories && !settings.IsIncluded(u"*"));
    for (const auto& [name, isListed] : settings.m_excludeCategories)
        Require(isListed && static_cast<std::size_t>(name.GetLength()) <= bytes.size());

    // Behind whatever is well-formed the first setting still decides; in front of half a document nothing counts.
    if (bytes.find("<!DOCTYPE") == std::string::npos && bytes.find("<?") == std::string::npos) {
        const CrkLogSettings within = Applied("<x>" + kEnabled + "<y>" + bytes + "</y></x>");
        Require(within.m_enable || AreDefaults(within));
    }
    Require(AreDefaults(Applied("<x>" + kEnabled + bytes)) || bytes.find("</") != std::string::npos);
}
