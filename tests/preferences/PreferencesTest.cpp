#include "tests/support/AtOnce.h"
#include "tests/support/InChild.h"
#include "tests/support/Test.h"

#include <atomic>
#include <csignal>
#include <fcntl.h>
#include <functional>
#include <sys/file.h>

namespace {

constexpr std::uint32_t kAnyHost = 0, kThisHost = 1;
constexpr SECRegistry::CreatePermissions kRead{};

/// The store is one in a process and is looked for once: each step of a test is a process, that ends normally.
template <class Step> pid_t Start(const Step& step) {
    return StartChild([&step] {
        step();
        std::exit(testing::Test::HasFailure() ? 1 : 0);
    });
}

template <class Step> void InAProcess(const Step& step) { ExpectItEndsWell(Start(step)); }

CString TextOf(rk::TextView name) {
    CString value = u"(none)";
    SECRegistry().GetValue(name, value);
    return value;
}

void Set(std::uint32_t rootKey, const CString& name, const CString& value) {
    SECRegistry registry;
    registry.Connect(rootKey, nullptr, false);
    registry.SetValue(name, value);
}

class Preferences : public testing::Test {
protected:
    Preferences() : m_home("XDG_CONFIG_HOME", m_folder.Path("config").c_str()) { rk::SetApplicationName("mind/maps"); }

    ScopedFolder m_folder;
    ScopedVariable m_home;
    std::string m_database = "config/mind_maps/preferences.sqlite";
};

TEST_F(Preferences, KeepTypesAndEveryTextFromOneProcessToTheNextUntilTheyAreDeleted) {
    const std::u16string large(1U << 20U, u'ä');
    const std::u16string_view texts[] = {u"", {u"\0a\xD800\n\U0001F600", 6}, u"\xFEFFmark", u"\xFFFEmark", large};
    const std::pair<CString, CAtlArray<CString>> lists[] = {
        {u"texts", {u"a\nb\\n", u"", CString(std::u16string_view(u"\0\\", 2)), u"\xD800"}},
        {u"none", {}},
        {u"only empty", {u""}}};
    constexpr std::pair<const char16_t*, double> kNumbers[] = {
        {u"tenth", 0.1}, {u"large", -1e300}, {u"least", 5e-324}, {u"infinite", HUGE_VAL}, {u"half", 0.5f}};
    InAProcess([&] {
        SECRegistry registry;
        EXPECT_TRUE(registry.Connect(kAnyHost, nullptr, true));
        EXPECT_TRUE(registry.Open(u"Any\\Path", kRead));
        registry.SetValue(u"number", 4294967295U);
        registry.SetValue(u"zero", 0);
        registry.SetValue(u"flag", true);
        registry.SetValue(u"no number", -std::nan(""));
        registry.SetValue(u"7 days", u"7 days\\\n");
        for (const std::u16string_view text : texts)
            registry.SetValue(text, text);
        for (const auto& [name, list] : lists)
            registry.SetValue(name, list);
        for (const auto& [name, number] : kNumbers)
            registry.SetValue(name, number);
        // A value is of the type that is written.
        registry.SetValue(std::u16string(u"bytes"), "Jane");
        registry.SetValue(rk::AsUnsignedShort(u"units"), rk::AsUnsignedShort(u"Jane"));
        registry.WriteValueToSystem(u"written", u"Jane");
        for (const CString name : {u"bytes", u"units", u"written"})
            EXPECT_EQ(CrkRegistry::GetRegKeyString(0, u"path", name), u"Jane") << name;
        Set(kThisHost, u"gone", u"here");
        Set(kAnyHost, u"gone", u"anywhere");
        EXPECT_EQ(TextOf(u"gone"), u"here");
    });
    InAProcess([&] {
        SECRegistry registry;
        std::uint32_t number = 5;
        int integer = 0;
        bool flag = false;
        double real = 0;
        CString text = u"untouched";
        CAtlArray<CString> list{u"untouched"};
        EXPECT_FALSE(registry.GetValue(u"flag", number));
        EXPECT_FALSE(registry.GetValue(u"written", flag));
        EXPECT_FALSE(registry.GetValue(u"7 days", real));
        for (const CString name : {u"number", u"7 days"})
            EXPECT_FALSE(registry.GetValue(name, list)) << name;
        for (const CString name : {u"number", u"never there"})
            EXPECT_FALSE(registry.GetValue(name, text)) << name;
        EXPECT_EQ(number, 5U);
        EXPECT_EQ(text, u"untouched");
        EXPECT_EQ(list, (CAtlArray<CString>{u"untouched"}));
        EXPECT_TRUE(registry.GetValue(u"number", number));
        EXPECT_EQ(number, 4294967295U);
        EXPECT_TRUE(registry.GetValue(u"number", integer));
        EXPECT_EQ(integer, -1);
        EXPECT_TRUE(registry.GetValue(u"number", real));
        EXPECT_EQ(real, -1);
        EXPECT_TRUE(registry.GetValue(u"no number", real));
        EXPECT_EQ(std::pair(std::isnan(real), std::signbit(real)), std::pair(true, true)) << real;
        for (const auto& [name, value] : {std::pair{u"number", true}, {u"zero", false}, {u"flag", true}}) {
            EXPECT_TRUE(registry.GetValue(name, flag));
            EXPECT_EQ(flag, value) << CString(name);
        }
        for (const std::u16string_view exact : texts)
            EXPECT_EQ(TextOf(exact), exact);
        for (const auto& [name, expected] : lists)
            EXPECT_EQ(registry.GetValue(name, list) ? list : CAtlArray<CString>{u"unread"}, expected) << name;
        for (const auto& [name, expected] : kNumbers)
            EXPECT_EQ(registry.GetValue(name, real) ? real : NAN, expected) << CString(name);
        bool found = true;
        EXPECT_EQ(CrkRegistry::GetUserOrMachineRegKeyString(nullptr, u"", &found), u"");
        EXPECT_FALSE(found);
        EXPECT_EQ(TextOf(u"gone"), u"here");
        EXPECT_TRUE(registry.DeleteValue(u"gone"));
        for (const CString name : {u"gone", u"never there"})
            EXPECT_FALSE(registry.DeleteValue(name)) << name;
        const CAtlArray<CString> names = registry.GetValueNames();
        EXPECT_EQ(names.size(), 21U);
        EXPECT_TRUE(std::is_sorted(names.begin(), names.end()));
    });
    InAProcess([] {
        EXPECT_EQ(CrkRegistry::GetRegValueNames().size(), 21U);
        EXPECT_EQ(TextOf(u"gone"), u"(none)");
        Set(kAnyHost, u"gone", u"again");
        EXPECT_EQ(TextOf(u"gone"), u"again");
        EXPECT_TRUE(CrkRegistry::DeleteRegValue(u"gone"));
        EXPECT_EQ(TextOf(u"gone"), u"(none)");
    });
    EXPECT_EQ(m_folder.Mode(m_database), 0600U);
}

template <class T>
concept Settable = requires(SECRegistry& registry, const T& value) { registry.SetValue(u"name", value); };
/// Neither a cut number nor a pointer as a boolean.
static_assert(Settable<std::uint8_t> && !Settable<long> && !Settable<long double> && !Settable<void*> &&
              !Settable<std::nullptr_t> && !Settable<wchar_t>);

TEST_F(Preferences, OfAnotherProcessAreSeenAfterOpen) {
    InAProcess([] {
        Set(kThisHost, u"name", u"old");
        InAProcess([] { Set(kThisHost, u"name", u"new"); });  // after fork, the store is opened anew
        EXPECT_EQ(TextOf(u"name"), u"old");
        SECRegistry().Open(nullptr, kRead);
        EXPECT_EQ(TextOf(u"name"), u"new");
    });
}

TEST_F(Preferences, OfManyProcessesAndThreadsAreAllKept) {
    constexpr int kProcesses = 8, kNames = 100;
    std::vector<pid_t> children;
    for (int process = 0; process < kProcesses; ++process)
        children.push_back(Start([process] {
            std::atomic<int> next = process * kNames;
            AtOnce<2>([&next] {
                for (int i = 0; i < kNames / 2; ++i) {
                    const CString name = std::to_string(next++);
                    Set(kThisHost, name, name);
                }
            });
        }));
    std::for_each(children.begin(), children.end(), ExpectItEndsWell);
    InAProcess([] {
        for (int i = 0; i < kProcesses * kNames; ++i)
            ASSERT_EQ(TextOf(CString(std::to_string(i))), CString(std::to_string(i)));
    });
}

TEST_F(Preferences, ReportedAsStoredSurviveAKill) {
    const pid_t killed = Start([] {
        Set(kThisHost, u"name", u"stored");
        raise(SIGKILL);
    });
    waitpid(killed, nullptr, 0);
    InAProcess([] { EXPECT_EQ(TextOf(u"name"), u"stored"); });
}

TEST_F(Preferences, WaitInTheProcessWhileTheStorageFails) {
    InAProcess([] { Set(kThisHost, u"name", u"kept"); });
    InAProcess([this] {
        const ScopedNobody nobody(m_folder);
        m_folder.SetMode("config/mind_maps", 0500);
        EXPECT_EQ(TextOf(u"name"), u"kept");  // read where nothing may be written
        Set(kThisHost, u"other", u"kept too");
        SECRegistry().Close();
        EXPECT_EQ(TextOf(u"other"), u"kept too");
        EXPECT_NE(rk::GetPreferenceState().lastFailure, "");
        m_folder.SetMode("config/mind_maps", 0700);
        SECRegistry().Close();
        EXPECT_EQ(rk::GetPreferenceState().lastFailure, "");
    });
    InAProcess([] { EXPECT_EQ(TextOf(u"name") + TextOf(u"other"), u"keptkept too"); });
}

TEST_F(Preferences, BeginANewDatabaseWithWhatTheProcessKnows) {
    const std::string file = m_folder.Path(m_database);
    const auto overwrite = [&file](std::streamoff at, std::string_view bytes) {
        std::fstream(file, std::ios::in | std::ios::out | std::ios::binary).seekp(at) << bytes;
    };
    const std::function<void()> misfortunes[] = {
        [&] { std::filesystem::remove_all(m_folder.Path("config")); },
        [&] { std::filesystem::rename(file, file + "-gone"); },
        // From here on damage.
        [&] { m_folder.Write(m_database, "no database"); },
        [&] { m_folder.Write(m_database, "another, in the same second as a rule"); },
        [&] { overwrite(18, "\3"); },  // a header of a later version, which must not be written
        [&] { overwrite(47, "\5"); },  // a schema of a later version
        [&] { std::filesystem::remove(file), std::filesystem::create_directory(file); },
        // The list of free pages, which a store runs into and a reading does not see.
        [&] { overwrite(32, {"\0\xFF\xFF\xFF\0\0\0\5", 8}); }};
    for (const auto& happens : misfortunes) {
        SCOPED_TRACE(&happens - misfortunes);
        const bool isDamage = &happens - misfortunes >= 2;
        InAProcess([] { Set(kThisHost, u"large", u""); });
        if (isDamage)
            happens();
        InAProcess([&] {
            Set(kThisHost, u"stored", u"before");
            if (!isDamage)
                happens();
            const CString large = std::u16string(100000, u'x');
            Set(kAnyHost, u"large", large);
            Set(kThisHost, u"large", large);
            const rk::PreferenceState state = rk::GetPreferenceState();
            EXPECT_EQ(state.lastFailure, "");
            EXPECT_EQ(std::filesystem::exists(state.damagedDatabase), isDamage);
        });
        InAProcess([] { EXPECT_EQ(TextOf(u"stored").GetLength() + TextOf(u"large").GetLength(), 100006); });
    }
    // The database, the database that is gone, and each damaged database.
    EXPECT_EQ(m_folder.EntryCount("config/mind_maps"), 2U + 6U);
}

TEST_F(Preferences, WaitTwoSecondsForALockedFolder) {
    InAProcess([] { Set(kThisHost, u"name", u"old"); });
    const int folder = open(m_folder.Path("config/mind_maps").c_str(), O_RDONLY);
    ASSERT_EQ(flock(folder, LOCK_EX), 0);
    InAProcess([folder] {
        std::jthread threads([] { AtOnce<2>([] { SECRegistry().Open(nullptr, kRead); }); });
        std::this_thread::sleep_for(std::chrono::milliseconds(50));  // they wait in turn, longer than a fork waits
        ExpectItEndsWell(StartChild([] {  // ends without a look for leaks: what the threads hold would be lost memory
            Set(kThisHost, u"name", u"kept in memory");
            EXPECT_EQ(TextOf(u"name"), u"kept in memory");
        }));
        threads.join();
        EXPECT_THAT(rk::GetPreferenceState().lastFailure, testing::HasSubstr("locked"));
        flock(folder, LOCK_UN);
        Set(kThisHost, u"name", u"new");
    });
    close(folder);
    InAProcess([] { EXPECT_EQ(TextOf(u"name"), u"new"); });
}

TEST_F(Preferences, LiveThroughForks) {
    InAProcess([this] {
        Set(kThisHost, u"parent", u"kept");
        InAProcess([] {  // a child that inherited the open database would end the parent's locks
            for (const auto& descriptor : std::filesystem::directory_iterator("/proc/self/fd"))
                EXPECT_EQ(std::filesystem::read_symlink(descriptor).string().find("sqlite"), std::string::npos);
        });
        Set(kAnyHost, u"waiting", u"mine");
        InAProcess([] {});
        InAProcess([] {  // reads what its parent has still to store
            SECRegistry().Close();
            EXPECT_EQ(TextOf(u"waiting"), u"mine");
        });
        EXPECT_EQ(m_folder.Read(m_database).find(std::string("m\0i\0n\0e", 7)), std::string::npos);
    });
    InAProcess([] {  // threads are inside while others fork
        const std::jthread writer([](const std::stop_token& end) {
            for (int i = 0; !end.stop_requested(); ++i)
                Set(i % 64 == 0 ? kThisHost : kAnyHost, u"number", i % 3 == 0 ? u"one" : u"another");
        });
        for (int round = 0; round < 10; ++round)
            InAProcess([round] { Set(round % 2 == 0 ? kThisHost : kAnyHost, u"child", u"kept"); });
    });
}

bool lateWriterIsArmed = false;
const struct LateWriter {
    ~LateWriter() {
        if (lateWriterIsArmed)
            Set(kAnyHost, u"late", u"kept");
    }
} lateWriter;

TEST_F(Preferences, AreStoredWhenStaticObjectsWriteThemAtExit) {
    InAProcess([] { lateWriterIsArmed = true; });
    InAProcess([] { EXPECT_EQ(TextOf(u"late"), u"kept"); });
}

}  // namespace
