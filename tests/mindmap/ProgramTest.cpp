#include "mindmap/program/Program.h"
#include "../support/InChild.h"
#include "../support/ScopedCurrentFolder.h"
#include "../support/ScopedFileSizeLimit.h"
#include "../support/ScopedFolder.h"
#include "../support/ScopedVariable.h"
#include "MapInvariants.h"

#include <csignal>
#include <fstream>
#include <gtest/gtest.h>
#include <sstream>
#include <sys/stat.h>

using namespace mindmap;

namespace {

/// Runs of the program in a folder of their own, with settings of their own.
class Program : public testing::Test {
protected:
    static void SetUpTestSuite() {
        static const ScopedFolder settings;
        setenv("XDG_CONFIG_HOME", settings.Path().c_str(), 1);
    }

    std::string Put(std::string_view name, std::string_view content) const {
        m_folder.Write(name, content);
        return m_folder.Path(name);
    }

    int Run(const std::vector<std::string_view>& arguments) {
        m_out.str("");
        m_err.str("");
        m_in.clear();
        return RunProgram(arguments, m_in, m_out, m_err);
    }

    /// Status and all output of a run in a process of its own, as settings are read once.
    std::string RunAlone(const std::vector<std::string_view>& arguments) {
        return InChild([&] {
            const int status = Run(arguments);
            return std::to_string(status) + '\n' + m_err.str() + m_out.str();
        });
    }

    ScopedFolder m_folder;
    std::istringstream m_in;
    std::ostringstream m_out;
    std::ostringstream m_err;
};

TEST_F(Program, DrawsTheMapWithAGuidOnEveryTopicAndLogsTheRun) {
    const std::string outline = Put("plan.opml", R"(<opml><body><outline text='A &lt;&amp; "B"'>
        <outline text='C' url='https://x.org/?a&amp;b' amount='€ 1284.5'/><outline text='D' amount='1 EUR' url='javascript:alert(1)'/></outline></body></opml>)");
    const ScopedVariable maps("RK_MAPS", m_folder.Path().c_str());
    ASSERT_EQ(Run({outline, "-o", "%RK_MAPS%plan.svg", "--locale", "de_DE"}), 0) << m_err.str();
    EXPECT_EQ(m_err.str(), "");
    const XmlFacts map = ParseXml(m_folder.Read("plan.svg"));
    ASSERT_TRUE(map.isWellFormed);
    EXPECT_EQ(map.elements.count("ellipse"), 1U);
    EXPECT_EQ(map.guids.size(), 3U);
    EXPECT_EQ(map.guids.begin()->size(), 36U);
    EXPECT_EQ(map.links, std::set<std::string>{"https://x.org/?a&b"});
    EXPECT_NE(map.text.find("A <& \"B\"\nΣ 1.285,50 €"), std::string::npos);

    EXPECT_NE(m_out.str().find(m_folder.Path("plan.log/messages.xml")), std::string::npos);
    const std::string log = m_folder.Read("plan.log/messages.xml");
    EXPECT_NE(log.find("<l:Body>Read 3 topics from "), std::string::npos);
    EXPECT_TRUE(ParseXml("<log xmlns:l='l'>" + log + "</log>").isWellFormed);

    Put("plan.log/settings.xml", "<off/>");
    std::filesystem::remove(m_folder.Path("plan.log/messages.xml"));
    EXPECT_EQ(Run({outline}), 0);
    EXPECT_EQ(m_out.str().find("Log: "), std::string::npos);
}

TEST_F(Program, NeverOverwritesAMapUnlessToldTo) {
    const std::string outline = Put("plan.md", "# Plan\n- a\n");
    const std::string log = m_folder.Path("log/");
    const ScopedCurrentFolder here(m_folder.Path());
    Put("map.svg", "old");
    m_folder.Link("map (2).svg", "nowhere");
    Put(".svg", "old");
    ASSERT_EQ(Run({"--log", log, outline, "-o", "map.svg"}), 0) << m_err.str();
    EXPECT_TRUE(ParseXml(m_folder.Read("map (3).svg")).isWellFormed);
    EXPECT_EQ(m_out.str().find("map (3).svg: 2 topics on 2 levels, "), 0U);
    EXPECT_NE(m_out.str().find("; map.svg stays as it was (see --replace)\n"), std::string::npos);
    EXPECT_EQ(Run({"--log", log, outline, "-o", ".svg"}), 1);  // no name that a number could follow
    EXPECT_EQ(m_folder.Read("map.svg") + m_folder.Read(".svg"), "oldold");
    EXPECT_EQ(m_folder.EntryCount(), 6U);

    m_folder.Make({"0600 kept.svg=old", "link.svg>kept.svg"});
    ASSERT_EQ(Run({"--log", log, outline, "--replace", "-o", m_folder.Path("link.svg")}), 0) << m_err.str();
    EXPECT_TRUE(ParseXml(m_folder.Read("kept.svg")).isWellFormed);
    EXPECT_TRUE(std::filesystem::is_symlink(m_folder.Path("link.svg")));
    EXPECT_EQ(m_folder.Mode("kept.svg"), 0600U);
    EXPECT_EQ(m_folder.EntryCount(), 8U);
}

TEST_F(Program, GivesEachOfManyRunsAtOnceAMapOfItsOwn) {
    const std::string outline = Put("plan.md", "# Plan\n- a\n");
    constexpr int kRunCount = 12;
    const std::string log = m_folder.Path("log");
    const std::string map = m_folder.Path("map.svg");
    std::vector<pid_t> runs;
    for (int i = 0; i < kRunCount; ++i)
        runs.push_back(StartChild([&] { EXPECT_EQ(Run({outline, "-o", map, "--log", log}), 0); }));
    for (const pid_t run : runs)
        ExpectItEndsWell(run);
    for (int i = 2; i <= kRunCount; ++i)
        EXPECT_TRUE(ParseXml(m_folder.Read("map (" + std::to_string(i) + ").svg")).isWellFormed) << i;
    EXPECT_EQ(m_folder.EntryCount(), kRunCount + 2U);
}

TEST_F(Program, RemembersThemeShapesAndLastFolder) {
    const ScopedVariable settings("XDG_CONFIG_HOME", m_folder.Path("settings").c_str());
    m_folder.Make({"maps/plan.md=- a\n - b\n", "elsewhere/"});
    const std::string maps = std::filesystem::canonical(m_folder.Path("maps")).string();
    const ScopedCurrentFolder here(m_folder.Path("elsewhere"));
    const auto shown = [&](const std::string& theme, const std::string& shapes, const std::string& folder) {
        return "0\ntheme=" + theme + "\nshapes=" + shapes + "\nfolder=" + folder + "\nKept in " +
               m_folder.Path("settings/mindmap/preferences.sqlite\n");
    };
    EXPECT_EQ(RunAlone({"plan.md"}), "1\nmindmap: plan.md: No such file or directory\n");
    EXPECT_EQ(RunAlone({"--settings"}), shown("light", "rounded", ""));
    EXPECT_EQ(RunAlone({"--set", "theme=dark", "--set", "shapes=square"}), shown("dark", "square", ""));
    EXPECT_EQ(RunAlone({"../maps/plan.md"}).substr(0, 2), "0\n");
    EXPECT_EQ(RunAlone({"--settings"}), shown("dark", "square", maps));
    const std::string dark = m_folder.Read("maps/plan.svg");
    EXPECT_NE(dark.find("fill=\"#161B22\""), std::string::npos);
    EXPECT_EQ(dark.find("rx=\"6\""), std::string::npos);

    EXPECT_EQ(RunAlone({"plan.md", "--set", "theme=light"}).find("0\n" + maps + "/plan (2).svg: "), 0U);
    EXPECT_NE(m_folder.Read("maps/plan (2).svg").find("fill=\"#FCFBF8\""), std::string::npos);
    EXPECT_EQ(RunAlone({"--set", "folder=../maps/"}), shown("light", "square", maps));
    EXPECT_EQ(RunAlone({"--set", "folder="}), shown("light", "square", ""));

    constexpr std::array<std::string_view, 2> kWrong[] = {
        {"theme=blue", "theme is light or dark, not blue"},
        {"shapes=", "shapes is rounded or square or pill, not empty"},
        {"folder=none", "no such folder: none"},
        {"color=red", "no setting is called color"},
        {"theme", "--set takes a name and a value, as theme=dark, not theme"},
    };
    for (const auto& [assignment, complaint] : kWrong)
        EXPECT_EQ(RunAlone({"--set", "theme=dark", "--set", assignment}),
                  "2\nmindmap: " + std::string(complaint) + "; see mindmap --help\n");
    EXPECT_EQ(RunAlone({"--settings"}), shown("light", "square", ""));
}

TEST_F(Program, DrawsWhereNothingCanBeRemembered) {
    const std::string outline = Put("plan.md", "# Plan\n- a\n");
    const ScopedVariable settings("XDG_CONFIG_HOME", outline.c_str());
    EXPECT_EQ(RunAlone({outline}).substr(0, 2), "0\n");
    EXPECT_NE(m_folder.Read("plan.log/messages.xml").find("the settings cannot be kept"), std::string::npos);
    EXPECT_EQ(RunAlone({"--set", "theme=dark"}).find("1\nmindmap: the settings cannot be kept: "), 0U);
}

TEST_F(Program, TellsInOneLineWhatIsWrongAndLeavesTheMapAsItWas) {
    // An outline, its content (null: no such file) and the complaint.
    constexpr std::array<const char*, 3> kCases[] = {
        {"none.opml", nullptr, "none.opml: No such file or directory\n"},
        {"gone/none.opml", nullptr, "gone/none.opml: No such file or directory\n"},
        {"empty.txt", "", "empty.txt: the outline has no topic\n"},
        {"bad.opml", "<opml>\n<body>\n<outline text=>", "bad.opml:3: not well-formed (invalid token)\n"},
        {"bad.txt", "a\n\xC3", "bad.txt:2: is no text in UTF-8\n"},
    };
    const std::string map = Put("map.svg", "old");
    for (const auto& [outline, content, complaint] : kCases) {
        if (content != nullptr)
            Put(outline, content);
        EXPECT_EQ(Run({m_folder.Path(outline), "-o", map}), 1) << outline;
        EXPECT_EQ(m_err.str(), "mindmap: " + m_folder.Path(complaint));
        EXPECT_EQ(m_out.str(), "");
        EXPECT_EQ(m_folder.Read("map.svg"), "old");
    }
    EXPECT_EQ(Run({m_folder.Path(), "-o", map}), 1);  // a folder
    const std::string log = m_folder.Read("map.log/messages.xml");
    EXPECT_NE(log.find("<l:Severity>Error</l:Severity>"), std::string::npos);
}

TEST_F(Program, LeavesAMapThatItCannotReplace) {
    const std::string outline = Put("plan.txt", "a\n b\n");
    m_folder.MakeFolder("folder.svg");
    EXPECT_EQ(Run({outline, "-o", m_folder.Path("folder.svg")}), 1);
    EXPECT_EQ(m_err.str(), "mindmap: " + m_folder.Path("folder.svg: is a folder\n"));
    const std::string kept = Put("kept.svg", "old");
    std::filesystem::permissions(kept, std::filesystem::perms::owner_read);
    EXPECT_EQ(Run({outline, "-o", kept, "--replace"}), 1);
    EXPECT_EQ(m_err.str(), "mindmap: " + kept + ": is read-only\n");
    EXPECT_EQ(m_folder.Read("kept.svg"), "old");
    const std::string pipe = m_folder.Path("pipe.svg");  // as a device, which root would replace
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    EXPECT_EQ(Run({outline, "-o", pipe, "--replace"}), 1);
    EXPECT_EQ(m_err.str(), "mindmap: " + pipe + ": is a device or a pipe\n");
    EXPECT_TRUE(std::filesystem::is_fifo(pipe));
    EXPECT_EQ(Run({outline, "-o", m_folder.Path("missing/map.svg")}), 1);
    EXPECT_FALSE(m_folder.Has("missing"));
}

TEST_F(Program, LeavesTheMapAsItWasWhenTheDiskIsFull) {
    const std::string outline = Put("plan.txt", "a\n b\n");
    const std::string map = Put("map.svg", "old");
    const std::size_t entryCount = m_folder.EntryCount();
    std::signal(SIGXFSZ, SIG_IGN);
    {
        const ScopedFileSizeLimit full(1000);
        EXPECT_EQ(Run({outline, "--replace", "-o", map, "--log", m_folder.Path("log")}), 1);
    }
    EXPECT_EQ(m_err.str(), "mindmap: " + map + ": File too large\n");
    EXPECT_EQ(m_folder.Read("map.svg"), "old");
    EXPECT_EQ(m_folder.EntryCount(), entryCount + 1);  // the log alone is new
}

TEST_F(Program, StandsInAPipe) {
    const ScopedCurrentFolder here(m_folder.Path());
    constexpr std::string_view kOutlines[] = {
        "- a\n - b\n", "# a\n- b\n", "a\n b\n",
        "<opml><body><outline text='a'><outline text='b'/></outline></body></opml>"};
    for (const std::string_view outline : kOutlines) {
        m_in.str(std::string(outline));
        EXPECT_EQ(Run({"-"}), 0) << m_err.str();
        const XmlFacts map = ParseXml(m_out.str());
        EXPECT_TRUE(map.isWellFormed && map.guids.size() == 2) << outline;
    }
    m_in.str("- a\n - b\n");
    EXPECT_EQ(Run({"-", "-o", "map.svg", "--log", "log"}), 0);
    EXPECT_TRUE(ParseXml(m_folder.Read("map.svg")).isWellFormed);
    EXPECT_EQ(Run({"map.svg", "-o", "-"}), 1);
    m_in.str("a\n\xC3");
    EXPECT_EQ(Run({"-"}), 1);
    EXPECT_EQ(m_err.str(), "mindmap: standard input:2: is no text in UTF-8\n");
    EXPECT_EQ(m_out.str(), "");
    EXPECT_EQ(m_folder.EntryCount(), 2U);  // the map and its log
    ASSERT_EQ(mkfifo("pipe", 0600), 0);    // as process substitution makes one
    const pid_t writer = StartChild([] { std::ofstream("pipe") << "- a\n - b\n"; });
    EXPECT_EQ(Run({"pipe", "-o", "-"}), 0) << m_err.str();
    ExpectItEndsWell(writer);
    for (const char* argument : {"--help", "-"}) {
        std::ofstream full("/dev/full");
        m_in.str("a");
        m_in.clear();
        m_err.str("");
        EXPECT_EQ(RunProgram({argument}, m_in, full, m_err), 1) << argument;
        EXPECT_EQ(m_err.str(), "mindmap: standard output: cannot be written\n");
    }
}

TEST_F(Program, TellsNothingOfTheEnvironmentUnlessToldTo) {
    const ScopedVariable secret("RK_SECRET", "s3cret");
    const std::string outline = Put("a.opml", "<opml><body><outline text='a' url='%RK_SECRET%'/></body></opml>");
    EXPECT_EQ(Run({outline, "--replace"}), 0);
    EXPECT_EQ(m_folder.Read("a.svg").find("s3cret"), std::string::npos);
    EXPECT_EQ(Run({outline, "--replace", "--expand"}), 0);
    EXPECT_NE(m_folder.Read("a.svg").find("s3cret"), std::string::npos);
}

TEST_F(Program, KeepsNamesFromForgingTheLogAndTheTerminal) {
    const std::string folder = m_folder.Path("a<b&\x1B[2J");
    std::filesystem::create_directory(folder);
    EXPECT_EQ(Run({folder + "/none<l:Severity>Critical\x1B.txt", "--log", m_folder.Path("log")}), 1);
    EXPECT_EQ(m_err.str().find('\x1B'), std::string::npos);
    const std::string log = m_folder.Read("log/messages.xml");
    const XmlFacts facts = ParseXml("<log xmlns:l='l'>" + log + "</log>");
    EXPECT_TRUE(facts.isWellFormed);
    EXPECT_EQ(facts.elements.count("l:Severity"), 3U);  // the start, the run and its failure
}

TEST_F(Program, ExplainsItselfAndRefusesWhatItDoesNotUnderstand) {
    EXPECT_EQ(Run({"--help"}), 0);
    const std::string help = m_out.str();
    EXPECT_NE(help.find("Usage: mindmap"), std::string::npos);
    EXPECT_LT(std::count(help.begin(), help.end(), '\n'), 25);

    const std::string outline = Put("a.txt", "a");
    const std::string link = m_folder.Path("link.svg");
    m_folder.Link("link.svg", "a.txt");
    const std::vector<std::string_view> kWrong[] = {
        {}, {"--frob"}, {outline, outline}, {outline, "-o"}, {outline, "-o", outline}, {outline, "-o", link}};
    for (const auto& arguments : kWrong)
        EXPECT_EQ(Run(arguments), 2) << m_err.str();
    EXPECT_EQ(m_folder.Read("a.txt"), "a");
    EXPECT_EQ(m_folder.EntryCount(), 2U);
}

}  // namespace
