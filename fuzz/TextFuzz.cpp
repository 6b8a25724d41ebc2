// Texts against std::u16string: every change gives what the standard string gives, and UTF-8 goes there and back.
#include "RkUtilities/foundation/CString.h"

#include "fuzz/Require.h"

#include <algorithm>
#include <cstring>
#include <string>

namespace {

std::u16string Units(const std::uint8_t* data, std::size_t size)
{
    std::u16string units(size / 2, u'\0');
    std::memcpy(units.data(), data, size / 2 * 2);
    return units;
}

bool HasLoneSurrogate(const std::u16string& units)
{
    for (std::size_t i = 0; i < units.size(); ++i) {
        if ((units[i] & 0xF800) != 0xD800)
            continue;
        if ((units[i] & 0x0400) != 0 || i + 1 == units.size() || (units[i + 1] & 0xFC00) != 0xDC00)
            return true;
        ++i;
    }
    return false;
}

void Replaced(std::u16string& text, const std::u16string& before, const std::u16string& after)
{
    for (std::size_t at = 0; !before.empty() && (at = text.find(before, at)) != std::u16string::npos;
         at += after.size())
        text.replace(at, before.size(), after);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size < 3)
        return 0;
    const std::size_t cut = std::min<std::size_t>(data[0], size - 3);
    std::u16string expected = Units(data + 3, size - 3 - cut);
    const std::u16string other = Units(data + size - cut, cut);
    const auto index = static_cast<signed char>(data[1]);
    const auto at = static_cast<std::size_t>(std::clamp<int>(index, 0, static_cast<int>(expected.size())));

    CString text(expected);
    Require(HasLoneSurrogate(expected) || CString(text.ToUtf8()) == text);
    const CString decoded(std::string_view(reinterpret_cast<const char*>(data), size));
    Require(CString(decoded.ToUtf8()) == decoded);
    Require(text.Find(other, index) ==
            static_cast<int>(expected.find(other, static_cast<std::size_t>(std::max<int>(index, 0)))));
    CString upper(text);
    Require(upper.MakeUpper().GetLength() == text.GetLength());
    const int folded = text.FindNoCase(other);
    Require(folded < 0 || text.Mid(folded, static_cast<int>(other.size())).CompareNoCase(other) == 0);

    switch (data[2] % 5) {
    case 0:
        text.Insert(index, other);
        expected.insert(at, other);
        break;
    case 1:
        text.Delete(index, static_cast<int>(cut));
        if (index >= 0 && at < expected.size())
            expected.erase(at, cut);
        break;
    case 2:
        text.Replace(other, u"<\u20AC>");
        Replaced(expected, other, u"<\u20AC>");
        break;
    case 3:
        text.Replace(CString(other).Left(1), other);
        Replaced(expected, other.substr(0, 1), other);
        break;
    default:
        text.Append(text);
        text += other;
        expected += std::u16string(expected) + other;
    }
    Require(text == expected && text.GetUTF16Ptr()[text.GetLength()] == 0);
    return 0;
}
