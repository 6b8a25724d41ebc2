#include "tests/support/InChild.h"
#include "tests/support/Test.h"

#include <atomic>
#include <csignal>
#include <fcntl.h>
#include <functional>
#include <gmock/gmock.h>
#include <sys/file.h>
#include <sys/mman.h>

namespace {

constexpr std::uint32_t kAnyHost = 0, kThisHost = 1;
constexpr SECRegistry::CreatePermissions kRead{};

/// The store is one in a process and is looked for once: each step of a test is a process of its own, that ends normally.
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

TEST_F(Preferences, KeepTypesAndEveryTextFromOneProcessToTheNext) {
    const std::u16string_view texts[] = {u"", {u"\0a\xD800\n\U0001F600", 6}, u"\xFEFFmark", u"\xFFFEmark"};
    const CString large = std::u16string(1U << 20U, u'ä');
    InAProcess([&] {
        SECRegistry registry;
        EXPECT_TRUE(registry.Connect(kAnyHost, nullptr, true));
        EXPECT_TRUE(registry.Open(u"Any\\Path", kRead));
        registry.SetValue(u"number", 4294967295U);
        registry.SetValue(u"zero", 0);
        registry.SetValue(u"flag", true);
        for (const std::u16string_view text : texts)
            registry.SetValue(text, text);
        registry.SetValue(u"large", large);
        EXPECT_EQ(TextOf(texts[1]), texts[1]);  // seen at once
        // A value is of the type that is written.
        registry.SetValue(std::u16string(u"bytes"), "Jane");
        registry.SetValue(CString(u"units").GetUTF16Ptr(), CString(u"Jane").GetUTF16Ptr());
        registry.WriteValueToSystem(u"written", u"Jane");
        for (const CString name : {u"bytes", u"units", u"written"})
            EXPECT_EQ(CrkRegistry::GetRegKeyString(0, u"path", name), u"Jane");
        registry.SetValue(u"count", -5);
        EXPECT_EQ(registry.GetValueFromSystem(u"count", SECRegistry::Number), SECRegistry::Value(-5));
        EXPECT_EQ(registry.GetValueFromSystem(u"written", SECRegistry::String), SECRegistry::Value(CString(u"Jane")));
        EXPECT_EQ(registry.GetValueFromSystem(u"written", SECRegistry::Boolean), std::nullopt);
    });
    InAProcess([&] {
        const SECRegistry registry;
        std::uint32_t number = 5;
        bool flag = false;
        CString text = u"untouched";
        EXPECT_FALSE(registry.GetValue(u"flag", number));
        EXPECT_FALSE(registry.GetValue(u"number", text));
        EXPECT_FALSE(registry.GetValue(u"no", text));
        EXPECT_EQ(number, 5U);
        EXPECT_EQ(text, u"untouched");
        EXPECT_TRUE(registry.GetValue(u"number", number));
        EXPECT_EQ(number, 4294967295U);
        for (const auto& [name, value] : {std::pair{u"number", true}, {u"zero", false}, {u"flag", true}}) {
            EXPECT_TRUE(registry.GetValue(name, flag));
            EXPECT_EQ(flag, value) << CString(name);
        }
        for (const std::u16string_view exact : texts)
            EXPECT_EQ(TextOf(exact), exact);
        EXPECT_EQ(TextOf(u"large"), large);
        EXPECT_FALSE(registry.EnumerateKeys(0, text));
        EXPECT_EQ(registry.GetFullKey(u"number"), u"number");
        bool found = true;
        EXPECT_EQ(CrkRegistry::GetUserOrMachineRegKeyString(nullptr, u"", &found), u"");
        EXPECT_FALSE(found);
    });
    EXPECT_EQ(m_folder.Mode(m_database), 0600U);
}

template <class T>
concept Settable = requires(SECRegistry& registry, const T& value) { registry.SetValue(u"name", value); };
static_assert(Settable<bool> && Settable<int> && Settable<std::uint8_t> && Settable<unsigned short const*> &&
              Settable<char16_t[5]> && Settable<char[5]> && Settable<std::u16string_view>);
// Neither a cut number nor a pointer as a boolean.
static_assert(!Settable<long> && !Settable<long double> && !Settable<void*> && !Settable<std::nullptr_t> &&
              !Settable<wchar_t>);

TEST_F(Preferences, AreNumbersAndListsOfTextsListedAndDeleted) {
    const CAtlArray<CString> texts{u"a\nb\\n", u"", CString(std::u16string_view(u"\0\\", 2)), u"\xD800"};
    const CAtlArray<CString> none, onlyEmpty{u""};
    constexpr std::pair<const char16_t*, double> kNumbers[] = {
        {u"tenth", 0.1}, {u"large", -1e300}, {u"least", 5e-324}, {u"infinite", HUGE_VAL}, {u"half", 0.5f}};
    InAProcess([&] {
        SECRegistry registry;
        registry.Connect(kThisHost, u"", false);
        registry.SetValue(u"texts", texts);
        registry.SetValue(u"none", none);
        registry.SetValue(u"only empty", onlyEmpty);
        registry.SetValue(u"integer", -7);
        for (const auto& [name, number] : kNumbers)
            registry.SetValue(name, number);
        Set(kAnyHost, u"gone", u"anywhere");
        Set(kThisHost, u"gone", u"here");
        registry.SetValue(u"none at all", -std::nan(""));
        registry.SetValue(u"damaged", u"no line feed");
        registry.SetValue(u"7 days", u"7 days\\\n");
    });
    InAProcess([&] {
        SECRegistry registry;
        registry.Connect(kThisHost, u"", false);
        CAtlArray<CString> read{u"old"};
        EXPECT_FALSE(registry.GetValue(u"damaged", read) || registry.GetValue(u"integer", read) ||
                     registry.GetValue(u"7 days", read));
        EXPECT_EQ(read, (CAtlArray<CString>{u"old"}));
        EXPECT_TRUE(registry.GetValue(u"texts", read) && read == texts);
        EXPECT_TRUE(registry.GetValue(u"only empty", read) && read == onlyEmpty);
        EXPECT_TRUE(registry.GetValue(u"none", read) && read == none);
        double number = 0;
        for (const auto& [name, expected] : kNumbers)
            EXPECT_TRUE(registry.GetValue(name, number) && number == expected) << CString(name);
        EXPECT_FALSE(registry.GetValue(u"damaged", number) || registry.GetValue(u"7 days", number));
        EXPECT_TRUE(registry.GetValue(u"none at all", number) && std::isnan(number) && std::signbit(number));
        EXPECT_TRUE(registry.GetValue(u"integer", number) && number == -7);
        int integer = 0;
        EXPECT_TRUE(registry.GetValue(u"integer", integer) && integer == -7);
        EXPECT_EQ(registry.GetValueNames().size(), 13u);
        EXPECT_EQ(registry.GetValueNames()[1], u"damaged");
        EXPECT_TRUE(registry.DeleteValue(u"gone"));
        EXPECT_FALSE(registry.DeleteValue(u"gone") || registry.DeleteValue(u"never there"));
        EXPECT_EQ(registry.GetValueNames().size(), 12u);
    });
    InAProcess([] {
        EXPECT_EQ(TextOf(u"gone"), u"(none)");
        EXPECT_EQ(SECRegistry().GetValueNames().size(), 12u);
        Set(kAnyHost, u"gone", u"again");
        EXPECT_EQ(TextOf(u"gone"), u"again");
        EXPECT_TRUE(CrkRegistry::DeleteRegValue(u"gone"));
        EXPECT_FALSE(CrkRegistry::DeleteRegValue(u"gone"));
        EXPECT_EQ(CrkRegistry::GetRegValueNames().size(), 12u);
    });
}

TEST_F(Preferences, OfThisHostComeFirstAndThoseOfAnotherProcessAreSeenAfterOpen) {
    InAProcess([] {
        Set(kThisHost, u"name", u"here");
        Set(kAnyHost, u"name", u"anywhere");
        EXPECT_EQ(TextOf(u"name"), u"here");
        Set(kAnyHost, u"other", u"anywhere");
        EXPECT_EQ(TextOf(u"other"), u"anywhere");
    });
    InAProcess([] {
        EXPECT_EQ(TextOf(u"name"), u"here");
        InAProcess([] { Set(kThisHost, u"name", u"new"); });  // after fork, the store is opened anew
        EXPECT_EQ(TextOf(u"name"), u"here");
        SECRegistry().Open(nullptr, kRead);
        EXPECT_EQ(TextOf(u"name"), u"new");
    });
}

TEST_F(Preferences, OfManyProcessesAndThreadsAreAllKept) {
    const auto forEachName = [](int part, const auto& visit) {
        for (int i = 0; i < 50; ++i)
            visit(CString(std::to_string(part) + "." + std::to_string(i)));
    };
    std::vector<pid_t> children;
    for (int process = 0; process < 8; ++process)
        children.push_back(Start([&] {
            const auto setAll = [&](int part) { forEachName(part, [](auto name) { Set(kThisHost, name, name); }); };
            const std::jthread one(setAll, process), another(setAll, process + 8);
        }));
    std::for_each(children.begin(), children.end(), ExpectItEndsWell);
    InAProcess([&] {
        for (int part = 0; part < 16; ++part)
            forEachName(part, [](const CString& name) { ASSERT_EQ(TextOf(name), name); });
    });
}

TEST_F(Preferences, ReportedAsStoredSurviveAKill) {
    void* const shared = mmap(nullptr, 4096, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    auto& stored = *static_cast<std::atomic<std::uint32_t>*>(shared);
    std::mt19937 random(21);
    for (int round = 0; round < 20; ++round) {
        stored = 0;
        const pid_t writer = Start([&] {
            SECRegistry registry;
            registry.Connect(kThisHost, nullptr, false);
            for (std::uint32_t i = 1;; stored = i++)
                registry.SetValue(u"count", i);
        });
        while (stored == 0)
            usleep(100);
        usleep(static_cast<useconds_t>(random() % 20000));
        kill(writer, SIGKILL);
        waitpid(writer, nullptr, 0);
        InAProcess([&] {
            std::uint32_t found = 0;
            EXPECT_TRUE(SECRegistry().GetValue(u"count", found));
            EXPECT_THAT(found, testing::AnyOf(stored.load(), stored + 1));
        });
    }
    munmap(shared, 4096);
}

TEST_F(Preferences, WaitInTheProcessWhileTheStorageFails) {
    m_folder.Write("config", "a file where a folder should be");
    InAProcess([this] {
        Set(kThisHost, u"name", u"kept");
        EXPECT_EQ(TextOf(u"name"), u"kept");
        EXPECT_NE(rk::GetPreferenceState().lastFailure, "");
        std::filesystem::remove(m_folder.Path("config"));
        SECRegistry().Close();
        EXPECT_EQ(rk::GetPreferenceState().lastFailure, "");
    });
    InAProcess([this] {
        const ScopedNobody nobody(m_folder);
        m_folder.SetMode("config/mind_maps", 0500);
        EXPECT_EQ(TextOf(u"name"), u"kept");  // read where nothing may be written
        Set(kAnyHost, u"other", u"kept too");
        SECRegistry().Close();
        EXPECT_EQ(TextOf(u"other"), u"kept too");
        EXPECT_NE(rk::GetPreferenceState().lastFailure, "");
        m_folder.SetMode("config/mind_maps", 0700);
    });
    InAProcess([] { EXPECT_EQ(TextOf(u"name") + TextOf(u"other"), u"keptkept too"); });
}

TEST_F(Preferences, BeginANewDatabaseWithWhatTheProcessKnows) {
    const std::string file = m_folder.Path(m_database);
    const auto overwrite = [&file](std::streamoff at, std::string_view bytes) {
        std::fstream(file, std::ios::in | std::ios::out | std::ios::binary).seekp(at) << bytes;
    };
    const struct {
        bool isDamage;
        std::function<void()> happens;
    } misfortunes[] = {{false, [&] { std::filesystem::remove_all(m_folder.Path("config")); }},
                       {false, [&] { std::filesystem::rename(file, file + "-gone"); }},
                       {true, [&] { m_folder.Write(m_database, "no database"); }},
                       {true, [&] { m_folder.Write(m_database, "another, in the same second as a rule"); }},
                       {true, [&] { overwrite(18, "\3"); }},  // a header of a later version, which must not be written
                       {true, [&] { overwrite(47, "\5"); }},  // a schema of a later version
                       {true, [&] { std::filesystem::remove(file), std::filesystem::create_directory(file); }},
                       // The list of free pages, which a store runs into and a reading does not see.
                       {true, [&] { overwrite(32, {"\0\xFF\xFF\xFF\0\0\0\5", 8}); }}};
    for (const auto& misfortune : misfortunes) {
        SCOPED_TRACE(&misfortune - misfortunes);
        InAProcess([] { Set(kThisHost, u"large", u""); });
        if (misfortune.isDamage)
            misfortune.happens();
        InAProcess([&] {
            Set(kThisHost, u"stored", u"before");
            if (!misfortune.isDamage)
                misfortune.happens();
            const CString large = std::u16string(100000, u'x');
            Set(kAnyHost, u"large", large);
            Set(kThisHost, u"large", large);
            const rk::PreferenceState state = rk::GetPreferenceState();
            EXPECT_EQ(state.lastFailure, "");
            EXPECT_EQ(std::filesystem::exists(state.damagedDatabase), misfortune.isDamage);
        });
        InAProcess([] { EXPECT_EQ(TextOf(u"stored").GetLength() + TextOf(u"large").GetLength(), 100006); });
    }
    EXPECT_EQ(m_folder.EntryCount("config/mind_maps"),
              2U + 6U);  // the database, the one that is gone, and each damaged one
}

TEST_F(Preferences, WaitTwoSecondsForALockedFolder) {
    InAProcess([] { Set(kThisHost, u"name", u"old"); });
    const int folder = open(m_folder.Path("config/mind_maps").c_str(), O_RDONLY);
    ASSERT_EQ(flock(folder, LOCK_EX), 0);
    InAProcess([folder] {
        SECRegistry().Open(nullptr, kRead);
        EXPECT_THAT(rk::GetPreferenceState().lastFailure, testing::HasSubstr("locked"));
        flock(folder, LOCK_UN);
        Set(kThisHost, u"name", u"new");
    });
    close(folder);
    InAProcess([] { EXPECT_EQ(TextOf(u"name"), u"new"); });
}

TEST_F(Preferences, LiveThroughForks) {
    InAProcess([] {  // the child goes on when the parent, the last one with the database, has ended
        Set(kThisHost, u"parent", u"kept");
        int ends[2];
        ASSERT_EQ(pipe(ends), 0);
        if (fork() == 0) {
            close(ends[1]);
            Set(kThisHost, u"child", u"kept");
            EXPECT_EQ(read(ends[0], ends, 1), 0);
            Set(kThisHost, u"orphan", u"kept");
            std::exit(0);
        }
    });
    for (int tries = 0; tries < 1000; ++tries) {
        const std::string found = InChild([] { return TextOf(u"orphan").ToUtf8(); });
        if (found == "kept")
            break;
        ASSERT_LT(tries, 999) << "the orphan's value is " << found;
        usleep(10000);
    }
    InAProcess([] {  // threads are inside while others fork
        std::atomic<bool> isOver = false;
        std::jthread writer([&] {
            for (int i = 0; !isOver; ++i)
                Set(i % 64 == 0 ? kThisHost : kAnyHost, u"number", i % 3 == 0 ? u"one" : u"another");
        });
        for (int round = 0; round < 10; ++round) {
            InAProcess([round] {
                if (round % 2 == 0)
                    Set(kThisHost, u"child", u"kept");
            });
        }
        isOver = true;
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
