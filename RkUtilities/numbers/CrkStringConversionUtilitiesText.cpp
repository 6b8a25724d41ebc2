// Number text: made from a double, taken apart, cut and grouped.
#include "RkUtilities/numbers/CrkStringConversionUtilities.h"

#include "RkUtilities/numbers/detail/NumberText.h"
#include "RkUtilities/platform/locale/NumberFormats.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <iterator>
#include <limits>

namespace {

using rk::platform::LocaleUse;
using rk::platform::NumberFormats;

constexpr double kFixedAbove = 1e-9;
constexpr double kFixedBelow = 99999999999.0;

/// What C's "%.9f" gives for a value between `kFixedAbove` and `kFixedBelow`, without zeros at the end. Integers of 128
/// bits hold the value's billionths exactly, and take half the time of `std::to_chars`.
const char* WriteFixed(double value, char* text, char* end) {
    __extension__ using Wide = unsigned __int128;
    constexpr std::uint64_t kBillion = 1'000'000'000;
    constexpr int kDigits = std::numeric_limits<double>::digits;
    const auto whole = static_cast<std::uint64_t>(value);
    int exponent = 0;
    const double fraction = std::frexp(value - static_cast<double>(whole), &exponent);
    const int shift = kDigits - exponent;
    const Wide scaled = Wide{kBillion} * static_cast<std::uint64_t>(std::ldexp(fraction, kDigits));
    auto billionths = static_cast<std::uint64_t>(scaled >> shift);
    const Wide rest = scaled - (Wide{billionths} << shift);
    const Wide half = Wide{1} << (shift - 1);
    if (rest > half || (rest == half && billionths % 2 != 0))
        ++billionths;
    char* const point = std::to_chars(text, end, whole + billionths / kBillion).ptr;
    const char* last = std::to_chars(point, end, kBillion + billionths % kBillion).ptr;
    *point = '.';  // in place of the 1 before the nine digits
    while (last[-1] == '0')
        --last;
    return last;
}

/// The text of C's printf with the user's decimal point.
CString NumberText(double value, std::string_view text) {
    if (std::isnan(value))  // the standard libraries differ in the words for a NaN
        return std::signbit(value) ? u"-nan" : u"nan";
    const std::string_view whole = text.substr(0, text.find('.'));
    const std::string_view fraction = text.substr(std::min(whole.size() + 1, text.size()));
    std::u16string_view point;
    if (!fraction.empty())
        point = NumberFormats::Of(LocaleUse::Money).currencyDecimalSeparator;
    return rk::TextBuilder::Written(whole.size() + point.size() + fraction.size(), [&](char16_t* units) {
        units = std::copy(whole.begin(), whole.end(), units);
        units = std::copy(point.begin(), point.end(), units);
        std::copy(fraction.begin(), fraction.end(), units);
    });
}

}  // namespace

CString CrkStringConversionUtilities::DoubleToString(double value) {
    char characters[32];
    const bool fixed = value > kFixedAbove && value < kFixedBelow;
    const char* const end =
        fixed ? WriteFixed(value, characters, std::end(characters))
              : std::to_chars(characters, std::end(characters), value, std::chars_format::general, 6).ptr;
    return NumberText(value, {characters, end});
}

CString CrkStringConversionUtilities::DoubleToFixedString(double value, int decimalCount) {
    char characters[std::numeric_limits<double>::max_exponent10 + 40];  // the sign, the point, up to 30 decimals
    const auto precision = static_cast<int>(rk::ClampedDecimals(decimalCount));
    return NumberText(
        value,
        {characters, std::to_chars(characters, std::end(characters), value, std::chars_format::fixed, precision).ptr});
}

void CrkStringConversionUtilities::SplitNumberString(const CString& text, CString& integerPart, CString& fractionPart,
                                                     bool& negative) {
    const std::u16string& point = NumberFormats::Of(LocaleUse::Money).currencyDecimalSeparator;
    std::u16string moved;
    const std::optional<rk::SplitNumber> number = rk::Split(text, point, moved, fractionPart);
    if (!number)
        return;
    CString integer(number->integer);  // the parts may be the text itself
    CString fraction(number->fraction);
    integerPart = std::move(integer);
    fractionPart = std::move(fraction);
    negative = number->negative;
}

void CrkStringConversionUtilities::FormatDecimalDigits(CString& fractionPart, int decimalCount) {
    const std::size_t count = rk::ClampedDecimals(decimalCount);
    rk::TextBuilder builder(count);
    rk::AppendDecimals(builder, fractionPart, count);
    fractionPart = builder.Take();
}

void CrkStringConversionUtilities::Format1000Separator(CString& integerPart) {
    const std::u16string& separator = NumberFormats::Of(LocaleUse::Money).currencyGroupingSeparator;
    rk::TextBuilder builder;
    rk::AppendGrouped(builder, integerPart, separator);
    integerPart = builder.Take();
}
