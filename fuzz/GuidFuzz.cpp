// What is read is written back as it was but for case and braces; what is not read gives the null GUID.
#include "RkUtilities/guid/CrkGuid.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <regex>
#include <string>

namespace {

void Require(bool holds)
{
    if (!holds)
        std::abort();
}

bool IsGuidText(const std::string& text)
{
    static const std::regex kGuid("[0-9A-F]{8}(-[0-9A-F]{4}){3}-[0-9A-F]{12}", std::regex::icase);
    return std::regex_match(text, kGuid);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    CFUUIDBytes bytes = {};
    std::memcpy(&bytes, data, std::min(size, sizeof bytes));
    Require(CrkGuid::StringToGuid(CrkGuid::GuidToStringWithBraces(bytes)) == bytes);

    CString text = size % 2 == 0 ? CrkGuid::GuidToString(bytes) : CrkGuid::GuidToStringWithBraces(bytes);
    for (std::size_t i = sizeof bytes; i + 1 < size; i += 2) {
        if (data[i] < 40)
            text.SetAt(data[i], data[i + 1]);
        else
            text.Delete(data[i] - 40, 1);
    }
    CString inner = text;
    if (text.GetLength() >= 2 && text.GetAt(0) == u'{')
        inner = text.Mid(1, text.GetLength() - 2);
    const CFUUIDBytes read = CrkGuid::StringToGuid(text);
    Require(IsGuidText(inner.ToUtf8()) ? CrkGuid::GuidToString(read) == inner.MakeUpper() : CrkGuid::IsNullGuid(read));
    return 0;
}
