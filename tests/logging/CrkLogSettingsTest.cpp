#include "RkUtilities/logging/CrkLogSettings.h"

#include "LogFolder.h"

#include <ctime>
#include <set>
#include <sys/stat.h>

namespace {

/// What settings say in one line: "E", "S", "A" for enable, standard error and all included, the level, then the
/// categories in order: "E-A3 +Cache -COM".
std::string Described(const CrkLogSettings& settings)
{
    std::set<std::string> names;
    for (const auto& [name, isListed] : settings.m_includeCategories)
        names.insert(" +" + name.ToUtf8() + (isListed && settings.IsIncluded(name) ? "" : "?"));
    for (const auto& [name, isListed] : settings.m_excludeCategories)
        names.insert(" -" + name.ToUtf8() + (isListed && settings.IsExcluded(name) ? "" : "?"));
    std::string text = std::string(settings.m_enable ? "E" : "-") + (settings.m_stdOut ? "S" : "-") +
                       (settings.m_includeAll ? "A" : "-") + std::to_string(settings.m_level);
    for (const std::string& name : names)
        text += name;
    return text;
}

std::string Repeated(std::string_view part, std::size_t count)
{
    std::string text;
    while (count-- > 0)
        text += part;
    return text;
}

const std::string kOn = "<ls:Enable>true</ls:Enable>";

TEST(LogSettings, AreWhatTheRootsChildrenSay)
{
    const auto level = [](const char* text) { return "<ls:Level>" + std::string(text) + "</ls:Level>"; };
    const std::pair<std::string, const char*> children[] = {
        {kOn + level("LogWarning") +
             "<ls:StdOut>true</ls:StdOut><ls:IncludeCategory>*</ls:IncludeCategory>"
             "<ls:ExcludeCategory>VerboseCOM</ls:ExcludeCategory>",
         "ESA3 -VerboseCOM"},
        {"<ls:Enable>True</ls:Enable>", "---6"},
        {"<ls:Enable>\ntrue</ls:Enable>", "---6"},
        {"<ls:Enable>1</ls:Enable>" + kOn, "---6"},  // the last one taken, or the first good one
        {kOn + "<ls:Enable/>", "E--6"},
        {"<Enable>true</Enable><l:Enable>true</l:Enable><ls:enable>true</ls:enable>", "---6"},
        {"<y>" + kOn + "</y>", "---6"},
        {"<ls:Enable a='false'>t<b>r<!--x--></b><![CDATA[u]]>&#101;</ls:Enable>", "E--6"},
        {level("Warning") + level("LogError"), "---6"},
        {level("LogEmergency") + level("LogError"), "---0"},
        {level("LogCritical"), "---1"},
        {level("LogError"), "---2"},
        {level("LogNotice"), "---4"},
        {level("LogInfo"), "---5"},
        {"<ls:IncludeCategory>a</ls:IncludeCategory><ls:IncludeCategory>A</ls:IncludeCategory>"
         "<ls:IncludeCategory>a</ls:IncludeCategory><ls:IncludeCategory/>",
         "---6 + +A +a"},
        {"<ls:ExcludeCategory>*</ls:ExcludeCategory><ls:ExcludeCategory> &lt;\xC3\xA9 </ls:ExcludeCategory>",
         "---6 - <\xC3\xA9  -*"},
        {Repeated(" ", 5'000'000) + kOn, "E--6"},  // honest files may be large
    };
    const std::pair<std::string, const char*> documents[] = {
        {"<x xmlns:ls='urn:a'>" + kOn + "</x>", "E--6"},
        {"<?xml version='1.0' encoding='ISO-8859-1'?><ls:Enable>" + kOn + "</ls:Enable>", "E--6"},
        {"\xEF\xBB\xBF<!DOCTYPE x SYSTEM 'file:///dev/zero'><x>" + kOn + "</x><!--end-->\n", "E--6"},
        {"<!DOCTYPE x [<!ELEMENT x ANY><!ATTLIST x a CDATA 'b'>]><x>" + kOn + "</x>", "E--6"},
        {kOn, "---6"},  // the root itself is no setting
    };
    const ScopedFolder folder;
    const auto read = [&](const std::string& text) { return Described(CrkLogSettings(folder.Write("s.xml", text))); };
    for (const auto& [text, expected] : children)
        EXPECT_EQ(read("<x>" + text + "</x>"), expected) << text.substr(0, 300);
    for (const auto& [text, expected] : documents)
        EXPECT_EQ(read(text), expected) << text;
}

TEST(LogSettings, OfAHostileFileLeaveLoggingOffWithinASecond)
{
    std::string laughs = "<!DOCTYPE x [<!ENTITY a0 'true'>", defaults = "<!DOCTYPE x [";
    for (int i = 1; i < 40; ++i)
        laughs += "<!ENTITY a" + std::to_string(i) + " '" + Repeated("&a" + std::to_string(i - 1) + ";", 10) + "'>";
    for (int i = 0; i < 20'000; ++i)
        defaults += "<!ATTLIST y a" + std::to_string(i) + " CDATA ''>";
    const std::string documents[] = {
        "",
        "<x>" + kOn,
        "<x>" + kOn + "</x><x/>",
        "<x>" + kOn + "</y>",
        "<x>" + kOn + std::string("</x>\0", 5),
        "<x><ls:Enable>true\xC3</ls:Enable></x>",
        "<?xml version='1.0' encoding='KOI8-R'?><x>" + kOn + "</x>",
        laughs + "]><x>" + kOn + "<y>&a39;</y></x>",
        "<!DOCTYPE x [<!ENTITY t SYSTEM 'file:///etc/passwd'>]><x>" + kOn + "<y>&t;</y></x>",
        "<!DOCTYPE x [<!ENTITY % p SYSTEM 'file:///dev/zero'> %p;]><x>" + kOn + "</x>",
        "<!DOCTYPE x SYSTEM 'file:///dev/zero'><x>" + kOn + "<y>&t;</y></x>",
        defaults + "]><x>" + kOn + Repeated("<y/>", 1'000'000) + "</x>",
        "<x>" + kOn + Repeated("<y>", 10'000'000),
        "<x>" + kOn + "<" + Repeated("y", 30'000'000),
        "<x>" + kOn + "<y a='" + Repeated("&#65;", 10'000'000),
        "<x>" + kOn + "<!--" + Repeated("-x", 20'000'000),
    };
    const ScopedFolder folder;
    const auto expectOff = [&](const std::string& what) {
        const std::clock_t begin = std::clock();  // computing time: what else the machine does is no fault
        EXPECT_EQ(Described(CrkLogSettings(folder.Text("s.xml"))), "---6") << what;
        EXPECT_LT(std::clock() - begin, CLOCKS_PER_SEC) << what;
        std::filesystem::remove(folder.Path("s.xml"));
    };
    for (const std::string& document : documents) {
        folder.Write("s.xml", document);
        expectOff(document.substr(0, 100));
    }
    expectOff("nothing");
    folder.Write("s.xml", "<!--");
    std::filesystem::resize_file(folder.Path("s.xml"), 1ULL << 40);
    expectOff("a terabyte of zeros");
    folder.Link("s.xml", "/dev/zero");
    expectOff("an endless device");
    ASSERT_EQ(mkfifo(folder.Path("s.xml").c_str(), 0600), 0);
    expectOff("a pipe without a writer");
    folder.MakeFolder("s.xml");
    expectOff("a folder");
}

}  // namespace
