#include "tests/support/AtOnce.h"
#include "tests/support/InChild.h"
#include "tests/support/Test.h"

#include <set>

namespace {

namespace fs = std::filesystem;
using P = CrkPathUtilities;
using namespace std::string_view_literals;

TEST(Names, GainChangeAndShowTheirExtension) {
    constexpr std::tuple<const char*, const char*, const char*, const char*, bool> kCases[] = {
        // a name, an extension; the name with the extension added, and replaced; whether it has the extension
        {"Map", "ext", "Map.ext", "Map.ext", false},
        {"Map.EXT", "ext", "Map.EXT.ext", "Map.ext", true},
        {"Mapext", "ext", "Mapext.ext", "Mapext.ext", true},  // a dot asked for
        {"ext", ".ext", "ext.ext", "ext.ext", false},
        {"Map.old", "", "Map.old", "Map", true},
        {"/dir.v/Map", "ext", "/dir.v/Map.ext", "/dir.ext", false},  // only the last element searched
        {"\xC3\x89T\xC3\x89", "\xC3\xA9t\xC3\xA9", "\xC3\x89T\xC3\x89.\xC3\xA9t\xC3\xA9",
         "\xC3\x89T\xC3\x89.\xC3\xA9t\xC3\xA9", true}};
    for (const auto& [name, extension, added, replaced, has] : kCases) {
        SCOPED_TRACE(name);
        EXPECT_EQ(P::AddExtension(name, extension), CString(added));
        EXPECT_EQ(P::ReplaceExtension(name, extension), CString(replaced));
        EXPECT_EQ(P::HasExtension(name, extension), has);
    }
}

TEST(Names, LoseWhatNoFileNameMayHold) {
    constexpr std::tuple<const char16_t*, const char16_t*, bool> kCases[] = {
        {u"Q1/Q2: plan", u"Q1.Q2. plan", false},
        {u"a\r\nb\n", u"ab", true},
        {u"a\\b*c?", u"a\\b*c?", true},
    };
    for (const auto& [name, clean, isValid] : kCases) {
        EXPECT_EQ(P::DoesFilenameUseOnlyValidCharacters(name), isValid) << CString(name);
        CString file(name), folder(name);
        P::RemoveInvalidCharsFromFilename(file, u'_');
        P::RemoveInvalidCharsFromFolderName(folder);
        EXPECT_EQ(file, clean);
        EXPECT_EQ(folder, clean);
    }
    CString itself = u"a name longer than any short text";
    P::RemoveCharsFromFilename(itself, itself, u'x');
    EXPECT_EQ(itself, std::u16string(33, u'x'));
}

TEST(Names, AreQuotedOnceMoreAndUnquotedOnce) {
    for (CString text : {R"("a)", R"(a")", R"(")", ""}) {
        EXPECT_FALSE(P::UnquotePath(text)) << text;
        const CString before = text;
        P::QuotePath(text);
        EXPECT_EQ(text, u'"' + before + u'"');
        EXPECT_TRUE(P::UnquotePath(text));
        EXPECT_EQ(text, before);
    }
}

TEST(FreeNames, TakeTheFirstGap) {
    const ScopedFolder folder;
    const CString path = folder.Text("Map.ext");
    EXPECT_EQ(P::GetUniqueFilename(folder.Text("no:such\n")), folder.Text("no:such\n"));
    folder.Make({"Map.ext", "Map (3).ext"});
    EXPECT_EQ(P::GetUniqueFilename(path), folder.Text("Map (2).ext"));
    folder.Make({"Map (2).ext/", "Map (4).ext>nowhere", ".profile"});
    EXPECT_EQ(P::GetUniqueFilename(path), folder.Text("Map (5).ext"));
    EXPECT_EQ(P::GetUniqueFilename(folder.Text(".profile")), folder.Text());
    const ScopedVariable home("HOME", folder.Path().c_str());
    EXPECT_EQ(P::GetUniqueFilename(u"~/Map.ext"), u"~/Map (5).ext");

    folder.Make({"a.b.ext", "Plan", "b", "~", "caf\xE9.ext", "Notes.old/"});
    constexpr std::tuple<const char16_t*, const char16_t*, const char16_t*> kCases[] = {
        {u"Map.ext", u"ext", u"Map (5).ext"},
        {u"Map", u"", u"Map"},
        {u"Plan.", u"", u"Plan (2)"},
        {u"a:b", u"ext", u"a.b (2).ext"},
        {u"x\\b", u"", u"b (2)"},
        {u"~", u"", u"~ (2)"},
        {u"caf\xDCE9", u"ext", u"caf\xDCE9 (2).ext"},
        {u"", u"ext", u""}};
    for (const CString& in : {folder.Text(), CString(u"~")})
        for (const auto& [base, extension, result] : kCases)
            EXPECT_EQ(P::MakeNameUnique(in, base, extension), result) << CString(base);
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
    EXPECT_EQ(P::MakeFolderNameUnique(folder.Text(), u"Notes.old"), u"Notes.old (2)");
}

TEST(FreeNames, AreFoundAmongManyInAnyFolder) {
    const ScopedFolder folder;
    const auto numbered = [](int n) { return "Map (" + std::to_string(n) + ").x"; };
    folder.Make({"Map.x", "Map (017).x", "Map (17).X", "Map (17).x.x", "Map(17).x", "XMap (17).x"});
    const std::set<int> gaps = {2, 17, 40, 99, 101};
    for (int n = 2; n <= 100; ++n)
        if (!gaps.contains(n))
            folder.Write(numbered(n));
    for (const int gap : gaps) {
        EXPECT_EQ(P::MakeNameUnique(folder.Text(), u"Map", u"x"), CString(numbered(gap)));
        folder.Write(numbered(gap));
    }
    for (int n = 2; n <= 20; ++n)
        folder.MakeFolder("F (" + std::to_string(n) + ")");
    folder.Make({"F/", "F (21)>F", "F (22)"});  // a link to a folder counts, a file does not
    EXPECT_EQ(P::MakeFolderNameUnique(folder.Text(), u"F"), u"F (22)");
    const ScopedNobody nobody(folder);
    folder.SetMode("", 0300);  // no listing
    EXPECT_EQ(P::MakeNameUnique(folder.Text(), u"Map", u"x"), u"Map (102).x");
    folder.SetMode("", 0400);                                        // names alone
    EXPECT_EQ(P::MakeNameUnique(folder.Text(), u"Map", u"x"), u"");  // it may be taken
    EXPECT_EQ(P::GetUniqueFilename(folder.Text("New.x")), u"");
    folder.SetMode("", 0700);
}

/// The temporary folder is found once in a process, so each question has a process of its own.
void ExpectTempFolder(const std::string& environment, const std::string& expected) {
    ExpectItEndsWell(StartChild([&] {
        setenv("TMPDIR", environment.c_str(), 1);
        AtOnce<8>([&] { EXPECT_EQ(P::GetTempFolder(), rk::PathText(expected)) << environment; });
        EXPECT_EQ(P::GetSpecialFolderPath(P::TemporaryItemsFolder), rk::PathText(expected));
    }));
}

TEST(TemporaryFolder, IsTheUsersOwnAndNobodyElseCanHaveLaidItThere) {
    const ScopedFolder home;
    const ScopedVariable homeFolder("HOME", home.Path().c_str()), caches("XDG_CACHE_HOME", nullptr);
    const std::string privateName = "/RkUtilities-" + std::to_string(geteuid()), inTmp = "/tmp" + privateName;
    home.Make({"0755 own/", "0777 lawless/", "common/", "laid/"});
    for (const char* const open : {"common", "laid"})
        home.SetMode(open, 01777);
    const std::string own = home.Path("own"), common = home.Path("common"), made = common + privateName;
    ExpectTempFolder(own + "//", own);
    for (const unsigned next : {0755U, 0500U, 0U}) {  // made, then found open to others or closed to the user
        ExpectTempFolder(common, made);
        EXPECT_EQ(fs::symlink_status(made).permissions(), fs::perms::owner_all);
        fs::permissions(made, fs::perms(next));
    }
    home.Link("laid" + privateName, own);  // a link, if to a folder of the user
    for (const std::string& refused : {home.Path("lawless"), home.Path("laid"), std::string("relative")})
        ExpectTempFolder(refused, inTmp);
}

TEST(TemporaryFiles, AreNewEmptyAndTheUsersAlone) {
    const CString start = P::GetTempFolder() + u"/map\xDCE9 ";
    const CString files[] = {P::GetTempFilename(u"map\xDCE9 "), P::GetTempFilename(u"map\xDCE9 ")};
    EXPECT_NE(files[0], files[1]);
    for (const CString& file : files) {
        EXPECT_EQ(file.Left(file.GetLength() - 8), start);
        const fs::path path = rk::NativePath(file);
        EXPECT_EQ(fs::status(path).permissions(), fs::perms(0600));
        EXPECT_EQ(fs::file_size(path), 0U);
        fs::remove(path);
    }
    for (const CString& prefix : {CString(u"no/such/"), CString(std::u16string(300, u'p')), CString(u"a\0b"sv)})
        EXPECT_EQ(P::GetTempFilename(prefix), P::GetTempFolder() + u'/' + prefix + u"XXXXXXXX");
}

}  // namespace
