#include "LogFolder.h"

#include <climits>
#include <pthread.h>

namespace {

using Writer = CrkLogWriter;

TEST(LogEntry, EscapesAmpersandsOnlyAndEndsADeclaration)
{
    struct Case {
        std::u16string_view message;
        std::u16string_view escaped;
        std::u16string_view prepared;
    };
    const std::u16string large(1'000'000, u'&');
    constexpr Case kCases[] = {
        {u"", u"", u""},
        {u"&&lt;&", u"&amp;&amp;lt;&amp;", u"&amp;&amp;lt;&amp;"},
        {u"<a b='\"'>]]>\x1</a>", u"<a b='\"'>]]>\x1</a>", u"<a b='\"'>]]>\x1</a>"},
        {u"<?xml version='1.0'?><a/>", u"<?xml version='1.0'?><a/>", u"<a/>"},
        {u"x & <?y?>&<?z?>", u"x &amp; <?y?>&amp;<?z?>", u"&amp;<?z?>"},
        {u"lost?>", u"lost?>", u""},
        {{u"?&>\0&", 5}, {u"?&amp;>\0&amp;", 13}, {u"?&amp;>\0&amp;", 13}},
    };
    for (const Case& c : kCases) {
        CString text = c.message;
        Writer::EscapeXmlCharacters(text);
        EXPECT_EQ(text, c.escaped);
        EXPECT_EQ(Writer::PrepareXml(c.message), c.prepared);
    }
    CString text = large;
    Writer::EscapeXmlCharacters(text);  // in one pass: moving the rest for each would take minutes
    EXPECT_EQ(text.GetLength(), 5'000'000);
}

TEST(LogEntry, HeaderHoldsItsPiecesAsTheyAre)
{
    const CFUUIDBytes id{0xAB, 1, 0x23, 0x45, 0x67, 0x89, 0xCD, 0xEF, 0x10, 0x32, 0x54, 0x76, 0x98, 0xBA, 0xDC, 0xFE};
    const CString time = Writer::CurrentTimeString(kCFDateFormatterShortStyle) + u":";
    const CString header = Writer::EntryHeader(u"50%d & %s", Writer::LogNotice, u"%zx<b>&", id);
    const std::vector<std::string> fields = Fields(header.ToUtf8() + "<l:Body></l:Body></l:LogEntry>");
    ASSERT_EQ(fields.size(), 7U) << header;
    EXPECT_EQ(fields[0].rfind(time.ToUtf8(), 0), 0U);
    EXPECT_LT(std::stoi(fields[0].substr(time.ToUtf8().size())), 300);  // seconds since this program started
    EXPECT_EQ(std::stoull(fields[1], nullptr, 16), static_cast<std::uintptr_t>(pthread_self()));
    EXPECT_EQ(fields[2] + fields[3] + fields[4] + fields[5],
              "50%d &amp; %sNoticeAB012345-6789-CDEF-1032-547698BADCFE%zx<b>&amp;");
    EXPECT_EQ(Writer::EntryFooter(), u"</l:LogEntry>\n");
    for (const long style : {0L, -1L, 5L, LONG_MAX})
        EXPECT_EQ(Writer::CurrentTimeString(static_cast<CFDateFormatterStyle>(style)), u"");
}

TEST(LogEntry, SeverityIsTheLevelsNameOrNothing)
{
    const char* const kNames[] = {"", "Emergency", "Critical", "Error", "Warning", "Notice", "Info", "Debug", ""};
    for (int level = -1; level <= 7; ++level)
        EXPECT_EQ(Writer::Severity(static_cast<Writer::ErkLogLevel>(level)), CString(kNames[level + 1]));
    EXPECT_EQ(Writer::Severity(static_cast<Writer::ErkLogLevel>(INT_MIN)), u"");
}

}  // namespace
