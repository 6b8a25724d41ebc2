#include "tests/logging/LogFolder.h"

#include <set>

namespace {

/// What settings say in one line: "E", "S", "A" for enable, standard error and all included, the level, then the
/// categories in order: "E-A3 +Cache -COM".
std::string Described(const CrkLogSettings& settings) {
    std::set<std::string> names;
    for (const auto& [name, isListed] : settings.m_includeCategories)
        names.insert(" +" + name.ToUtf8());
    for (const auto& [name, isListed] : settings.m_excludeCategories)
        names.insert(" -" + name.ToUtf8());
    std::string text = std::string(settings.m_enable ? "E" : "-") + (settings.m_stdOut ? "S" : "-") +
                       (settings.m_includeAll ? "A" : "-") + std::to_string(settings.m_level);
    for (const std::string& name : names)
        text += name;
    return text;
}

std::string Repeated(std::string_view part, std::size_t count) {
    std::string text;
    while (count-- > 0)
        text += part;
    return text;
}

const std::string kOn = "<ls:Enable>true</ls:Enable>";

TEST(LogSettings, AreWhatTheRootsChildrenSayAndLeaveLoggingOffWhenHostile) {
    std::string defaults = "<!DOCTYPE x [";
    for (int i = 0; i < 20'000; ++i)
        defaults += "<!ATTLIST y a" + std::to_string(i) + " CDATA ''>";
    const std::pair<std::string, const char*> cases[] = {
        {"<x>" + kOn +
             "<ls:StdOut>true</ls:StdOut><ls:Level>LogWarning</ls:Level><ls:IncludeCategory>*</ls:IncludeCategory>"
             "<ls:ExcludeCategory>VerboseCOM</ls:ExcludeCategory></x>",
         "ESA3 -VerboseCOM"},
        {"<x xmlns:ls='urn:a'>" + kOn + "<ls:Enable/></x>", "E--6"},
        {"<x><Enable>true</Enable><l:Enable>true</l:Enable><y>" + kOn + "</y></x>", "---6"},
        {"<x><ls:Enable a='false'>t<b>r<!--x--></b><![CDATA[u]]>&#101;</ls:Enable></x>", "E--6"},
        {"<x><ls:Level>Warning</ls:Level><ls:Level>LogError</ls:Level></x>", "---6"},  // the first decides
        {"<x><ls:IncludeCategory>a</ls:IncludeCategory><ls:IncludeCategory>A</ls:IncludeCategory><ls:IncludeCategory/>"
         "<ls:ExcludeCategory>*</ls:ExcludeCategory><ls:ExcludeCategory> &lt;\xC3\xA9 </ls:ExcludeCategory></x>",
         "---6 + +A +a - <\xC3\xA9  -*"},
        {"\xEF\xBB\xBF<!DOCTYPE x SYSTEM 'file:///dev/zero'><x>" + kOn + "</x><!--end-->\n", "E--6"},
        {kOn, "---6"},  // the root itself is no setting
        {"<!DOCTYPE x SYSTEM 'file:///dev/zero'><x>" + kOn + "<y>&t;</y></x>", "---6"},
        {defaults + "]><x>" + kOn + Repeated("<y/>", 1'000'000) + "</x>", "---6"},  // minutes, if it were read
        {"<x>" + kOn + Repeated("<y>", 1'000'000) + Repeated("</y>", 1'000'000) + "</x>", "---6"},
        {"<x>" + kOn + "<" + std::string(8'000'000, 'y') + "/></x>", "E--6"},        // hours by small blocks
        {"<x>" + kOn + Repeated("<ls:IncludeCategory/>", 10'001) + "</x>", "---6"},  // their hashes may be alike
        {"<x>" + kOn + "</x>" + std::string(8'388'608 - 34, ' '), "E--6"},
        {"<x>" + kOn + "</x>" + std::string(8'388'609 - 34, ' '), "---6"},
    };
    const ScopedFolder folder;
    for (const auto& [document, expected] : cases) {
        folder.Write("s.xml", document);
        EXPECT_EQ(Described(CrkLogSettings(folder.Text("s.xml"))), expected) << document.substr(0, 200);
    }
    folder.Make({"endless>/dev/zero", "pipe without a writer|"});
    for (const char* const special : {"endless", "pipe without a writer"})
        EXPECT_EQ(Described(CrkLogSettings(folder.Text(special))), "---6") << special;
}

}  // namespace
