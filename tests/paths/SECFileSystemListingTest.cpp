#include "tests/support/ScopedCurrentFolder.h"
#include "tests/support/Test.h"

namespace {

using testing::ElementsAre;
using testing::UnorderedElementsAre;

std::vector<std::string> Listed(const ScopedFolder& folder, const CString& pattern, unsigned long mask) {
    const std::unique_ptr<CAtlList<CString>> list(SECFileSystem().GetFileList(pattern, mask));
    std::vector<std::string> names;
    for (const CString& path : *list)
        names.push_back(rk::NativePath(path).substr(folder.Path().size()));
    return names;
}

TEST(FileSystem, ListsByPattern) {
    const ScopedFolder folder;
    folder.Make({"a.txt", "a.TXT", "b.txt", "a", "a.b.txt", ".txt", "end.", "x.*", "a.dir/~"});
    const auto listed = [&](std::string_view pattern) { return Listed(folder, folder.Text(pattern), 0xFF); };
    EXPECT_EQ(listed("*.*").size(), 9U);
    EXPECT_THAT(listed("*"), UnorderedElementsAre("a", "end."));
    EXPECT_THAT(listed("*.txt"), UnorderedElementsAre(".txt", "a.b.txt", "a.txt", "b.txt"));
    EXPECT_THAT(listed("*.TXT"), ElementsAre("a.TXT"));
    EXPECT_THAT(listed("a.*"), UnorderedElementsAre("a", "a.dir", "a.txt", "a.TXT"));
    EXPECT_THAT(listed("a"), ElementsAre("a"));
    for (const char* none : {"a*.txt", "missing/*.*", "a.txt/*.*", ""})
        EXPECT_THAT(listed(none), ElementsAre()) << none;
    const ScopedCurrentFolder here(folder.Path("a.dir"));
    const std::unique_ptr<CAtlList<CString>> list(SECFileSystem().GetFileList(u"*.*", 0xFF));
    EXPECT_EQ(list->GetAt(list->GetHeadPosition()), u"./~");
}

TEST(FileSystem, ListsByAttributes) {
    const ScopedFolder folder;
    folder.Make({"file", "0444 readonly", ".hidden", "folder/", "0555 readonly folder/", "to-folder>folder",
                 "nowhere>missing", "to-readonly>readonly", "pipe|"});
    const CString pattern = folder.Text("*.*");
    const std::vector<std::string> all = Listed(folder, pattern, 0xFF);
    EXPECT_EQ(all.size(), 9U);
    for (const unsigned long mask : {0x01UL, 0x02UL, 0x11UL, 0x30UL, 0UL}) {
        SCOPED_TRACE(mask);
        std::vector<std::string> expected;  // by the status of each, which most need not be asked for
        for (const std::string& name : all) {
            unsigned char attribute = 0;
            EXPECT_TRUE(SECFileSystem().GetFileAttribute(folder.Text(name), attribute));
            if ((attribute & mask) != 0)
                expected.push_back(name);
        }
        EXPECT_EQ(Listed(folder, pattern, mask), expected);
    }
    const ScopedNobody nobody(folder);
    folder.SetMode("", 0400);  // names can be listed, nothing else be asked
    EXPECT_EQ(Listed(folder, pattern, 0xFF), all);
    folder.SetMode("", 0700);
}

TEST(FileSystem, ListsInTheOrderOfTheLanguage) {
    const ScopedFolder folder;
    const std::vector<std::string> ordered = {"_",  "1", "10",        "2",        "a", "\xC3\xA4",
                                              "ab", "B", "e\xCC\x81", "\xC3\xA9", "z"};
    for (const std::string& name : ordered)
        folder.Write(name);
    // Swedish has "ä" behind "z"; a process without a locale of its own orders without regard to case, too.
    std::vector<std::string> swedish = ordered;
    std::rotate(swedish.begin() + 5, swedish.begin() + 6, swedish.end());
    for (const auto& [locale, expected] :
         {std::pair("", ordered), {"en_US", ordered}, {"C", ordered}, {"sv_SE", swedish}}) {
        const ScopedUserLocale scope(locale);
        EXPECT_EQ(Listed(folder, folder.Text("*.*"), 0xFF), expected) << locale;
    }
    const ScopedFolder alike;  // but for case: by code units
    alike.Make({"map", "Map", "MAP", "mAP"});
    EXPECT_THAT(Listed(alike, alike.Text("*.*"), 0xFF), ElementsAre("MAP", "Map", "mAP", "map"));
}

TEST(FileSystem, ListsAsciiNamesAlikeAloneAndBesideOthers) {
    // Names that are all ASCII are compared character by character where the language allows it, else by ICU's keys.
    const ScopedFolder folder;
    std::mt19937 random(10);
    std::u16string alphabet = u"aAcChHzZsw019 -_aAcChHzZsw019 -_aAcChHzZsw019 -_aAcChHzZsw019 -_";
    for (char16_t unit = 1; unit < 128; ++unit)
        alphabet += unit == u'/' || unit == u'.' ? u'~' : unit;
    for (int i = 0; i < 2000; ++i)
        folder.Write(CString(AnyText(random, alphabet, 6) + u'x').ToUtf8());
    for (const char* locale : {"", "de_DE", "cs_CZ", "da_DK", "hu_HU", "en_US@colNumeric=yes",
                               "th@colAlternate=shifted", "en_US@colCaseLevel=yes", "en_US@colReorder=digit"}) {
        const ScopedUserLocale scope(locale);
        const std::vector<std::string> alone = Listed(folder, folder.Text("*.*"), 0xFF);
        folder.Write("\xC3\xA9");
        std::vector<std::string> besideOne = Listed(folder, folder.Text("*.*"), 0xFF);
        EXPECT_EQ(std::erase(besideOne, "\xC3\xA9"), 1U);
        EXPECT_EQ(alone, besideOne) << locale;
        std::filesystem::remove(folder.Path("\xC3\xA9"));
    }
}

}  // namespace
