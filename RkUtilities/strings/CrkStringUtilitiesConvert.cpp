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
#include <string_view>

namespace {

constexpr std::u16string_view kEllipsis = u"...";

template <class Integer>
std::string_view Decimal(Integer value, char (&digits)[24])
{
    char* const end = std::to_chars(std::begin(digits), std::end(digits), value).ptr;
    return {digits, static_cast<std::size_t>(end - digits)};
}

std::u16string_view WithoutLeadingWhiteSpace(std::u16string_view text)
{
    const auto first = std::find_if_not(text.begin(), text.end(), rk::platform::IsWhiteSpace);
    return text.substr(static_cast<std::size_t>(first - text.begin()));
}

/// The number to show of a byte count and its unit.
struct ByteNumber {
    double number;
    std::string_view unit;
};

ByteNumber InLargestUnit(double byteCount)
{
    constexpr double kUsedFrom = 1000;  // of the unit below
    double number = byteCount / 1024;
    for (const std::string_view unit : {" KB", " MB", " GB"}) {
        if (number < kUsedFrom)
            return {number, unit};
        number /= 1024;
    }
    return {number, " TB"};
}

}  // namespace

CString CrkStringUtilities::AppendInt(rk::TextView text, int value)
{
    const std::u16string_view front = text;
    char buffer[24];
    const std::string_view digits = Decimal(value, buffer);
    if (std::any_of(front.begin(), front.end(),
                    rk::platform::IsSurrogate))  // lone ones become U+FFFD, as "%s" makes them
        return CString(CString(front).ToUtf8().append(digits));
    return rk::TextBuilder::Written(front.size() + digits.size(), [&](char16_t* units) {
        rk::CopyUnits(front.data(), front.size(), units);
        std::copy(digits.begin(), digits.end(), units + front.size());
    });
}

CString CrkStringUtilities::MakeByteString(unsigned long byteCount)
{
    constexpr unsigned long kTooMany = 1UL << 40U;
    if (byteCount >= kTooMany)
        return {};
    rk::TextBuilder result;
    char digits[24];
    if (byteCount <= 999) {
        result.AppendAscii(Decimal(byteCount, digits));
        result.AppendAscii(" bytes");
        return result.Take();
    }
    const ByteNumber shown = InLargestUnit(static_cast<double>(byteCount));
    char* const end =
        std::to_chars(std::begin(digits), std::end(digits), shown.number, std::chars_format::fixed, 6).ptr;
    const std::string_view number(digits, static_cast<std::size_t>(end - digits));
    result.AppendAscii(number.substr(0, number.find('.') == 3 ? 3 : 4));
    result.AppendAscii(shown.unit);
    return result.Take();
}

CString CrkStringUtilities::ShortenString(const CString& text, int maximumLength)
{
    if (text.GetLength() <= maximumLength)
        return text;
    const auto length = static_cast<std::size_t>(std::max(maximumLength, 0));
    if (length < kEllipsis.size())
        return kEllipsis.substr(0, length);
    return text.Left(maximumLength - static_cast<int>(kEllipsis.size())) + kEllipsis;
}

int CrkStringUtilities::StringSerializeSize(const CString& text)
{
    const auto length = static_cast<long long>(text.GetLength());
    const long long prefix = length < 255 ? 1 : (length <= 65533 ? 3 : 7);
    return static_cast<int>(std::min<long long>(3 + prefix + 2 * length, INT_MAX));
}

CString CrkStringUtilities::LongToString(long value)
{
    char digits[24];
    rk::TextBuilder result;
    result.AppendAscii(Decimal(value, digits));
    return result.Take();
}

long CrkStringUtilities::StringToLong(const CString& text)
{
    constexpr long kMost = INT_MAX;
    std::u16string_view rest = WithoutLeadingWhiteSpace(text.View());
    const bool negative = rest.starts_with(u'-');
    if (negative || rest.starts_with(u'+'))
        rest.remove_prefix(1);
    long value = 0;
    for (const char16_t unit : rest) {
        if (unit < u'0' || unit > u'9')
            break;
        value = std::min(value * 10 + (unit - u'0'), kMost + 2);
    }
    const bool isLowest = negative && value == kMost + 1;  // still a number of 32 bits
    value = isLowest ? value : std::min(value, kMost);
    return negative ? -value : value;
}

double CrkStringUtilities::StringToDouble(const CString& text)
{
    double value = 0;
    rk::ReadSpelledDouble(text, rk::NumberSpelling(), value);
    return value;
}

bool CrkStringUtilities::StringToBool(const CString& text)
{
    return text.CompareNoCase(u"true") == 0 || StringToLong(text) != 0;
}

CString CrkStringUtilities::UnicodeToUtf8(const CString& text)
{
    const StUTF8Buffer bytes(text);
    return {static_cast<char const*>(bytes)};
}

CString CrkStringUtilities::Utf8ToUnicode(char const* utf8, bool externalRepresentation)
{
    constexpr unsigned int kEncodingUtf8 = 0x08000100;
    const std::size_t byteCount = utf8 != nullptr ? std::string_view(utf8).size() : 0;
    return {utf8, byteCount, kEncodingUtf8, externalRepresentation};
}
