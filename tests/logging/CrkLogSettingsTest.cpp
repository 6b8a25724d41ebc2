#include "RkUtilities/logging/CrkLogSettings.h"

#include "LogFolder.h"

#include <algorithm>
#include <ctime>
#include <gtest/gtest.h>
#include <sys/stat.h>

namespace {

/// What the settings say in one line: "E", "S", "A" for enable, standard error and all included, the level, then the
/// categories in order: "E-A3 +Cache -COM".
std::string Described(const CrkLogSettings& settings)
{
    std::string text;
    for (const auto& [flag, letter] :
         {std::pair(settings.m_enable, 'E'), {settings.m_stdOut, 'S'}, {settings.m_includeAll, 'A'}})
        text += flag ? letter : '-';
    text += std::to_string(settings.m_level);
    std::vector<std::string> names;
    for (const auto& [name, isListed] : settings.m_includeCategories)
        names.push_back(" +" + name.ToUtf8() + (isListed && settings.IsIncluded(name) ? "" : "?"));
    for (const auto& [name, isListed] : settings.m_excludeCategories)
        names.push_back(" -" + name.ToUtf8() + (isListed && settings.IsExcluded(name) ? "" : "?"));
    std::sort(names.begin(), names.end());
    for (const std::string& name : names)
        text += name;
    return text;
}

std::string Read(std::string_view document)
{
    const LogFolder folder(document);
    return Described(CrkLogSettings(folder.Text("settings.xml")));
}

std::string Repeated(std::string_view part, std::size_t count)
{
    std::string text;
    text.reserve(part.size() * count);
    while (count-- > 0)
        text += part;
    return text;
}

const std::string kOn = "<ls:Enable>true</ls:Enable>";

TEST(LogSettings, AreWhatTheRootsChildrenSay)
{
    const auto inRoot = [](const std::string& children) { return "<x>" + children + "</x>"; };
    const std::pair<std::string, const char*> cases[] = {
        {inRoot(kOn + "<ls:StdOut>true</ls:StdOut><ls:Level>LogWarning</ls:Level><ls:IncludeCategory>*"
                      "</ls:IncludeCategory><ls:ExcludeCategory>VerboseCOM</ls:ExcludeCategory>"),
         "ESA3 -VerboseCOM"},
        {"<x xmlns:ls='urn:a'>" + kOn + "</x>", "E--6"},
        {"<?xml version='1.0' encoding='ISO-8859-1'?><ls:Enable>" + kOn + "</ls:Enable>", "E--6"},
        {"\xEF\xBB\xBF<!DOCTYPE x SYSTEM 'file:///dev/zero'><x>" + kOn + "</x><!--end-->\n", "E--6"},
        {"<!DOCTYPE x [<!ELEMENT x ANY><!ATTLIST x a CDATA 'b'>]><x>" + kOn + "</x>", "E--6"},
        {inRoot("<ls:Enable>True</ls:Enable>"), "---6"},
        {inRoot("<ls:Enable>true </ls:Enable>"), "---6"},
        {inRoot("<ls:Enable>\ntrue</ls:Enable>"), "---6"},
        {inRoot("<ls:Enable>1</ls:Enable>" + kOn), "---6"},  // the last one taken, or the first good one
        {inRoot("<ls:Enable/>" + kOn), "---6"},
        {inRoot(kOn + "<ls:Enable>false</ls:Enable>"), "E--6"},
        {inRoot("<Enable>true</Enable><l:Enable>true</l:Enable><ls:enable>true</ls:enable>"), "---6"},
        {inRoot("<y>" + kOn + "</y>"), "---6"},
        {"<ls:Enable>true</ls:Enable>", "---6"},  // the root itself is no setting
        {inRoot("<ls:Enable a='false'>t<b>r<!--x--></b><![CDATA[u]]>&#101;</ls:Enable>"), "E--6"},
        {inRoot("<ls:Level>Warning</ls:Level>"), "---6"},
        {inRoot("<ls:Level>Warning</ls:Level><ls:Level>LogError</ls:Level>"), "---6"},
        {inRoot("<ls:Level>LogEmergency</ls:Level><ls:Level>LogError</ls:Level>"), "---0"},
        {inRoot("<ls:Level>LogCritical</ls:Level>"), "---1"},
        {inRoot("<ls:Level>LogError</ls:Level>"), "---2"},
        {inRoot("<ls:Level>LogNotice</ls:Level>"), "---4"},
        {inRoot("<ls:Level>LogInfo</ls:Level>"), "---5"},
        {inRoot("<ls:Level>LogDebug</ls:Level>"), "---6"},
        {inRoot("<ls:IncludeCategory>a</ls:IncludeCategory><ls:IncludeCategory>A</ls:IncludeCategory>"
                "<ls:IncludeCategory>a</ls:IncludeCategory><ls:IncludeCategory/>"),
         "---6 + +A +a"},
        {inRoot("<ls:ExcludeCategory>*</ls:ExcludeCategory><ls:ExcludeCategory> &lt;\xC3\xA9 </ls:ExcludeCategory>"),
         "---6 - <\xC3\xA9  -*"},
        {"<x>" + Repeated(" ", 9'000'000) + kOn + "</x>", "E--6"},  // many blocks; honest files may be large
    };
    for (const auto& [document, expected] : cases)
        EXPECT_EQ(Read(document), expected) << document.substr(0, 300);
}

TEST(LogSettings, TakeManyCategories)
{
    std::string document = "<x>" + kOn;
    for (int i = 0; i < 5'000; ++i)
        document += "<ls:ExcludeCategory>" + std::to_string(i) + "</ls:ExcludeCategory>";
    const LogFolder folder(document + "</x>");
    const CrkLogSettings settings{folder.Text("settings.xml")};
    EXPECT_EQ(settings.m_excludeCategories.GetCount(), 5'000U);
    EXPECT_TRUE(settings.IsExcluded(u"4999") && !settings.IsExcluded(u"5000") && !settings.IsIncluded(u"1"));
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
        "<x>" + kOn + "</x>\xFF",
        "<x>" + kOn + "</y>",
        "<x>" + kOn + std::string("</x>\0", 5),
        "<x><ls:Enable>true\xC3</ls:Enable></x>",
        "<?xml version='1.0' encoding='KOI8-R'?><x>" + kOn + "</x>",
        laughs + "]><x>" + kOn + "<y>&a39;</y></x>",
        "<!DOCTYPE x [<!ENTITY t 'true'>]><x><ls:Enable>&t;</ls:Enable></x>",
        "<!DOCTYPE x [<!ENTITY t SYSTEM 'file:///etc/passwd'>]><x>" + kOn + "<y>&t;</y></x>",
        "<!DOCTYPE x [<!ENTITY % p SYSTEM 'file:///dev/zero'> %p;]><x>" + kOn + "</x>",
        "<!DOCTYPE x SYSTEM 'file:///dev/zero'><x>" + kOn + "<y>&t;</y></x>",
        "<x>" + kOn + "<y>&t;</y></x>",
        defaults + "]><x>" + kOn + Repeated("<y/>", 1'000'000) + "</x>",
        "<x>" + kOn + Repeated("<y>", 30'000'000),
        "<x>" + kOn + "<" + Repeated("y", 100'000'000),
        "<x>" + kOn + "<y a='" + Repeated("&#65;", 20'000'000),
        "<x>" + kOn + "<!--" + Repeated("-x", 5'000'000),
    };
    const LogFolder folder;
    const CString path(folder.Path("settings.xml"));
    const auto expectOff = [&](const std::string& what) {
        const std::clock_t begin = std::clock();  // computing time: what else the machine does is no fault
        EXPECT_EQ(Described(CrkLogSettings(path)), "---6") << what;
        EXPECT_LT(std::clock() - begin, CLOCKS_PER_SEC) << what;
    };
    for (const std::string& document : documents) {
        WriteAll(folder.Path("settings.xml"), document);
        expectOff(document.substr(0, 100));
    }
    std::filesystem::resize_file(folder.Path("settings.xml"), 1ULL << 40);
    expectOff("a terabyte of zeros after a comment");

    std::filesystem::remove(folder.Path("settings.xml"));
    expectOff("nothing");
    std::filesystem::create_symlink("/dev/zero", folder.Path("settings.xml"));
    expectOff("an endless device");
    std::filesystem::remove(folder.Path("settings.xml"));
    ASSERT_EQ(mkfifo(folder.Path("settings.xml").c_str(), 0600), 0);
    expectOff("a pipe without a writer");
    std::filesystem::remove(folder.Path("settings.xml"));
    std::filesystem::create_directory(folder.Path("settings.xml"));
    expectOff("a folder");
}

}  // namespace
