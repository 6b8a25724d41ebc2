#include "rklog/Program.h"
#include "rklog/FollowedSource.h"
#include "rklog/LogFiles.h"
#include "tests/logging/LogFolder.h"
#include "tests/rklog/LogText.h"

using namespace rklog;
using testing::HasSubstr;
using testing::Not;

namespace {

struct Outcome {
    int status;
    std::string out, err;
};

Outcome Rklog(const std::vector<std::string>& arguments, bool isTerminal = false) {
    std::ostringstream out, err;
    const int status = RunProgram({arguments.begin(), arguments.end()}, isTerminal, out, err);
    return {status, out.str(), err.str()};
}

/// The messages that a source has for now, one after the other.
std::string MessagesOf(EntrySource& source) {
    std::string messages;
    for (Entry entry; source.Next(entry);)
        messages += (entry.wholeness == Wholeness::Whole ? "" : "!") + std::string(entry.message) + " ";
    return messages;
}

/// What no output may let through: markup, quotes, separators, control characters, what is no UTF-8, U+FFFF.
constexpr std::string_view kNasty =
    "<b>&amp;\"',;\n</script><l:x>\x1B[31m\xC2\x9B\xE2\x80\xAE\xFF\xEF\xBF\xBF\x01\rend";

}  // namespace

TEST(Program, FindsWhatIsAskedFor) {
    const LogFolder folder;
    const CFUUIDBytes id = CrkGuid::StringToGuid(u"00112233-4455-6677-8899-AABBCCDDEEFF");
    CrkLogWriter::Log(CrkLogWriter::LogError, u"Disk full & retrying", u"A & B", u"of Überfahrt", id);
    CrkLogWriter::Log(CrkLogWriter::LogWarning, u"first\nSecond line", u"Cache");
    CrkLogWriter::Log(CrkLogWriter::LogDebug, u"chatter");
    CrkLogWriter::Log(static_cast<CrkLogWriter::ErkLogLevel>(-1), u"of no level");
    // How many entries are found by arguments with "~" between them; -1: they are refused.
    const std::pair<int, std::vector<const char*>> cases[] = {
        {4, {"", "--since~1h"}},
        {3, {"--level~6", "--category~Cache~--category=General"}},
        {2, {"--level~Warning", "--regex~^Second|full.*ing$"}},
        {1,
         {"--level=logerror", "--category~A & B", "--text~full & r", "-i~--text~ÜBERFAHRT",
          "--id~{00112233-4455-6677-8899-aabbccddeeff}", "--id~33221100-5544-7766-8899-AABBCCDDEEFF"}},
        {0,
         {"--text~&amp;", "--text~ÜBERFAHRT", "--text~Disk~--text~first", "--thread~0x1", "--until~1h",
          "--since~2200-01-01"}},
        {-1,
         {"--regex~(x~--level~Error", "--id~12", "--level~Loud", "--format~pdf", "--count~--stats", "--follow~--stats",
          "--last", "--nonsense"}},
    };
    for (const auto& [count, lines] : cases)
        for (const char* const line : lines) {
            std::vector<std::string> arguments;
            std::istringstream parts(line);
            for (std::string part; std::getline(parts, part, '~');)
                arguments.push_back(part);
            SCOPED_TRACE(line);
            arguments.push_back(folder.Path("log"));
            if (count >= 0)
                arguments.emplace_back("--count");
            const auto [status, out, err] = Rklog(arguments);
            EXPECT_EQ(status, count < 0 ? 2 : count == 0 ? 1 : 0);
            EXPECT_EQ(out, count < 0 ? "" : std::to_string(count) + "\n");
            EXPECT_EQ(err.empty(), count >= 0);
        }
    EXPECT_THAT(Rklog({"--last", "2", folder.Path("log")}).out, Not(HasSubstr("Second")));
    EXPECT_EQ(Rklog({folder.Path("none"), folder.Path("log"), "--count"}).status, 2);
    EXPECT_EQ(Rklog({folder.Path("none"), folder.Path("log"), "--count"}).out, "4\n");
    EXPECT_THAT(Rklog({"--level", "Error", folder.Path("log")}, /*isTerminal=*/true).out, HasSubstr("\x1B[31mError"));
}

TEST(Program, KnowsBackupsAndMergesByTime) {
    const ScopedFolder folder;
    folder.Make(
        {"a/messages.xml=" + EntryAt("11/18/26, 9:52 PM:7", "a3"), "a/settings.xml=<settings/>",
         "a/11-16-26, 9-52 PM.xml=" + EntryAt("11/16/26, 9:52 PM:7", "a1") + EntryAt("11/16/26, 9:50 PM:7", "a1b"),
         "a/11-17-26, 9-52 AM.xml=" + EntryAt("11/17/26, 9:52 AM:7", "a2"),
         "b.xml=" + EntryAt("11/16/26, 11:00 PM:7", "b1") + "stray\n" + EntryAt("11/18/26, 11:00 PM:7", "b2")});
    const auto order = [&](const std::vector<std::string>& arguments) {
        std::string messages;
        std::istringstream lines(Rklog(arguments).out);
        for (std::string line; std::getline(lines, line);)
            messages += line.substr(line.rfind(' ') + 1) + " ";
        return messages;
    };
    for (const bool areCopied : {false, true}) {  // a copy may have lost the times of the last changes
        for (const auto& [name, age, ageOfCopy] :
             {std::tuple("messages.xml", 0, 30), {"11-17-26, 9-52 AM.xml", 20, 10}, {"11-16-26, 9-52 PM.xml", 30, 0}})
            std::filesystem::last_write_time(folder.Path("a/") + name,
                                             std::filesystem::file_time_type::clock::now() -
                                                 std::chrono::minutes(areCopied ? ageOfCopy : age));
        EXPECT_EQ(order({folder.Path("a")}), "a1 a1b a2 a3 ") << areCopied;
        EXPECT_EQ(order({folder.Path("b.xml"), folder.Path("a")}), "a1 a1b b1 stray a2 a3 b2 ");
    }
    EXPECT_EQ(order({folder.Path("b.xml"), folder.Path("a"), "--since", "2026-11-17", "--until=2026-11-18T21:52"}),
              "a2 a3 ");
}

TEST(Program, WritesWhatNoMessageCanBreak) {
    const ScopedFolder folder;
    const CString path =
        folder.Write("log.xml", EntryAt("11/16/26, 9:52 PM:7", kNasty) + EntryAt("11/16/26, 9:53 PM:7", "next"));
    const auto run = [&](const char* format) { return Rklog({"--format", format, path.ToUtf8()}).out; };

    EXPECT_EQ(run("text"), "2026-11-16 21:52  Info       A  <b>&\"',;\n    "
                           "</script><l:x>\\x1B[31m\\x9B\\u202E\uFFFD\uFFFF\\x01\\x0Dend\n"
                           "2026-11-16 21:53  Info       A  next\n");
    EXPECT_THAT(
        run("json"),
        AllOf(HasSubstr(R"("message":"<b>&\"',;\n</script><l:x>\u001b[31m)"),
              HasSubstr(R"("description":"","id":"","thread":"7f01","timestamp":"11/16/26, 9:52 PM:7","seconds":7,)")));
    EXPECT_THAT(run("csv"), HasSubstr("\"<b>&\"\"',;\n</script>"));

    EXPECT_THAT(run("xml"), HasSubstr("<message>&lt;b&gt;&amp;\"',;\n&lt;/script&gt;&lt;l:x&gt;\uFFFD[31m"));
    const std::string page = run("html");
    EXPECT_THAT(page,
                AllOf(HasSubstr(R"(\u003cb>&\"',;\n\u003c/script>)"), Not(HasSubstr("<b>")), Not(HasSubstr("NONCE"))));
    EXPECT_NE(page, run("html"));  // a new nonce

    EXPECT_THAT(Rklog({"--stats", path.ToUtf8()}).out,
                AllOf(HasSubstr("2 entries\n"), HasSubstr("1  2026-11-16T21:53\n"),
                      HasSubstr("60  seconds, from 2026-11-16T21:52 to 2026-11-16T21:53")));
}

TEST(Program, FollowsALogThroughWhateverHappensToIt) {
    const LogFolder folder(LogFolder::kEverything, "logs/");
    std::ostringstream err;
    Trouble trouble(err);
    FollowedSource source(folder.Path("logs"), trouble);
    FollowedSource late(folder.Path("not/yet"), trouble);
    EXPECT_EQ(MessagesOf(source) + MessagesOf(late), "");

    const auto log = [](const char16_t* message) { CrkLogWriter::Log(CrkLogWriter::LogInfo, message); };
    const auto rollOver = [&](const char* name) { std::filesystem::rename(folder.ActivePath(), folder.Path(name)); };
    log(u"1");
    EXPECT_EQ(MessagesOf(source), "1 ");
    EXPECT_EQ(MessagesOf(source), "");
    // Rolled over between two looks, with an entry before and after, and once more.
    log(u"2");
    rollOver("logs/x1.xml");
    log(u"3");
    rollOver("logs/x2.xml");
    log(u"4");
    std::string messages = MessagesOf(source);
    EXPECT_EQ(messages += MessagesOf(source), "2 3 4 ");
    // A torn entry is waited for, and the writer puts another in its place.
    std::ofstream(folder.ActivePath(), std::ios::app)
        << "<l:LogEntry><l:Timestamp>11/16/26, 9:52 PM:1</l:Timestamp><l:Tid>";
    EXPECT_EQ(MessagesOf(source), "");
    log(u"5");
    EXPECT_EQ(MessagesOf(source), "5 ");
    std::filesystem::resize_file(folder.ActivePath(), 0);
    log(u"6");
    EXPECT_EQ(MessagesOf(source), "6 ");
    std::filesystem::remove_all(folder.Path("logs"));
    messages = MessagesOf(source);
    log(u"7");
    messages += MessagesOf(source);
    EXPECT_EQ(messages += MessagesOf(source), "7 ");
    folder.Write("not/yet/messages.xml", EntryAt("", "8"));
    EXPECT_EQ(MessagesOf(late), "8 ");
    EXPECT_EQ(err.str(), "");
}
