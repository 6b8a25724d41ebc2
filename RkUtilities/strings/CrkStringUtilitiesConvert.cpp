#include "RkUtilities/strings/CrkStringUtilities.h"

#include "RkUtilities/foundation/StUTF8Buffer.h"
#include "RkUtilities/foundation/detail/SpelledNumber.h"
#include "RkUtilities/foundation/detail/TextBuilder.h"
#include "RkUtilities/foundation/detail/UnitBlock.h"
#include "RkUtilities/platform/locale/Unicode.h"
#include "RkUtilities/platform/locale/Utf.h"

#include <algorithm>
#include <charconv>
#include <climits>
#include <string>

namespace {

constexpr std::u16string_view kEllipsis = u"...";

}  // namespace

CString CrkStringUtilities::AppendInt(rk::TextView text, int value) {
    const std::u16string_view front = text;
    const std::string digits = std::to_string(value);
    if (std::any_of(front.begin(), front.end(),
                    rk::platform::IsSurrogate))  // a lone surrogate becomes U+FFFD, as with "%s"
        return CString(CString(front).ToUtf8().append(digits));
    return rk::TextBuilder::Written(front.size() + digits.size(), [&](char16_t* units) {
        rk::CopyUnits(front.data(), front.size(), units);
        std::copy(digits.begin(), digits.end(), units + front.size());
    });
}

CString CrkStringUtilities::MakeByteString(unsigned long byteCount) {
    constexpr unsigned long kTooMany = 1UL << 40U;
    if (byteCount >= kTooMany)
        return {};
    if (byteCount <= 999)
        return std::to_string(byteCount) + " bytes";
    constexpr double kUsedFrom = 1000;  // of the unit below
    constexpr const char* kUnits[] = {" KB", " MB", " GB", " TB"};
    std::size_t unit = 0;
    double number = static_cast<double>(byteCount) / 1024;
    while (number >= kUsedFrom) {
        number /= 1024;
        ++unit;
    }
    char digits[24];
    char* const end = std::to_chars(digits, std::end(digits), number, std::chars_format::fixed, 6).ptr;
    const std::string shown(std::begin(digits), end);
    return shown.substr(0, shown.find('.') == 3 ? 3 : 4) + kUnits[unit];
}

CString CrkStringUtilities::ShortenString(const CString& text, int maximumLength) {
    if (text.GetLength() <= maximumLength)
        return text;
    const auto length = static_cast<std::size_t>(std::max(maximumLength, 0));
    if (length < kEllipsis.size())
        return kEllipsis.substr(0, length);
    return text.Left(maximumLength - static_cast<int>(kEllipsis.size())) + kEllipsis;
}

int CrkStringUtilities::StringSerializeSize(const CString& text) {
    const auto length = static_cast<long long>(text.GetLength());
    const long long prefix = length < 255 ? 1 : (length <= 65533 ? 3 : 7);
    return static_cast<int>(std::min<long long>(3 + prefix + 2 * length, INT_MAX));
}

CString CrkStringUtilities::LongToString(long value) { return std::to_string(value); }

long CrkStringUtilities::StringToLong(const CString& text) {
    std::int64_t value = 0;
    rk::ReadSpelledInteger(text, rk::NumberSpelling(), value);
    return value < INT_MIN ? -INT_MAX : std::min<std::int64_t>(value, INT_MAX);
}

double CrkStringUtilities::StringToDouble(const CString& text) {
    double value = 0;
    rk::ReadSpelledDouble(text, rk::NumberSpelling(), value);
    return value;
}

bool CrkStringUtilities::StringToBool(const CString& text) {
    return text.CompareNoCase(u"true") == 0 || StringToLong(text) != 0;
}

CString CrkStringUtilities::UnicodeToUtf8(const CString& text) {
    const StUTF8Buffer bytes(text);
    return {static_cast<char const*>(bytes)};
}

CString CrkStringUtilities::Utf8ToUnicode(char const* utf8, bool externalRepresentation) {
    constexpr unsigned int kEncodingUtf8 = 0x08000100;
    const std::size_t byteCount = utf8 != nullptr ? std::string_view(utf8).size() : 0;
    return {utf8, byteCount, kEncodingUtf8, externalRepresentation};
}
