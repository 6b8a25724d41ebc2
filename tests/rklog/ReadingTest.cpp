#include "rklog/EntryReader.h"
#include "rklog/EntryText.h"
#include "rklog/Levels.h"
#include "tests/logging/LogFolder.h"
#include "tests/rklog/LogText.h"

using namespace rklog;

namespace {

/// "category/severity/message" of whole entries, "torn:message" and "stray:message" of the others.
std::string Told(const Entry& entry) {
    const std::string message = Unescaped(entry.message);
    if (entry.wholeness != Wholeness::Whole)
        return (entry.wholeness == Wholeness::Torn ? "torn:" : "stray:") + message;
    return Unescaped(entry.category) + "/" + std::string(NameOf(entry.level)) + "/" + message;
}

std::vector<std::string> PiecesOf(std::string_view log, std::size_t blockByteCount, std::size_t longest = 1 << 28) {
    std::vector<std::string> told;
    EXPECT_TRUE(CutApart(EntryCutter(longest), log, blockByteCount, [&](const Entry& e) { told.push_back(Told(e)); }));
    return told;
}

std::string EntryOf(std::string_view message) { return EntryAt("11/16/26, 9:52 PM:125", message); }

}  // namespace

TEST(Reading, GivesBackWhateverTheWriterWrote) {
    const LogFolder folder;
    const std::string messages[] = {"plain & simple &amp;",
                                    "a < b > c </l:Body> <l:Body>",
                                    "two\nlines\r\n",
                                    std::string("\0\x01\x1B[31m\x7F", 8),
                                    "</l:Description><l:Body>",
                                    "quoted: " + EntryOf("inner"),
                                    "</l:Body></l:LogEntry>\nand on",
                                    std::string(3 << 20, 'x'),
                                    "Ł\U0001F600"};
    std::vector<std::string> expected;
    for (const std::string& message : messages) {
        CrkLogWriter::LogInternal(CrkLogWriter::LogWarning, CString(message), u"<C> & </l:Category>", u"d</l:Id>",
                                  CrkGuid::c_nullGuid);
        expected.push_back("<C> & </l:Category>/Warning/" + message);
    }
    CrkLogWriter::Log(static_cast<CrkLogWriter::ErkLogLevel>(-1), u"of no level");
    expected.emplace_back("General//of no level");

    std::vector<std::string> read;
    EntryReader reader(folder.ActivePath());
    for (Entry entry; reader.Next(entry);) {
        read.push_back(Told(entry));
        EXPECT_EQ(entry.description.substr(0, 2), entry.level ? "d<" : "");
    }
    // What stands behind a footer inside a message cannot be told from text behind an entry; nothing of it is lost.
    expected[5] = "<C> & </l:Category>/Warning/quoted: " + EntryOf("inner");
    EXPECT_EQ(read, expected);
}

TEST(Reading, LosesNothingOfDamagedLogsHoweverTheBlocksFall) {
    const std::string whole = EntryOf("one");
    const std::pair<std::string, std::vector<std::string>> cases[] = {
        {whole + whole.substr(0, whole.size() - 1), {"A/Info/one", "torn:one</l:Body></l:LogEntry>"}},
        {whole + whole.substr(0, 60), {"A/Info/one", "torn:"}},
        {whole + "<l:LogEntry><l:Time", {"A/Info/one", "stray:<l:LogEntry><l:Time"}},
        {whole.substr(0, 200) + "\n" + whole, {"torn:", "A/Info/one"}},
        {"junk\n" + whole + "more\njunk\n" + whole, {"stray:junk\n", "A/Info/one", "stray:more\njunk\n", "A/Info/one"}},
        {std::string(40, '\0') + "\n" + whole, {"stray:" + std::string(40, '\0') + "\n", "A/Info/one"}},
    };
    for (const auto& [log, told] : cases)
        for (std::size_t block = 1; block < 600; block = block * 3 / 2 + 1)
            EXPECT_EQ(PiecesOf(log, block), told) << log << block;
    // An entry without end comes in pieces.
    const std::vector<std::string> pieces = PiecesOf(EntryOf(std::string(100, 'x')), 50, /*longest=*/150);
    ASSERT_GT(pieces.size(), 1U);
    EXPECT_EQ(pieces[0].substr(0, 5), "torn:");
    EXPECT_EQ(pieces[1].substr(0, 6), "stray:");
}
