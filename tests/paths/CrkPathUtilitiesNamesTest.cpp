#include "RkUtilities/foundation/NativePath.h"
#include "RkUtilities/paths/CrkPathUtilities.h"
#include "tests/support/ScopedFolder.h"
#include "tests/support/ScopedVariable.h"

#include <atomic>
#include <gtest/gtest.h>
#include <latch>
#include <set>
#include <thread>
#include <vector>

namespace {

namespace fs = std::filesystem;
using P = CrkPathUtilities;
using namespace std::string_view_literals;

TEST(Names, GainChangeAndShowTheirExtension) {
    struct Case {
        const char *name, *extension, *added, *replaced;
        bool has;
    };
    constexpr Case kCases[] = {
        {"Map", "ext", "Map.ext", "Map.ext", false},
        {"Map", ".ext", "Map.ext", "Map.ext", false},
        {"Map.EXT", "ext", "Map.EXT.ext", "Map.ext", true},
        {"Mapext", "ext", "Mapext.ext", "Mapext.ext", true},  // a dot asked for
        {"ext", ".ext", "ext.ext", "ext.ext", false},
        {"Map.old", "", "Map.old", "Map", true},
        {"/dir.v/Map", "ext", "/dir.v/Map.ext", "/dir.ext", false},  // only the last element searched
        {"\xC3\x89T\xC3\x89", "\xC3\xA9t\xC3\xA9", "\xC3\x89T\xC3\x89.\xC3\xA9t\xC3\xA9",
         "\xC3\x89T\xC3\x89.\xC3\xA9t\xC3\xA9", true}};
    for (const Case& c : kCases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(P::AddExtension(c.name, c.extension), CString(c.added));
        EXPECT_EQ(P::ReplaceExtension(c.name, c.extension), CString(c.replaced));
        EXPECT_EQ(P::HasExtension(c.name, c.extension), c.has);
    }
}

TEST(Names, LoseWhatNoFileNameMayHold) {
    struct Case {
        const char16_t *name, *clean;
        bool isValid;
    };
    constexpr Case kCases[] = {{u"Q1/Q2: plan", u"Q1.Q2. plan", false},
                               {u"a\r\nb\n", u"ab", true},
                               {u"a\\b*c?", u"a\\b*c?", true},
                               {u"/:", u"..", false}};
    for (const Case& c : kCases) {
        EXPECT_EQ(P::DoesFilenameUseOnlyValidCharacters(c.name), c.isValid) << CString(c.name);
        CString file(c.name), folder(c.name);
        P::RemoveInvalidCharsFromFilename(file, u'_');
        P::RemoveInvalidCharsFromFolderName(folder);
        EXPECT_EQ(file, c.clean);
        EXPECT_EQ(folder, c.clean);
    }
    const auto replaced = [](CString name, const CString& characters, char16_t replacement) {
        P::RemoveCharsFromFilename(name, characters, replacement);
        return name;
    };
    EXPECT_EQ(replaced(u"a/b:c", u"/:", u':'), u"a:b:c");
    EXPECT_EQ(replaced(u"abc", u"ac", u'\0'), u"\0b\0"sv);
    CString itself = u"a name longer than any short text";
    P::RemoveCharsFromFilename(itself, itself, u'x');
    EXPECT_EQ(itself, std::u16string(33, u'x'));
}

TEST(Names, AreQuotedOnceMoreAndUnquotedOnce) {
    for (const char* text : {R"("")", R"("a b")", R"(""a"")", R"(""")", R"("a)", R"(a")", R"(")", ""}) {
        const CString path(text);
        CString quoted = path, unquoted = path;
        P::QuotePath(quoted);
        EXPECT_EQ(quoted, u'"' + path + u'"');
        const bool isQuoted = path.GetLength() > 1 && path.GetAt(0) == u'"' && path.View().ends_with(u'"');
        EXPECT_EQ(P::UnquotePath(unquoted), isQuoted) << text;
        EXPECT_EQ(unquoted, isQuoted ? path.Mid(1, path.GetLength() - 2) : path);
    }
}

TEST(FreeNames, TakeTheFirstGap) {
    const ScopedFolder folder;
    const CString path = folder.Text("Map.ext");
    EXPECT_EQ(P::GetUniqueFilename(path), path);
    EXPECT_EQ(P::GetUniqueFilename(folder.Text("no:such\n")), folder.Text("no:such\n"));
    folder.Write("Map.ext");
    EXPECT_EQ(P::GetUniqueFilename(path), folder.Text("Map (2).ext"));
    folder.Write("Map (3).ext");
    EXPECT_EQ(P::GetUniqueFilename(path), folder.Text("Map (2).ext"));
    folder.MakeFolder("Map (2).ext");
    folder.Link("Map (4).ext", "nowhere");
    EXPECT_EQ(P::GetUniqueFilename(path), folder.Text("Map (5).ext"));
    folder.Write(".profile");
    EXPECT_EQ(P::GetUniqueFilename(folder.Text(".profile")), folder.Text());
    const ScopedVariable home("HOME", folder.Path().c_str());
    EXPECT_EQ(P::GetUniqueFilename(u"~/Map.ext"), u"~/Map (5).ext");

    for (const char* taken : {"a.b.ext", "Plan", "b", "~", "caf\xE9.ext"})
        folder.Write(taken);
    folder.MakeFolder("Notes.old");
    struct Case {
        const char16_t *base, *extension, *result;
    };
    constexpr Case kCases[] = {{u"Map.ext", u"ext", u"Map (5).ext"},
                               {u"Map", u"", u"Map"},
                               {u"Plan.", u"", u"Plan (2)"},
                               {u"a:b", u"ext", u"a.b (2).ext"},
                               {u"x\\b", u"", u"b (2)"},
                               {u"x\\b", u"ext", u"x\\b.ext"},
                               {u"~", u"", u"~ (2)"},
                               {u"caf\xDCE9", u"ext", u"caf\xDCE9 (2).ext"},
                               {u"..", u"", u". (2)"},
                               {u"\n", u"", u" (2)"},
                               {u"", u"ext", u""}};
    for (const CString& in : {folder.Text(), folder.Text().Left(folder.Text().GetLength() - 1), CString(u"~")})
        for (const Case& c : kCases)
            EXPECT_EQ(P::MakeNameUnique(in, c.base, c.extension), c.result) << CString(c.base);
    EXPECT_EQ(P::MakeNameUnique(u"", u"Map", u"ext"), u"");
    EXPECT_EQ(P::MakeNameUnique(folder.Text("none"), u"Map", u"ext"), u"Map.ext");
    // No name is longer than the 255 bytes that file systems take, and no name ends within a character.
    const std::u16string longest(250, u'n'), wide(125, u'\u00E9');
    for (const auto& [base, first, second] : {std::tuple(longest, longest, longest.substr(0, 247)),
                                              std::tuple(longest + u"nn", longest + u'n', longest.substr(0, 247)),
                                              std::tuple(wide, wide, wide.substr(0, 123))}) {
        EXPECT_EQ(P::MakeNameUnique(folder.Text(), base, u"ext"), CString(first) + u".ext");
        folder.Write(CString(first + u".ext").ToUtf8());
        EXPECT_EQ(P::GetUniqueFilename(folder.Text() + base + u".ext"), folder.Text() + second + u" (2).ext");
    }
    EXPECT_EQ(P::MakeNameUnique(folder.Text(), u"Map", std::u16string(255, u'e')), u"");
    EXPECT_EQ(P::MakeNameUnique(folder.Text() + u'\0', u"Map", u"ext"), u"Map.ext");

    EXPECT_EQ(P::MakeFolderNameUnique(folder.Text(), u"Notes.old"), u"Notes.old (2)");
    EXPECT_EQ(P::MakeFolderNameUnique(folder.Text(), u""), u" (2)");
}

TEST(FreeNames, AreFoundAmongManyWhateverElseLiesThere) {
    const ScopedFolder folder;
    folder.Write("Map.x");
    constexpr int kTaken = 500;
    std::set<int> gaps = {2, 17, 33, 34, 40, 100, 499};
    for (int n = 2; n <= kTaken; ++n)
        if (!gaps.contains(n))
            folder.Write("Map (" + std::to_string(n) + ").x");
    for (const char* other : {"Map (02).x", "Map (2).X", "Map (2).x.x", "Map(2).x", "XMap (40).x"})
        folder.Write(other);
    gaps.insert(kTaken + 1);
    for (const int gap : gaps) {
        const std::string name = "Map (" + std::to_string(gap) + ").x";
        EXPECT_EQ(P::MakeNameUnique(folder.Text(), u"Map", u"x"), CString(name));
        folder.Write(name);
    }
    // Of folders, only some; the files among them do not count, links to folders do.
    folder.MakeFolder("F");
    for (int n = 2; n <= 60; ++n)
        n % 7 == 0 ? folder.Link("F (" + std::to_string(n) + ")", "F")
                   : folder.MakeFolder("F (" + std::to_string(n) + ")");
    folder.Write("F (61)");
    EXPECT_EQ(P::MakeFolderNameUnique(folder.Text(), u"F"), u"F (61)");
}

TEST(FreeNames, EndInAFolderThatMayNotBeListedOrEntered) {
    const ScopedFolder folder;
    for (int n = 1; n < 50; ++n)
        folder.Write(n == 1 ? "d/Map.x" : "d/Map (" + std::to_string(n) + ").x");
    const ScopedNobody nobody(folder);
    fs::permissions(folder.Path("d"), fs::perms::owner_exec | fs::perms::owner_write);  // no listing
    EXPECT_EQ(P::MakeNameUnique(folder.Text("d"), u"Map", u"x"), u"Map (50).x");
    fs::permissions(folder.Path("d"), fs::perms::owner_read);           // names alone
    EXPECT_EQ(P::MakeNameUnique(folder.Text("d"), u"Map", u"x"), u"");  // it may be taken
    EXPECT_EQ(P::GetUniqueFilename(folder.Text("d/New.x")), u"");
    fs::permissions(folder.Path("d"), fs::perms::owner_all);
}

// The temporary folder is found once in a process, so each question has a process of its own.
void ExpectTempFolder(const std::string& environment, const std::string& expected) {
    const auto ask = [&] {
        setenv("TMPDIR", environment.c_str(), 1);
        std::latch start(8);
        std::atomic<int> alike = 0;
        std::vector<std::jthread> threads(8);
        for (std::jthread& thread : threads)
            thread = std::jthread([&] {
                start.arrive_and_wait();
                alike += P::GetTempFolder() == rk::PathText(expected) ? 1 : 0;
            });
        threads.clear();
        _exit(alike == 8 && P::GetSpecialFolderPath(P::TemporaryItemsFolder) == rk::PathText(expected) ? 0 : 1);
    };
    EXPECT_EXIT(ask(), testing::ExitedWithCode(0), "") << environment;
}

TEST(TemporaryFolder, IsTheUsersOwnAndNobodyElseCanHaveLaidItThere) {
    const ScopedFolder home;
    const ScopedVariable homeFolder("HOME", home.Path().c_str()), caches("XDG_CACHE_HOME", nullptr);
    const std::string privateName = "/RkUtilities-" + std::to_string(geteuid()), inTmp = "/tmp" + privateName;
    const auto folder = [&](const char* name, unsigned mode) {
        home.MakeFolder(name);
        fs::permissions(home.Path(name), fs::perms(mode));
        return home.Path(name);
    };
    const std::string own = folder("own", 0755), shared = folder("shared", 01777), made = shared + privateName;
    ExpectTempFolder(own, own);
    ExpectTempFolder(own + "//", own);
    for (const unsigned next : {0755U, 0500U, 0U}) {  // made, then found open to others or closed to the user
        ExpectTempFolder(shared, made);
        EXPECT_EQ(fs::symlink_status(made).permissions(), fs::perms::owner_all);
        fs::permissions(made, fs::perms(next));
    }
    const std::string laid = folder("laid", 01777), blocked = folder("blocked", 01777);
    home.Link("laid" + privateName, own);  // a link, if to a folder of the user
    home.Write("blocked" + privateName);
    for (const std::string& refused : {folder("lawless", 0777), laid, blocked, std::string("relative"), std::string()})
        ExpectTempFolder(refused, inTmp);
}

TEST(TemporaryFiles, AreNewEmptyAndTheUsersAlone) {
    std::set<CString> files;
    const CString start = P::GetTempFolder() + u"/map\xDCE9 ";
    for (int i = 0; i < 100; ++i) {
        const CString file = P::GetTempFilename(u"map\xDCE9 ");
        EXPECT_EQ(file.Left(start.GetLength()), start);
        EXPECT_EQ(file.GetLength(), start.GetLength() + 8);
        const fs::path path = rk::NativePath(file);
        EXPECT_EQ(fs::symlink_status(path).type(), fs::file_type::regular);
        EXPECT_EQ(fs::status(path).permissions(), fs::perms(0600));
        EXPECT_EQ(fs::file_size(path), 0U);
        EXPECT_TRUE(files.insert(file).second);
        fs::remove(path);
    }
    for (const CString& prefix : {CString(u"no/such/"), CString(std::u16string(300, u'p')), CString(u"a\0b"sv)})
        EXPECT_EQ(P::GetTempFilename(prefix), P::GetTempFolder() + u'/' + prefix + u"XXXXXXXX");
}

}  // namespace
