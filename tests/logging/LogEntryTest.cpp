#include "LogFolder.h"

#include <gtest/gtest.h>
#include <pthread.h>

namespace {

using Writer = CrkLogWriter;

TEST(LogEntry, EscapesAmpersandsOnlyAndEndsADeclaration)
{
    struct Case {
        const char16_t* message;
        const char16_t* escaped;
        const char16_t* prepared;
    };
    const std::u16string large(1'000'000, u'&');
    constexpr Case kCases[] = {
        {u"", u"", u""},
        {u"Disk full & retrying", u"Disk full &amp; retrying", u"Disk full &amp; retrying"},
        {u"&&lt;&", u"&amp;&amp;lt;&amp;", u"&amp;&amp;lt;&amp;"},
        {u"<a b='\"'>]]>\x1</a>", u"<a b='\"'>]]>\x1</a>", u"<a b='\"'>]]>\x1</a>"},
        {u"<?xml version='1.0'?><a/>", u"<?xml version='1.0'?><a/>", u"<a/>"},
        {u"x & <?y?>&<?z?>", u"x &amp; <?y?>&amp;<?z?>", u"&amp;<?z?>"},
        {u"lost?>", u"lost?>", u""},
        {u"?&>", u"?&amp;>", u"?&amp;>"},
        {u"\xD83D?>\xDE00", u"\xD83D?>\xDE00", u"\xDE00"},
    };
    for (const Case& c : kCases) {
        SCOPED_TRACE(CString(c.message));
        CString text = c.message;
        Writer::EscapeXmlCharacters(text);
        EXPECT_EQ(text, c.escaped);
        EXPECT_EQ(Writer::PrepareXml(c.message), c.prepared);
    }
    CString text = large;
    Writer::EscapeXmlCharacters(text);  // one pass: replacing in place would take minutes
    EXPECT_EQ(text.GetLength(), 5'000'000);
    EXPECT_EQ(Writer::PrepareXml(CString(std::u16string_view(u"?\0&", 3))),
              CString(std::u16string_view(u"?\0&amp;", 7)));
}

TEST(LogEntry, HeaderHoldsItsPiecesAsTheyAre)
{
    const CFUUIDBytes id{0xAB, 0x01, 0x23, 0x45, 0x67, 0x89, 0xCD, 0xEF,
                         0x10, 0x32, 0x54, 0x76, 0x98, 0xBA, 0xDC, 0xFE};
    const std::string time = Writer::CurrentTimeString(kCFDateFormatterShortStyle).ToUtf8();
    const std::string header = Writer::EntryHeader(u"50%d & %s", Writer::LogNotice, u"%zx<b>&", id).ToUtf8();
    const std::vector<std::string> fields = Fields(header + "<l:Body></l:Body></l:LogEntry>");
    ASSERT_EQ(fields.size(), 7U) << header;
    EXPECT_EQ(fields[0].substr(0, fields[0].rfind(':')), time);
    EXPECT_LT(std::stoi(fields[0].substr(fields[0].rfind(':') + 1)), 300);  // seconds since this program started
    EXPECT_EQ(std::stoull(fields[1], nullptr, 16), static_cast<std::uintptr_t>(pthread_self()));
    EXPECT_EQ(fields[2], "50%d &amp; %s");
    EXPECT_EQ(fields[3], "Notice");
    EXPECT_EQ(fields[4], "AB012345-6789-CDEF-1032-547698BADCFE");
    EXPECT_EQ(fields[5], "%zx<b>&amp;");
    EXPECT_EQ(Writer::EntryFooter(), u"</l:LogEntry>\n");
}

TEST(LogEntry, SeverityIsTheLevelsNameOrNothing)
{
    const char* const kNames[] = {"", "Emergency", "Critical", "Error", "Warning", "Notice", "Info", "Debug", ""};
    for (int level = -1; level <= 7; ++level)
        EXPECT_EQ(Writer::Severity(static_cast<Writer::ErkLogLevel>(level)), CString(kNames[level + 1]));
    for (const int level : {INT_MIN, INT_MAX})
        EXPECT_EQ(Writer::Severity(static_cast<Writer::ErkLogLevel>(level)), u"");
}

}  // namespace
