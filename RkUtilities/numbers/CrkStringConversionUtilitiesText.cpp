// Number text: made from a double, taken apart, cut and grouped.
#include "RkUtilities/numbers/CrkStringConversionUtilities.h"

#include "RkUtilities/numbers/detail/NumberText.h"
#include "RkUtilities/platform/locale/NumberFormats.h"

#include <bit>
#include <charconv>
#include <cstdint>
#include <iterator>

namespace {

using rk::platform::LocaleUse;
using rk::platform::NumberFormats;

__extension__ typedef unsigned __int128 WideInteger;  // NOLINT(modernize-use-using): "using" is no extension to g++

constexpr double kFixedAbove = 1e-9;
constexpr double kFixedBelow = 99999999999.0;
constexpr std::uint64_t kNanos = 1'000'000'000;

/// A number in units of 1e-9.
struct Fixed {
    std::uint64_t whole = 0;
    std::uint64_t nanos = 0;
};

/// A value between the two bounds rounded to units of 1e-9: exactly, ties to even. Its fraction times 1e9 has at most 83
/// bits, so that integers do it.
Fixed RoundedToNanos(double value)
{
    constexpr int kMantissaBits = 52;  // below the leading one
    constexpr std::uint64_t kLeadingOne = std::uint64_t{1} << kMantissaBits;
    const auto bits = std::bit_cast<std::uint64_t>(value);
    const std::uint64_t mantissa = (bits & (kLeadingOne - 1)) | kLeadingOne;
    const int shift = 1023 + kMantissaBits - static_cast<int>(bits >> kMantissaBits);  // value = mantissa / 2^shift

    Fixed fixed;
    std::uint64_t fraction = mantissa;
    if (shift <= kMantissaBits) {
        fixed.whole = mantissa >> shift;
        fraction -= fixed.whole << shift;
    }
    const WideInteger scaled = WideInteger{fraction} * kNanos;
    const WideInteger half = WideInteger{1} << (shift - 1);
    const WideInteger rest = scaled & (half * 2 - 1);
    fixed.nanos = static_cast<std::uint64_t>(scaled >> shift);
    if (rest > half || (rest == half && fixed.nanos % 2 != 0))
        ++fixed.nanos;
    if (fixed.nanos == kNanos)
        fixed = {fixed.whole + 1, 0};
    return fixed;
}

/// What C's "%11.9f" gives, without zeros at the end.
const char* WriteFixed(double value, char* text)
{
    constexpr int kMostWholeDigits = 11;
    const Fixed fixed = RoundedToNanos(value);
    char* const pointAt = std::to_chars(text, text + kMostWholeDigits, fixed.whole).ptr;
    const char* end = std::to_chars(pointAt, pointAt + 10, kNanos + fixed.nanos).ptr;  // the 1 gives way to the point
    *pointAt = '.';
    while (end[-1] == '0')
        --end;
    return end;
}

}  // namespace

CString CrkStringConversionUtilities::DoubleToString(double value)
{
    char characters[32];
    const bool fixed = value > kFixedAbove && value < kFixedBelow;
    const char* const end =
        fixed ? WriteFixed(value, characters)
              : std::to_chars(characters, std::end(characters), value, std::chars_format::general, 6).ptr;
    const std::string_view text(characters, static_cast<std::size_t>(end - characters));
    const std::size_t pointAt = text.find('.');
    rk::TextBuilder builder(text.size());
    builder.AppendAscii(text.substr(0, pointAt));
    if (pointAt < text.size() - 1) {
        builder.Append(NumberFormats::Of(LocaleUse::Money).currencyDecimalSeparator);
        builder.AppendAscii(text.substr(pointAt + 1));
    }
    return builder.Take();
}

void CrkStringConversionUtilities::SplitNumberString(const CString& text, CString& integerPart, CString& fractionPart,
                                                     bool& negative)
{
    const std::u16string& point = NumberFormats::Of(LocaleUse::Money).currencyDecimalSeparator;
    const std::optional<rk::SplitNumber> number = rk::Split(text, point, fractionPart);
    if (!number)
        return;
    CString integer = number->integer.Text();  // the parts may be the text itself
    CString fraction = number->fraction.Text();
    integerPart = std::move(integer);
    fractionPart = std::move(fraction);
    negative = number->negative;
}

void CrkStringConversionUtilities::FormatDecimalDigits(CString& fractionPart, int decimalCount)
{
    const std::size_t count = rk::ClampedDecimals(decimalCount);
    rk::TextBuilder builder(count);
    rk::AppendDecimals(builder, rk::DigitRun(fractionPart), 0, count);
    fractionPart = builder.Take();
}

void CrkStringConversionUtilities::Format1000Separator(CString& integerPart)
{
    const std::u16string& separator = NumberFormats::Of(LocaleUse::Money).currencyGroupingSeparator;
    rk::TextBuilder builder(integerPart.View().size() * (3 + separator.size()) / 3);
    rk::AppendGrouped(builder, rk::DigitRun(integerPart), separator);
    integerPart = builder.Take();
}
