#include "mindmap/program/Program.h"
#include "tests/mindmap/MapInvariants.h"
#include "tests/support/InChild.h"
#include "tests/support/ScopedCurrentFolder.h"
#include "tests/support/ScopedFileSizeLimit.h"
#include "tests/support/Test.h"

#include <csignal>

using namespace mindmap;

namespace {

/// Runs of the program in a folder of their own, which is the current one, with settings of their own.
class Program : public testing::Test {
protected:
    static void SetUpTestSuite() {
        static const ScopedFolder settings;
        setenv("XDG_CONFIG_HOME", settings.Path().c_str(), 1);
    }
    /// The folder is gone before the library stores for the last time, and would be made again.
    static void TearDownTestSuite() { setenv("XDG_CONFIG_HOME", "/dev/null", 1); }

    int Run(const std::vector<std::string_view>& arguments) {
        m_out.str("");
        m_err.str("");
        m_in.clear();
        return RunProgram(arguments, m_in, m_out, m_err);
    }
    void Draw(const std::vector<std::string_view>& arguments) { EXPECT_EQ(Run(arguments), 0) << m_err.str(); }
    /// Status and all output of a run.
    std::string Told(const std::vector<std::string_view>& arguments) {
        const int status = Run(arguments);
        return std::to_string(status) + '\n' + m_err.str() + m_out.str();
    }
    /// The same in a process of its own, as settings are read once.
    std::string ToldAlone(const std::vector<std::string_view>& arguments) {
        return InChild([&] { return Told(arguments); });
    }
    bool IsMap(const std::string& name) const { return ParseXml(m_folder.Read(name)).isWellFormed; }
    bool Holds(const std::string& name, std::string_view part) const {
        return m_folder.Read(name).find(part) != std::string::npos;
    }

    ScopedFolder m_folder{std::filesystem::canonical(std::filesystem::temp_directory_path())};
    ScopedCurrentFolder m_here{m_folder.Path()};
    std::istringstream m_in;
    std::ostringstream m_out, m_err;
};

TEST_F(Program, DrawsTheMapWithAGuidOnEveryTopicAndLogsTheRun) {
    m_folder.Write("plan.opml", R"(<opml><body><outline text='A &lt;&amp; "B"'>
        <outline text='C' url='https://x.org/?a&amp;b' amount='€ 1284.5'/>
        <outline text='D' amount='1 EUR' url='javascript:alert(1)'/></outline></body></opml>)");
    const ScopedVariable maps("RK_MAPS", m_folder.Path().c_str());
    Draw({"plan.opml", "-o", "%RK_MAPS%plan.svg", "--locale", "de_DE"});
    EXPECT_EQ(m_err.str(), "");
    EXPECT_NE(m_out.str().find("plan.log/messages.xml"), std::string::npos);
    XmlFacts map = ParseXml(m_folder.Read("plan.svg"));
    ASSERT_TRUE(map.isWellFormed);
    EXPECT_EQ(map.elements.count("ellipse"), 1U);
    EXPECT_EQ(map.attributes["g data-guid"].size(), 3U);
    EXPECT_EQ(map.attributes["g data-guid"].begin()->size(), 36U);
    EXPECT_EQ(map.attributes["a xlink:href"], std::set<std::string>{"https://x.org/?a&b"});
    EXPECT_NE(map.text.find("A <& \"B\"\nΣ 1.285,50 €"), std::string::npos);
    EXPECT_TRUE(Holds("plan.log/messages.xml", "<l:Body>Read 3 topics from "));
    EXPECT_TRUE(ParseXml("<log xmlns:l='l'>" + m_folder.Read("plan.log/messages.xml") + "</log>").isWellFormed);

    std::filesystem::remove("plan.log/messages.xml");
    m_folder.Write("plan.log/settings.xml", "<off/>");
    Draw({"plan.opml"});
    EXPECT_EQ(m_out.str().find("Log: "), std::string::npos);
}

TEST_F(Program, NeverOverwritesAMapUnlessToldTo) {
    m_folder.Make({"plan.md=# Plan\n- a\n", "map.svg=old", "map (2).svg>nowhere", ".svg=old"});
    Draw({"--log", "log/", "plan.md", "-o", "map.svg"});
    EXPECT_TRUE(IsMap("map (3).svg"));
    EXPECT_EQ(m_out.str().find("map (3).svg: 2 topics on 2 levels, "), 0U);
    EXPECT_NE(m_out.str().find("; map.svg stays as it was (see --replace)\n"), std::string::npos);
    EXPECT_EQ(Run({"--log", "log/", "plan.md", "-o", ".svg"}), 1);  // no name that a number could follow
    EXPECT_EQ(m_folder.Read("map.svg") + m_folder.Read(".svg"), "oldold");
    EXPECT_EQ(m_folder.EntryCount(), 6U);

    m_folder.Make({"0600 kept.svg=old", "link.svg>kept.svg"});
    Draw({"--log", "log/", "plan.md", "--replace", "-o", "link.svg"});
    EXPECT_TRUE(IsMap("kept.svg"));
    EXPECT_TRUE(std::filesystem::is_symlink("link.svg"));
    EXPECT_EQ(m_folder.Mode("kept.svg"), 0600U);
    EXPECT_EQ(m_folder.EntryCount(), 8U);
}

TEST_F(Program, GivesEachOfManyRunsAtOnceAMapOfItsOwn) {
    m_folder.Write("plan.md", "# Plan\n- a\n");
    std::vector<pid_t> runs(12);
    for (pid_t& run : runs)
        run = StartChild([&] { Draw({"plan.md", "-o", "map.svg", "--log", "log"}); });
    std::for_each(runs.begin(), runs.end(), ExpectItEndsWell);
    for (std::size_t i = 2; i <= runs.size(); ++i)
        EXPECT_TRUE(IsMap("map (" + std::to_string(i) + ").svg")) << i;
    EXPECT_EQ(m_folder.EntryCount(), runs.size() + 2);
}

TEST_F(Program, RemembersThemeShapesAndLastFolder) {
    const ScopedVariable settings("XDG_CONFIG_HOME", m_folder.Path("settings").c_str());
    m_folder.Make({"maps/plan.md=- a\n - b\n", "elsewhere/"});
    const std::string maps = m_folder.Path("maps");
    const ScopedCurrentFolder here(m_folder.Path("elsewhere"));
    const auto shown = [&](const std::string& theme, const std::string& shapes, const std::string& folder) {
        return "0\ntheme=" + theme + "\nshapes=" + shapes + "\nfolder=" + folder + "\nKept in " +
               m_folder.Path("settings/mindmap/preferences.sqlite\n");
    };
    EXPECT_EQ(ToldAlone({"plan.md"}), "1\nmindmap: plan.md: No such file or directory\n");
    EXPECT_EQ(ToldAlone({"--settings"}), shown("light", "rounded", ""));
    EXPECT_EQ(ToldAlone({"--set", "theme=dark", "--set", "shapes=square"}), shown("dark", "square", ""));
    EXPECT_EQ(ToldAlone({"../maps/plan.md"}).substr(0, 2), "0\n");
    EXPECT_EQ(ToldAlone({"--settings"}), shown("dark", "square", maps));
    EXPECT_TRUE(Holds("maps/plan.svg", "fill=\"#161B22\""));
    EXPECT_FALSE(Holds("maps/plan.svg", "rx=\"6\""));

    EXPECT_EQ(ToldAlone({"plan.md", "--set", "theme=light"}).find("0\n" + maps + "/plan (2).svg: "), 0U);
    EXPECT_TRUE(Holds("maps/plan (2).svg", "fill=\"#FCFBF8\""));
    EXPECT_EQ(ToldAlone({"--set", "folder=../maps/"}), shown("light", "square", maps));
    EXPECT_EQ(ToldAlone({"--set", "folder="}), shown("light", "square", ""));

    constexpr std::pair<std::string_view, const char*> kWrong[] = {
        {"shapes=", "shapes is rounded or square or pill, not empty"},
        {"folder=none", "no such folder: none"},
        {"color=red", "no setting is called color"},
        {"theme", "--set takes a name and a value, as theme=dark, not theme"},
    };
    for (const auto& [assignment, complaint] : kWrong)
        EXPECT_EQ(ToldAlone({"--set", "theme=dark", "--set", assignment}),
                  std::string("2\nmindmap: ") + complaint + "; see mindmap --help\n");
    EXPECT_EQ(ToldAlone({"--settings"}), shown("light", "square", ""));
}

TEST_F(Program, DrawsWhereNothingCanBeRemembered) {
    m_folder.Write("plan.md", "# Plan\n- a\n");
    const ScopedVariable settings("XDG_CONFIG_HOME", m_folder.Path("plan.md").c_str());
    EXPECT_EQ(ToldAlone({"plan.md"}).substr(0, 2), "0\n");
    EXPECT_TRUE(Holds("plan.log/messages.xml", "the settings cannot be kept"));
    EXPECT_EQ(ToldAlone({"--set", "theme=dark"}).find("1\nmindmap: the settings cannot be kept: "), 0U);
}

TEST_F(Program, TellsInOneLineWhatIsWrongAndLeavesTheMapAsItWas) {
    m_folder.Make({"map.svg=old", "empty.txt", "bad.opml=<opml>\n<body>\n<outline text=>", "plan.txt=a\n b\n",
                   "folder.svg/", "0400 kept.svg=old", "pipe.svg|"});
    // An outline, a map, and what is said. The pipe stands for a device, which root would replace.
    constexpr std::tuple<const char*, const char*, const char*> kCases[] = {
        {"none.opml", "map.svg", "none.opml: No such file or directory"},
        {".", "map.svg", ".: Is a directory"},
        {"empty.txt", "map.svg", "empty.txt: the outline has no topic"},
        {"bad.opml", "map.svg", "bad.opml:3: not well-formed (invalid token)"},
        {"plan.txt", "folder.svg", "folder.svg: is a folder"},
        {"plan.txt", "kept.svg", "kept.svg: is read-only"},
        {"plan.txt", "pipe.svg", "pipe.svg: is a device or a pipe"},
        {"plan.txt", "missing/map.svg", "missing/map.svg: No such file or directory"},
    };
    for (const auto& [outline, map, complaint] : kCases)
        EXPECT_EQ(Told({outline, "-o", map, "--replace", "--log", "log"}),
                  std::string("1\nmindmap: ") + complaint + "\n");
    const std::size_t entryCount = m_folder.EntryCount();
    std::signal(SIGXFSZ, SIG_IGN);
    {
        const ScopedFileSizeLimit full(1000);
        EXPECT_EQ(Told({"plan.txt", "--replace", "-o", "map.svg", "--log", "another"}),
                  "1\nmindmap: map.svg: File too large\n");
    }
    EXPECT_EQ(m_folder.EntryCount(), entryCount + 1);  // its log alone is new
    EXPECT_EQ(m_folder.Read("map.svg") + m_folder.Read("kept.svg"), "oldold");
    EXPECT_EQ(std::pair(std::filesystem::is_fifo("pipe.svg"), m_folder.Has("missing")), std::pair(true, false));
    EXPECT_TRUE(Holds("log/messages.xml", "<l:Severity>Error</l:Severity>"));
}

TEST_F(Program, StandsInAPipe) {
    for (const char* const outline :
         {"a\n b\n", "<opml><body><outline text='a'><outline text='b'/></outline></body></opml>"}) {
        m_in.str(outline);
        Draw({"-"});
        XmlFacts map = ParseXml(m_out.str());
        EXPECT_EQ(std::pair(map.isWellFormed, map.attributes["g data-guid"].size()), std::pair(true, 2UL)) << outline;
    }
    m_in.str("- a\n - b\n");
    Draw({"-", "-o", "map.svg", "--log", "log"});
    EXPECT_TRUE(IsMap("map.svg"));
    EXPECT_EQ(Run({"map.svg", "-o", "-"}), 1);
    m_in.str("a\n\xC3");
    EXPECT_EQ(Told({"-"}), "1\nmindmap: standard input:2: is no text in UTF-8\n");
    EXPECT_EQ(m_folder.EntryCount(), 2U);  // the map and its log
    m_folder.Make({"pipe|"});              // as process substitution makes one
    const pid_t writer = StartChild([] { std::ofstream("pipe") << "- a\n - b\n"; });
    Draw({"pipe", "-o", "-"});
    ExpectItEndsWell(writer);
    std::ofstream full("/dev/full");
    EXPECT_EQ(RunProgram({"--help"}, m_in, full, m_err), 1);
    EXPECT_EQ(m_err.str(), "mindmap: standard output: cannot be written\n");
}

TEST_F(Program, TellsNothingOfTheEnvironmentUnlessToldTo) {
    const ScopedVariable secret("RK_SECRET", "s3cret");
    m_folder.Write("a.opml", "<opml><body><outline text='a' url='%RK_SECRET%'/></body></opml>");
    Draw({"a.opml"});
    EXPECT_FALSE(Holds("a.svg", "s3cret"));
    Draw({"a.opml", "--replace", "--expand"});
    EXPECT_TRUE(Holds("a.svg", "s3cret"));
}

TEST_F(Program, KeepsNamesFromForgingTheLogAndTheTerminal) {
    m_folder.MakeFolder("a<b&\x1B[2J");
    EXPECT_EQ(Run({"a<b&\x1B[2J/none<l:Severity>Critical\x1B.txt", "--log", "log"}), 1);
    EXPECT_EQ(m_err.str().find('\x1B'), std::string::npos);
    const XmlFacts facts = ParseXml("<log xmlns:l='l'>" + m_folder.Read("log/messages.xml") + "</log>");
    EXPECT_TRUE(facts.isWellFormed);
    EXPECT_EQ(facts.elements.count("l:Severity"), 3U);  // the start, the run and its failure
}

TEST_F(Program, ExplainsItselfAndRefusesWhatItDoesNotUnderstand) {
    Draw({"--help"});
    const std::string help = m_out.str();
    EXPECT_NE(help.find("Usage: mindmap"), std::string::npos);
    EXPECT_LT(std::count(help.begin(), help.end(), '\n'), 25);
    m_folder.Make({"a.txt=a", "link.svg>a.txt"});
    const std::vector<std::string_view> kWrong[] = {
        {}, {"--frob"}, {"a.txt", "a.txt"}, {"a.txt", "-o"}, {"a.txt", "-o", "a.txt"}, {"a.txt", "-o", "link.svg"}};
    for (const auto& arguments : kWrong)
        EXPECT_EQ(Run(arguments), 2) << m_err.str();
    EXPECT_EQ(m_folder.Read("a.txt"), "a");
    EXPECT_EQ(m_folder.EntryCount(), 2U);
}

}  // namespace
