// A settings file of any bytes is applied as a whole or not at all, the same each time, and never expands an entity.
#include "fuzz/Fuzz.h"

#include <sys/mman.h>

namespace {

const std::string kEnabled = "<ls:Enable>true</ls:Enable>";

/// A file in memory that holds the bytes and has a path.
class MemoryFile {
public:
    explicit MemoryFile(const std::string& bytes) : m_descriptor(memfd_create("settings", 0)) {
        Require(write(m_descriptor, bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size()));
    }
    ~MemoryFile() { close(m_descriptor); }
    MemoryFile(const MemoryFile&) = delete;
    MemoryFile& operator=(const MemoryFile&) = delete;
    CString Path() const { return "/proc/self/fd/" + std::to_string(m_descriptor); }

private:
    int m_descriptor;
};

bool AreDefaults(const CrkLogSettings& settings) {
    return !settings.m_enable && !settings.m_stdOut && !settings.m_includeAll && settings.m_level == rk::LogDebug &&
           settings.m_includeCategories.IsEmpty() && settings.m_excludeCategories.IsEmpty();
}

}  // namespace

void Try(FuzzedDataProvider& data) {
    const std::string bytes = data.ConsumeRemainingBytesAsString();
    const MemoryFile file(bytes);
    const CrkLogSettings settings(file.Path());
    const CrkLogSettings again(file.Path());
    Require(settings.m_level >= rk::LogEmergency && settings.m_level <= rk::LogDebug);
    Require(settings.m_enable == again.m_enable && settings.m_includeCategories == again.m_includeCategories &&
            settings.m_excludeCategories == again.m_excludeCategories && !settings.IsIncluded(u"*"));
    for (const auto& [name, isListed] : settings.m_excludeCategories)
        Require(isListed && static_cast<std::size_t>(name.GetLength()) <= bytes.size());

    // Behind whatever is well-formed the first setting still decides; in front of half a document nothing counts.
    if (bytes.find("<!DOCTYPE") == std::string::npos && bytes.find("<?") == std::string::npos) {
        const CrkLogSettings within(MemoryFile("<x>" + kEnabled + "<y>" + bytes + "</y></x>").Path());
        Require(within.m_enable || AreDefaults(within));
    }
    Require(AreDefaults(CrkLogSettings(MemoryFile("<x>" + kEnabled + bytes).Path())) ||
            bytes.find("</") != std::string::npos);
}
