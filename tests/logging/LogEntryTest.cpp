#include "LogFolder.h"

#include <climits>
#include <pthread.h>

namespace {

using Writer = CrkLogWriter;

TEST(LogEntry, HoldsItsPiecesAsTheyAre)
{
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
    for (const long style : {0L, -1L, LONG_MAX})
        EXPECT_EQ(Writer::CurrentTimeString(static_cast<CFDateFormatterStyle>(style)), u"");
}

}  // namespace
