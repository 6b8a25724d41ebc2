// The pieces of an entry hold any texts as the plainest reading of their rules would write them.
#include "RkUtilities/logging/CrkLogWriter.h"

#include "fuzz/Require.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    std::u16string message(size / sizeof(char16_t), u'\0');
    std::memcpy(message.data(), data, message.size() * sizeof(char16_t));

    std::u16string escaped;
    for (const char16_t unit : message)
        escaped += unit == u'&' ? std::u16string(u"&amp;") : std::u16string(1, unit);
    CString text = message;
    CrkLogWriter::EscapeXmlCharacters(text);
    Require(text == escaped);
    text.Replace(u"&amp;", u"&");
    Require(text == message);

    const std::size_t declarationEnd = escaped.find(u"?>");
    const CString prepared = CrkLogWriter::PrepareXml(message);
    Require(prepared == escaped.substr(declarationEnd == escaped.npos ? 0 : declarationEnd + 2));

    CFUUIDBytes id{};
    std::memcpy(&id, data, std::min(size, sizeof id));
    const CString header = CrkLogWriter::EntryHeader(message, CrkLogWriter::LogError, message, id);
    const CString category =
        u"</l:Tid><l:Category>" + CString(escaped) + u"</l:Category><l:Severity>Error</l:Severity><l:Id>";
    const CString description = u"</l:Id><l:Description>" + CString(escaped) + u"</l:Description>";
    const int at = header.Find(category);
    Require(at > 0 && header.Mid(at + category.GetLength() + 36) == description);
    return 0;
}
