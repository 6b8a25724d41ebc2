// Any format either throws and leaves the text alone, or agrees with the C library where C gives it a meaning.
#include "RkUtilities/foundation/CString.h"

#include "fuzz/Require.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <string>

namespace {

/// Whether the conversion is one plain number conversion, so that the C library may be asked with that argument.
bool TakesOne(const std::string& format, const char* types)
{
    const std::size_t percent = format.find('%');
    if (percent == std::string::npos || format.find('%', percent + 1) != std::string::npos)
        return false;
    const std::size_t end = format.find_first_not_of("-+ #0123456789.", percent + 1);
    const std::size_t dots =
        static_cast<std::size_t>(std::count(format.begin() + static_cast<std::ptrdiff_t>(percent), format.end(), '.'));
    return end != std::string::npos && std::strchr(types, format[end]) != nullptr && format[end] != '\0' && dots < 2 &&
           format.size() < 9;
}

template <class Argument>
void Compare(const std::string& format, const Argument& argument)
{
    CString text = u"kept";
    try {
        text.Format(format, argument);
    } catch (const rk::FormatError&) {
        Require(text == u"kept");
        return;
    }
    char printed[1 << 13];
    const int length = std::snprintf(printed, sizeof printed, format.c_str(), argument);
    if (length >= 0 && static_cast<std::size_t>(length) < sizeof printed)
        Require(text == CString(printed));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string format(reinterpret_cast<const char*>(data), size);
    CString text = u"kept";
    try {
        text.Format(CString(format), 42, "text \xE2\x82\xAC", 2.5, 'c', -1L, static_cast<const void*>(data), 7, 3);
    } catch (const rk::FormatError&) {
        Require(text == u"kept");
    }
    const bool ascii = std::all_of(format.begin(), format.end(), [](char c) { return c > 0; });
    if (ascii && TakesOne(format, "diuoxX"))
        Compare(format, -123456789);
    if (ascii && TakesOne(format, "fFeEgGaA"))
        Compare(format, 1234.5678);
    return 0;
}
