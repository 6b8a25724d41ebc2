#include "RkUtilities/foundation/CFileException.h"
#include "RkUtilities/logging/CrkLogException.h"
#include "RkUtilities/logging/CrkLogTypes.h"

#include "LogFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace fs = std::filesystem;

namespace {

using testing::ElementsAre;
using Writer = CrkLogWriter;

std::vector<std::string> Active(const LogFolder& folder)
{
    return Entries(ReadAll(folder.ActiveFile()));
}

/// Initialisers of a test program run before or after the library's own; the names must be there all the same.
const CString usedBeforeMain = CrkLogTypes::LogTypeApplicationStart + Writer::m_activeFileName;

TEST(LogWriter, AdmitsByLevelThenExclusionThenInclusion)
{
    const std::string on = "<ls:Enable>true</ls:Enable>", all = "<ls:IncludeCategory>*</ls:IncludeCategory>",
                      cache = "<ls:IncludeCategory>Cache</ls:IncludeCategory>",
                      notCache = "<ls:ExcludeCategory>Cache</ls:ExcludeCategory>";
    struct Case {
        std::string settings;
        std::vector<std::string> written;
        int canLogUpTo;
    };
    const Case cases[] = {
        {"", {}, -2},
        {all, {}, -2},
        {on, {}, 6},
        {on + all, {"/Error/1", "General/Error/2", "Cache/Error/3", "cache/Debug/4", "Cache//5", "*/Info/6"}, 6},
        {on + all + "<ls:Level>LogError</ls:Level>", {"/Error/1", "General/Error/2", "Cache/Error/3", "Cache//5"}, 2},
        {on + cache, {"Cache/Error/3", "Cache//5"}, 6},
        {on + all + cache + notCache, {"/Error/1", "General/Error/2", "cache/Debug/4", "*/Info/6"}, 6},
        {on + all + "<ls:ExcludeCategory>*</ls:ExcludeCategory><ls:ExcludeCategory/>",
         {"General/Error/2", "Cache/Error/3", "cache/Debug/4", "Cache//5"},
         6},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.settings);
        const LogFolder folder("<x>" + c.settings + "</x>");
        Writer::LogInternal(Writer::LogError, u"1", u"", u"", {});
        Writer::Log(Writer::LogError, u"2", u"");
        Writer::Log(Writer::LogError, u"3", CrkLogTypes::LogTypeCache);
        Writer::Log(Writer::LogDebug, u"4", u"cache");
        Writer::Log(static_cast<Writer::ErkLogLevel>(INT_MIN), u"5", u"Cache");
        Writer::Log(Writer::LogInfo, u"6", u"*");
        Writer::Log(static_cast<Writer::ErkLogLevel>(7), u"7");
        EXPECT_EQ(Active(folder), c.written);
        for (int level = -1; level <= 7; ++level)
            EXPECT_EQ(Writer::CanLog(static_cast<Writer::ErkLogLevel>(level)), level <= c.canLogUpTo);
    }
}

TEST(LogWriter, OverloadsFillInWhatIsNotGiven)
{
    const LogFolder folder;
    CFUUIDBytes id{};
    id.byte0 = 0xAB;
    Writer::Log(Writer::LogInfo, u"m");
    Writer::Log(Writer::LogInfo, u"m", id);
    Writer::Log(Writer::LogInfo, u"m", u"c");
    Writer::Log(Writer::LogInfo, u"m", u"", id);
    Writer::Log(Writer::LogInfo, u"m", u"", u"d");
    Writer::Log(Writer::LogInfo, u"m", u"c", u"d", id);
    const std::string none = "<l:Id>00000000-0000-0000-0000-000000000000",
                      given = "<l:Id>AB000000-0000-0000-0000-000000000000",
                      plain = "</l:Id><l:Description></l:Description>",
                      described = "</l:Id><l:Description>d</l:Description>";
    std::string text = ReadAll(folder.ActiveFile());
    for (const auto& [category, rest] : {std::pair("General", none + plain),
                                         {"General", given + plain},
                                         {"c", none + plain},
                                         {"General", given + plain},
                                         {"General", none + described},
                                         {"c", given + described}}) {
        const std::string expected = std::string("<l:Category>") + category +
                                     "</l:Category><l:Severity>Info</l:Severity>" + rest +
                                     "<l:Body>m</l:Body></l:LogEntry>\n";
        const std::size_t end = text.find('\n') + 1;
        EXPECT_THAT(text.substr(0, end), testing::EndsWith(expected));
        text.erase(0, end);
    }
}

TEST(LogWriter, WritesAnyTextAsUtf8)
{
    const LogFolder folder;
    Writer::Log(Writer::LogInfo, CString(std::u16string_view(u"a\0\xD800z\u00E9\u4E2D\xD83D\xDE00", 8)), u"\xDC00");
    Writer::m_maxFileLength = UINT64_MAX;
    Writer::Log(Writer::LogInfo, CString(std::u16string(10'000'000, u'x')));
    const std::vector<std::string> bodies = Active(folder);
    ASSERT_EQ(bodies.size(), 2U);
    using namespace std::string_literals;
    EXPECT_EQ(bodies[0], "\xEF\xBF\xBD/Info/a\0\xEF\xBF\xBDz\xC3\xA9\xE4\xB8\xAD\xF0\x9F\x98\x80"s);
    EXPECT_EQ(bodies[1].size(), 13 + 10'000'000U);
}

TEST(LogWriter, GoesOnFromWhateverTheFileHolds)
{
    const LogFolder folder;
    Writer::Log(Writer::LogInfo, u"whole");
    const std::string entry = ReadAll(folder.ActiveFile());
    const std::string large = entry.substr(0, entry.size() - 30) + std::string(200'000, 'x');
    const std::pair<std::string, std::string> cases[] = {
        {"", ""},  // what the file holds, and what stays of it
        {entry, entry},
        {entry + entry.substr(0, entry.size() - 1), entry},  // killed in the middle of an entry
        {entry + "<", entry},
        {entry + large, entry},
        {large, ""},
        {"notes of somebody else", "notes of somebody else"},
        {"notes\n" + large, "notes\n" + large},
        {entry + "</l:Body></l:LogEntry>", entry + "</l:Body></l:LogEntry>"},
    };
    for (const auto& [before, kept] : cases) {
        SCOPED_TRACE(before.substr(0, 500));
        WriteAll(folder.ActiveFile(), before);
        Writer::Log(Writer::LogInfo, u"the next");
        const std::string after = ReadAll(folder.ActiveFile());
        EXPECT_EQ(after.substr(0, kept.size()), kept);
        EXPECT_THAT(Entries(after.substr(kept.size())), ElementsAre("General/Info/the next"));
    }
    fs::remove(folder.ActiveFile());
    Writer::Log(Writer::LogInfo, u"first");
    EXPECT_THAT(Active(folder), ElementsAre("General/Info/first"));
}

TEST(LogWriter, MakesAMissingFolderAgain)
{
    const LogFolder folder(kEverything, "deep/er/log/");
    EXPECT_TRUE(fs::is_directory(folder.Log()));
    fs::remove_all(folder.Path("deep"));
    Writer::Log(Writer::LogInfo, u"a");
    EXPECT_THAT(Active(folder), ElementsAre("General/Info/a"));

    const LogFolder prefix(kEverything, "log/trace-");  // no "/" at its end: a part of the file's name
    Writer::Log(Writer::LogInfo, u"b");
    EXPECT_THAT(Active(prefix), ElementsAre("General/Info/b"));
}

TEST(LogWriter, ReportsOrDropsWhatCannotBeWrittenAndReleasesItsMutex)
{
    const LogFolder folder;
    const auto isFree = [] { return Writer::m_mutex.try_lock() && (Writer::m_mutex.unlock(), true); };
    fs::create_symlink("/dev/full", folder.ActiveFile());
    try {
        Writer::Log(Writer::LogInfo, u"no space");
        ADD_FAILURE() << "a full disk went unnoticed";
    } catch (CFileException* failure) {
        EXPECT_EQ(failure->m_cause, CFileException::diskFull);
        EXPECT_EQ(failure->m_strFileName, CString(folder.ActiveFile()));
        failure->Delete();
    }
    EXPECT_TRUE(isFree());

    fs::remove(folder.ActiveFile());
    fs::create_directory(folder.ActiveFile());
    Writer::Log(Writer::LogInfo, u"a folder has the name");
    fs::remove(folder.ActiveFile());
    fs::create_symlink("/missing/messages.xml", folder.ActiveFile());
    Writer::Log(Writer::LogInfo, u"a link that leads nowhere");
    EXPECT_TRUE(isFree());

    fs::remove_all(folder.Log());
    WriteAll(folder.Log().substr(0, folder.Log().size() - 1), "in the way");
    EXPECT_THROW(Writer::Log(Writer::LogInfo, u"no folder"), CrkLogException);
    EXPECT_TRUE(isFree());
}

TEST(LogWriter, MovesAFileAsideThatIsLongerThanTheLimit)
{
    const LogFolder folder(kEverything, "a\"b$HOME`id`\\'c;*/");
    fs::create_directories(folder.Log());  // Init takes a backslash for a separator, a file's name does not
    Writer::Log(Writer::LogInfo, u"1");
    const std::uint64_t length = fs::file_size(folder.ActiveFile());
    Writer::m_maxFileLength = 2 * length + 1;  // the seconds may have a digit more by then
    Writer::Log(Writer::LogInfo, u"2");
    EXPECT_EQ(folder.Backups().size(), 0U);
    Writer::m_maxFileLength = fs::file_size(folder.ActiveFile());
    fs::resize_file(folder.ActiveFile(), length);
    Writer::Log(Writer::LogInfo, u"2");  // exactly the limit
    EXPECT_EQ(folder.Backups().size(), 0U);
    Writer::Log(Writer::LogInfo, u"3");
    EXPECT_FALSE(fs::exists(folder.ActiveFile()));
    ASSERT_EQ(folder.Backups().size(), 1U);
    const std::string backup = folder.Backups()[0];
    EXPECT_THAT(Entries(ReadAll(backup)), ElementsAre("General/Info/1", "General/Info/2", "General/Info/3"));
    EXPECT_THAT(backup.substr(folder.Log().size()), testing::MatchesRegex("[^/:]*[0-9]-[0-9][0-9][^/:]*\\.xml"));

    Writer::m_maxFileLength = 0;
    fs::permissions(backup, fs::perms::owner_read);  // a backup that has the name gives way, even so
    Writer::Log(Writer::LogInfo, u"4");
    EXPECT_FALSE(fs::exists(folder.ActiveFile()));
    for (const std::string& name : folder.Backups())  // two when the minute has just ended
        EXPECT_TRUE(Entries(ReadAll(name)).size() == 1 || folder.Backups().size() == 2);
}

TEST(LogWriter, MovesAsideAcrossFileSystems)
{
    const LogFolder folder;
    const fs::path elsewhere = "/dev/shm/" + fs::path(folder.Log()).parent_path().parent_path().filename().string();
    std::error_code error;
    fs::create_hard_link(folder.Path("settings.xml"), elsewhere, error);
    if (error != std::errc::cross_device_link)
        GTEST_SKIP() << "no second file system at /dev/shm: " << error.message();
    const CString name = std::exchange(Writer::m_activeFileName, CString("../../.." + elsewhere.string()));
    Writer::m_maxFileLength = 0;
    Writer::Log(Writer::LogInfo, u"over");
    Writer::m_activeFileName = name;
    EXPECT_FALSE(fs::exists(elsewhere));
    ASSERT_EQ(folder.Backups().size(), 1U);
    EXPECT_THAT(Entries(ReadAll(folder.Backups()[0])), ElementsAre("General/Info/over"));
}

TEST(LogWriter, EchoesTheMessageAlone)
{
    const LogFolder folder(
        "<x><ls:Enable>true</ls:Enable><ls:StdOut>true</ls:StdOut><ls:IncludeCategory>a</ls:IncludeCategory></x>");
    testing::internal::CaptureStderr();
    Writer::Log(Writer::LogInfo, u"<?a?>&\u00E9", u"a");
    Writer::Log(Writer::LogInfo, u"dropped", u"b");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "<?a?>&\xC3\xA9");
    EXPECT_THAT(Active(folder), ElementsAre("a/Info/&amp;\xC3\xA9"));
}

TEST(LogWriter, StartsAndStopsAnyNumberOfTimesAndDropsWithoutALock)
{
    EXPECT_EQ(usedBeforeMain, u"Application Startmessages.xml");
    const LogFolder folder;
    WriteAll(folder.Path("settings.xml"),
             "<x><ls:Enable>true</ls:Enable><ls:Level>LogError</ls:Level><ls:IncludeCategory>*</ls:IncludeCategory>"
             "<ls:ExcludeCategory>b</ls:ExcludeCategory></x>");
    EXPECT_TRUE(Writer::CanLog(Writer::LogDebug));  // read by Init only
    folder.Init();
    EXPECT_FALSE(Writer::CanLog(Writer::LogDebug));
    Writer::Log(Writer::LogError, u"1");
    {
        const std::lock_guard heldByUs(Writer::m_mutex);  // what locked here would hang
        Writer::Log(Writer::LogInfo, u"level");
        Writer::Log(Writer::LogError, u"category", u"b");
    }
    Writer::Uninitialize();
    Writer::Uninitialize();
    Writer::Log(Writer::LogEmergency, u"off");
    EXPECT_FALSE(Writer::CanLog(Writer::LogEmergency));
    folder.Init();
    Writer::Log(Writer::LogError, u"2");
    EXPECT_THAT(Active(folder), ElementsAre("General/Error/1", "General/Error/2"));
}

}  // namespace
