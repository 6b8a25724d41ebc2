#include "tests/logging/LogFolder.h"
#include "tests/support/Failure.h"

#include <pthread.h>

namespace fs = std::filesystem;

namespace {

using testing::ElementsAre;
using Writer = CrkLogWriter;

constexpr auto kLevel = Writer::LogInfo;

template <class... Arguments>
concept MayLog = requires(Arguments... arguments) { Writer::Log(kLevel, u"", arguments...); };
static_assert(MayLog<CrkGuid> && !MayLog<CrkGuid, CString> && !MayLog<CrkGuid, CFUUIDBytes>);  // no id is a category

/// Initialisers of this program may run before the library's own; the names must be there all the same.
const CString usedBeforeMain = CrkLogTypes::LogTypeApplicationStart + Writer::m_activeFileName;

TEST(LogEntry, HoldsItsPiecesAsTheyAre) {
    const CFUUIDBytes id{0xAB, 1, 0x23, 0x45, 0x67, 0x89, 0xCD, 0xEF, 0x10, 0x32, 0x54, 0x76, 0x98, 0xBA, 0xDC, 0xFE};
    const std::string time = Writer::CurrentTimeString(kCFDateFormatterShortStyle).ToUtf8() + ":";
    const std::string header = Writer::EntryHeader(u"50%d & %s", Writer::LogNotice, u"%zx<b>&", id).ToUtf8();
    EXPECT_EQ(Field(header, "Timestamp").rfind(time, 0), 0U);
    EXPECT_LT(std::stoi(Field(header, "Timestamp").substr(time.size())), 300);  // seconds since this program started
    EXPECT_EQ(std::stoull(Field(header, "Tid"), nullptr, 16), static_cast<std::uintptr_t>(pthread_self()));
    EXPECT_EQ(header.substr(header.find("<l:Category>")),
              "<l:Category>50%d &amp; %s</l:Category><l:Severity>Notice</l:Severity>"
              "<l:Id>AB012345-6789-CDEF-1032-547698BADCFE</l:Id><l:Description>%zx<b>&amp;</l:Description>");
    EXPECT_EQ(Writer::PrepareXml(u"x & <?y?>&<?z?>"), u"&amp;<?z?>");
    EXPECT_EQ(Writer::PrepareXml(u"?&>&lt;]]>"), u"?&amp;>&amp;lt;]]>");
    EXPECT_EQ(Writer::EntryFooter(), u"</l:LogEntry>\n");
    for (const long style : {0L, -1L, LONG_MAX})
        EXPECT_EQ(Writer::CurrentTimeString(static_cast<CFDateFormatterStyle>(style)), u"");
}

TEST(LogWriter, AdmitsByLevelThenExclusionThenInclusion) {
    const std::string on = "<ls:Enable>true</ls:Enable>", all = "<ls:IncludeCategory>*</ls:IncludeCategory>",
                      cache = "<ls:IncludeCategory>Cache</ls:IncludeCategory>";
    const std::tuple<std::string, int, std::vector<std::string>> cases[] = {
        {all, -2, {}},
        {on, 6, {}},
        {on + all + "<ls:Level>LogError</ls:Level>", 2, {"/Error/1", "General/Error/2", "Cache//3"}},
        {on + cache, 6, {"Cache//3"}},
        {on + all + cache + "<ls:ExcludeCategory>Cache</ls:ExcludeCategory><ls:ExcludeCategory>*</ls:ExcludeCategory>",
         6,
         {"/Error/1", "General/Error/2", "cache/Debug/4"}}};
    for (const auto& [settings, canLogUpTo, expected] : cases) {
        SCOPED_TRACE(settings);
        const LogFolder folder("<x>" + settings + "</x>");
        folder.Write(folder.Active());
        Writer::LogInternal(Writer::LogError, u"1", u"", u"", {});
        Writer::Log(Writer::LogError, u"2", u"");
        Writer::Log(static_cast<Writer::ErkLogLevel>(INT_MIN), u"3", CrkLogTypes::LogTypeCache);
        Writer::Log(Writer::LogDebug, u"4", u"cache");
        Writer::Log(static_cast<Writer::ErkLogLevel>(7), u"5");
        EXPECT_EQ(folder.Logged(), expected);
        for (int level = -1; level <= 7; ++level)
            EXPECT_EQ(Writer::CanLog(static_cast<Writer::ErkLogLevel>(level)), level <= canLogUpTo);
    }
}

TEST(LogWriter, FillsInWhatIsNotGivenAndWritesAnyTextAsUtf8) {
    const LogFolder folder;
    CFUUIDBytes id{};
    id.byte15 = 0xAB;
    Writer::Log(kLevel, u"1", id);
    Writer::Log(kLevel, u"2", u"c");
    Writer::Log(kLevel, u"3", u"", u"d");
    Writer::Log(kLevel, u"4", u"c", u"d", id);
    Writer::Log(kLevel, u"5", CrkGuid(id));
    Writer::Log(kLevel, u"6", u"c", CrkGuid(id));
    Writer::Log(kLevel, {std::u16string_view(u"\0\xD800z\u4E2D\xD83D\xDE00", 6)}, u"\xDC00", id);
    std::istringstream lines(folder.Read(folder.Active()));
    std::vector<std::string> entries;
    for (std::string line; std::getline(lines, line);)
        entries.push_back(Field(line, "Category") + Field(line, "Id").substr(34) + Field(line, "Description") +
                          Field(line, "Body"));
    EXPECT_THAT(entries, ElementsAre("GeneralAB1", "c002", "General00d3", "cABd4", "GeneralAB5", "cAB6",
                                     std::string("\uFFFDAB\0\uFFFDz\u4E2D\U0001F600", 17)));
}

TEST(LogWriter, GoesOnFromWhateverTheFileHoldsAndBelowTheHomeFolder) {
    const LogFolder folder;
    Writer::Log(kLevel, u"whole");
    const std::string entry = folder.Read(folder.Active());
    const std::string large = entry.substr(0, entry.size() - 30) + std::string(200'000, 'x');
    // What the file holds, and what stays of it.
    const std::pair<std::string, std::string> cases[] = {{entry + large, entry},
                                                         {"notes\n" + large, "notes\n" + large + "\n"}};
    for (const auto& [before, kept] : cases) {
        SCOPED_TRACE(before.substr(0, 500));
        folder.Write(folder.Active(), before);
        Writer::Log(kLevel, u"the next");
        const std::string after = folder.Read(folder.Active());
        EXPECT_EQ(after.substr(0, kept.size()), kept);
        EXPECT_THAT(Entries(after.substr(kept.size())), ElementsAre("General/Info/the next"));
    }
    fs::remove_all(folder.Path("log"));  // the folder is made again, and the file
    Writer::Log(kLevel, u"first");
    EXPECT_THAT(folder.Logged(), ElementsAre("General/Info/first"));
    folder.Write(folder.Active(), folder.Read(folder.Active()) + "<");  // one byte more than we left, and one less
    Writer::Log(kLevel, u"more");
    EXPECT_THAT(folder.Logged(), ElementsAre("General/Info/first", "General/Info/more"));
    fs::resize_file(folder.ActivePath(), fs::file_size(folder.ActivePath()) - 1);
    Writer::Log(kLevel, u"less");
    EXPECT_THAT(folder.Logged(), ElementsAre("General/Info/first", "General/Info/less"));
    const ScopedVariable home("HOME", folder.Path().c_str());
    Writer::m_path = u"~/of ";
    Writer::Log(kLevel, u"home");
    EXPECT_THAT(Entries(folder.Read("of messages.xml")), ElementsAre("General/Info/home"));
}

TEST(LogWriter, ReportsOrDropsWhatCannotBeWrittenAndTellsIt) {
    const LogFolder folder;
    const auto state = [] {
        const rk::LogState told = Writer::GetLogState();
        return std::to_string(told.droppedEntries) + " " + told.lastFailure;
    };
    EXPECT_EQ(state(), "0 ");
    folder.Link(folder.Active(), "/dev/full");
    const Failure noSpace = FailureOf([] { Writer::Log(kLevel, u"no space"); });
    EXPECT_EQ(noSpace.cause, CFileException::diskFull);
    EXPECT_EQ(noSpace.name, folder.Text(folder.Active()));
    EXPECT_EQ(state(), "0 write the entry: No space left on device");
    Writer::m_tellsFirstFailure = true;
    testing::internal::CaptureStderr();
    folder.Init();
    for (const std::string inTheWay : {"/", ">/missing/messages.xml", ">messages.xml"}) {  // the last, a link to itself
        folder.Replace(inTheWay);
        Writer::Log(kLevel, u"dropped");
    }
    Writer::m_tellsFirstFailure = false;
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "Log: open the file: Is a directory\n");
    EXPECT_EQ(state(), "3 open the file: Too many levels of symbolic links");
    fs::remove_all(folder.Path("log"));
    folder.Write("log", "in the way");
    EXPECT_THAT([] { Writer::Log(kLevel, u"no folder"); },
                testing::ThrowsMessage<CrkLogException>("The log folder cannot be made: " + folder.Path("log/")));
}

TEST(LogWriter, TellsWhetherItIsOnAndWhyNot) {
    using Mode = rk::LogState::Mode;
    const LogFolder folder;
    for (const auto& [settings, mode, fault] :
         {std::tuple{LogFolder::kEverything, Mode::On, ""},
          {"<x/>", Mode::Disabled, ""},
          {"<x>\n\n</y>", Mode::BadSettings, "line 3: mismatched tag"},
          {"<!DOCTYPE x [\n<!ENTITY a 'b'>]><x/>", Mode::BadSettings, "line 2: an entity is declared"}}) {
        folder.Write("settings.xml", settings);
        folder.Init();
        const rk::LogState state = Writer::GetLogState();
        EXPECT_EQ(state.settingsFile, folder.Path("settings.xml"));
        EXPECT_EQ(state.mode, mode);
        EXPECT_EQ(state.settingsFault, fault);
    }
    fs::remove(folder.Path("settings.xml"));
    folder.Init();
    EXPECT_EQ(Writer::GetLogState().settingsFault, "No such file or directory");
    Writer::Uninitialize();
    EXPECT_EQ(Writer::GetLogState().mode, Mode::Off);
}

TEST(LogWriter, IsForItsOwnerAndWritesToNothingThatANeighbourPutThere) {
    const LogFolder folder;
    fs::permissions(folder.Path("log"), fs::perms::all);
    Writer::Log(kLevel, u"1");
    EXPECT_EQ(folder.Mode(folder.Active()), 0600U);
    Writer::Log(kLevel, u"2");
    folder.Write("target", folder.Read(folder.Active()));  // as long as the file that the writer left
    for (const char* const neighbours : {">../target", "|", "hard link"}) {
        fs::remove(folder.ActivePath());
        if (*neighbours == 'h')
            fs::create_hard_link(folder.Path("target"), folder.ActivePath());
        else
            folder.Replace(neighbours);
        Writer::Log(kLevel, u"3");
        EXPECT_THAT(Entries(folder.Read("target")), ElementsAre("General/Info/1", "General/Info/2")) << neighbours;
    }
    EXPECT_EQ(Writer::GetLogState().droppedEntries, 3U);
    fs::permissions(folder.Path("log"), fs::perms::owner_all);
    folder.Replace(">../target");  // where only its owner may write, a link is the owner's wish
    Writer::Log(kLevel, u"3");
    EXPECT_EQ(Entries(folder.Read("target")).back(), "General/Info/3");
}

TEST(LogWriter, MovesAFileAsideThatIsLongerThanTheLimit) {
    const LogFolder folder;
    Writer::Log(kLevel, u"1");
    Writer::m_maxFileLength = fs::file_size(folder.ActivePath());
    fs::resize_file(folder.ActivePath(), 0);
    Writer::Log(kLevel, u"2");  // exactly the limit, unless a second more has a digit more
    EXPECT_EQ(folder.Backups().size(), 0U);
    Writer::Log(kLevel, u"3");
    EXPECT_FALSE(folder.Has(folder.Active()));
    ASSERT_EQ(folder.Backups().size(), 1U);
    const std::string backup = folder.Backups()[0];
    EXPECT_THAT(Entries(folder.Read(backup)), ElementsAre("General/Info/2", "General/Info/3"));
    EXPECT_THAT(backup, testing::MatchesRegex("[^/:]*/[^/:]*[0-9]-[0-9][0-9][^/:]*\\.xml"));

    const ScopedFolder memory("/dev/shm");  // another file system, on most machines
    folder.Link("elsewhere", memory.Path());
    Writer::m_maxFileLength = 0;
    Writer::Log(kLevel, u"4");
    EXPECT_FALSE(folder.Has(folder.Active()));
    fs::permissions(folder.Path(backup), fs::perms::owner_read);  // gives way all the same
    const CString name = std::exchange(Writer::m_activeFileName, u"../elsewhere/messages.xml");
    Writer::Log(kLevel, u"5");
    Writer::m_activeFileName = name;
    EXPECT_EQ(memory.EntryCount(), 0U);
    if (folder.Backups().size() != 2) {  // two when a minute has ended meanwhile
        EXPECT_THAT(Entries(folder.Read(backup)), ElementsAre("General/Info/5"));
    }
}

TEST(LogWriter, KeepsTheNewestBackupsAndReplacesNoneWhereTheyAreCounted) {
    const LogFolder folder;
    folder.Make({"log/messages.x1.xml", "log/messages.8.xml"});  // the first is another program's
    Writer::m_maxFileLength = 0;
    Writer::m_maxBackupCount = 3;
    for (const char16_t* const message : {u"1", u"2", u"3", u"4", u"5"})
        Writer::Log(kLevel, message);
    Writer::m_maxBackupCount = 0;
    EXPECT_EQ(folder.Backups().size(), 4U);
    for (int number = 3; number <= 5; ++number)
        EXPECT_THAT(Entries(folder.Read("log/messages." + std::to_string(8 + number) + ".xml")),
                    ElementsAre("General/Info/" + std::to_string(number)));
    EXPECT_FALSE(folder.Has(folder.Active()));
}

TEST(LogWriter, TellsWhichProcessLogs) {
    const LogFolder folder;
    rk::SetApplicationName("a\"%<&>\x7F\n\u00E9");
    for (const char* const zone : {"ABC-5:30", "XYZ1"}) {
        const ScopedVariable set("TZ", zone);
        Writer::LogStart();
    }
    rk::SetApplicationName("");
    const std::string time = "[0-9]{4}-[0-9]{2}-[0-9]{2}T[0-9]{2}:[0-9]{2}:[0-9]{2}";
    const auto line = [&](const std::string& offset, const std::string& abbreviation) {
        return testing::ContainsRegex("^Application Start/Info/LogStart time=\"" + time + "\\.[0-9]{3}" + offset +
                                      "\" loaded=\"" + time + offset + "\" zone=\"" + abbreviation + "\" pid=\"" +
                                      std::to_string(getpid()) +
                                      "\" host=\"[^\" ]*\" program=\"a%22%25%3C%26%3E%7F%0A\u00E9\" "
                                      "library=\"[0-9.]+\" system=\"Linux [^\"]* [^\"]*\"$");
    };
    EXPECT_THAT(folder.Logged(), ElementsAre(line("\\+05:30", "ABC"), line("-01:00", "XYZ")));
}

TEST(LogWriter, StartsAndStopsAnyNumberOfTimesAndDropsWithoutALock) {
    EXPECT_EQ(usedBeforeMain, u"Application Startmessages.xml");
    const LogFolder folder;
    folder.Write("settings.xml",
                 "<x><ls:Enable>true</ls:Enable><ls:StdOut>true</ls:StdOut><ls:Level>LogError</ls:Level>"
                 "<ls:IncludeCategory>a</ls:IncludeCategory></x>");
    EXPECT_TRUE(Writer::CanLog(Writer::LogDebug));  // read by Init only
    folder.Init();
    EXPECT_FALSE(Writer::CanLog(Writer::LogDebug));
    testing::internal::CaptureStderr();
    Writer::Log(Writer::LogError, u"<?a?>&\u00E9", u"a");
    {
        const std::lock_guard heldByUs(Writer::m_mutex);  // what locked here would hang
        Writer::Log(Writer::LogInfo, u"level", u"a");
        Writer::Log(Writer::LogError, u"category", u"b");
    }
    Writer::Uninitialize();
    Writer::Uninitialize();
    Writer::Log(Writer::LogEmergency, u"off", u"a");
    EXPECT_FALSE(Writer::CanLog(Writer::LogEmergency));
    folder.Init();
    Writer::Log(Writer::LogError, u"2", u"a");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "<?a?>&\u00E92");
    EXPECT_THAT(folder.Logged(), ElementsAre("a/Error/&amp;\xC3\xA9", "a/Error/2"));
}

}  // namespace
