#include "tests/faults/Injection.h"
#include "tests/faults/Workload.h"

#include <sys/wait.h>
#include <unistd.h>

namespace faults {
namespace {

using Log = CrkLogWriter;

constexpr const char* kSettings = "<x><ls:Enable>true</ls:Enable><ls:IncludeCategory>*</ls:IncludeCategory></x>";

void Begin(Scene& scene) { scene.Make({{"settings.xml", kSettings}}); }

void WithLog(Scene& scene) {
    Log::Uninitialize();
    Log::m_maxFileLength = 20'000'000;
    Begin(scene);
    Log::Init(scene.Text("settings.xml"), scene.Text("log/"));
    Log::Log(Log::LogInfo, u"the first entry");
}

void WithFullLog(Scene& scene) {
    WithLog(scene);
    Log::m_maxFileLength = 10;
}

/// What the first call since `Init` did with an entry: it was written, or dropped and counted.
std::string Logged(const CString& message) {
    Log::Log(Log::LogWarning, message, u"Category", u"description");
    Disarm();
    return Log::GetLogState().droppedEntries == 0 ? "logged" : "dropped";
}

void Set(const CString& name, const CString& value) {
    SECRegistry preferences;
    preferences.Connect(1, u"", false);
    preferences.SetValue(name, value);
}

void WithPreferences(Scene&) {
    rk::SetApplicationName("laboratory");
    Set(u"theme", u"dark");
}

/// With a value that this process has not seen yet.
void WithAnothersPreferences(Scene& scene) {
    WithPreferences(scene);
    if (fork() == 0) {
        Set(u"folder", u"/maps");
        _exit(0);
    }
    wait(nullptr);
}

void WithName(Scene&) { rk::SetApplicationName("laboratory"); }

/// Sets a value, and tells what a reader in this process sees of it and of others.
std::string SetAndRead(std::uint32_t rootKey, bool isClosed) {
    SECRegistry preferences;
    preferences.Connect(rootKey, u"", false);
    preferences.SetValue(u"width", 4711);
    if (isClosed)
        preferences.Close();
    std::uint32_t width = 0;
    const bool isRead = preferences.GetValue(u"width", width);
    return Shown(isRead) + Shown(width);
}

const Workload kRows[] = {
    {"log: settings", &Begin,
     [](Scene& s) {
         const CrkLogSettings settings(s.Text("settings.xml"));
         return Shown(settings.m_enable) + Shown(settings.m_includeAll) + Shown(settings.Fault().empty());
     },
     "falsefalsefalse|CAtlException"},
    GIVES("log: start and first entry",
          (Log::Uninitialize(), Log::Init(s.Text("settings.xml"), s.Text("log/")),
           Log::CanLog(Log::LogInfo) ? Logged(u"entry") : "off"),
          "*", Keeps::Nothing),
    AFTER(&WithLog, "log: entry", Logged(u"an entry of some length, with & and %s"),
          "dropped|CFileException|CrkLogException"),
    AFTER(&WithLog, "log: start entry", (Log::LogStart(), true), "*", Keeps::Nothing),
    AFTER(&WithFullLog, "log: roll-over", Logged(u"an entry behind a full file"),
          "logged|dropped|CFileException|CrkLogException", Keeps::Nothing),
    AFTER(&WithName, "preferences: first use", SetAndRead(1, /*isClosed=*/false), "", Keeps::Later),
    AFTER(&WithPreferences, "preferences: set and close", SetAndRead(0, /*isClosed=*/true), "", Keeps::Later),
    AFTER(&WithPreferences, "preferences: delete",
          Shown(CrkRegistry::DeleteRegValue(u"theme")) + Shown(CrkRegistry::GetRegValueNames().size()), "CAtlException",
          Keeps::Nothing),
    {"preferences: lists", &WithPreferences,
     [](Scene& s) {
         SECRegistry preferences;
         preferences.Connect(1, u"", false);
         preferences.SetValue(u"names", CAtlArray<CString>{u"Łódź, and a longer name", u"Wien\n"});
         return Shown(preferences.GetValue(u"names", s.array)) + Shown(s.array.size());
     },
     "CAtlException", Keeps::Nothing},
    {"preferences: read", &WithAnothersPreferences,
     [](Scene&) {
         SECRegistry preferences;
         CString theme, folder;
         preferences.Open(u"", {});
         const bool isTheme = preferences.GetValue(u"theme", theme), isFolder = preferences.GetValue(u"folder", folder);
         return Shown(isTheme) + Shown(theme) + Shown(isFolder) + Shown(folder);
     },
     "truedarkfalse"},
};

}  // namespace

constinit const std::span<const Workload> kStorageWorkloads(kRows);

}  // namespace faults
