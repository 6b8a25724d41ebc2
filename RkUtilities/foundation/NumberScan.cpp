#include "RkUtilities/foundation/NumberScan.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <string>

namespace rk {

namespace {

bool IsDigit(char16_t unit)
{
    return unit >= u'0' && unit <= u'9';
}

std::size_t DigitsFrom(std::u16string_view text, std::size_t at)
{
    while (at < text.size() && IsDigit(text[at]))
        ++at;
    return at;
}

/// How many units at the front form a number.
std::size_t NumberLength(std::u16string_view text)
{
    const std::size_t start = !text.empty() && (text.front() == u'-' || text.front() == u'+') ? 1 : 0;
    std::size_t end = DigitsFrom(text, start);
    std::size_t digitCount = end - start;
    if (end < text.size() && text[end] == u'.') {
        const std::size_t fractionEnd = DigitsFrom(text, end + 1);
        digitCount += fractionEnd - end - 1;
        end = fractionEnd;
    }
    if (digitCount == 0)
        return 0;
    if (end < text.size() && (text[end] == u'e' || text[end] == u'E')) {
        const std::size_t sign = end + 1 < text.size() && (text[end + 1] == u'-' || text[end + 1] == u'+') ? 1 : 0;
        const std::size_t exponentEnd = DigitsFrom(text, end + 1 + sign);
        if (exponentEnd > end + 1 + sign)
            end = exponentEnd;
    }
    return end;
}

/// Whether a number that no `double` holds is too large rather than too small: by the place of its first digit.
bool IsLarge(std::string_view number)
{
    const std::size_t mantissaEnd = std::min(number.find_first_of("eE"), number.size());
    const std::string_view mantissa = number.substr(0, mantissaEnd);
    const std::size_t first = mantissa.find_first_of("123456789");
    const std::size_t point = std::min(mantissa.find('.'), mantissa.size());
    const std::string_view exponent = number.substr(std::min(mantissaEnd + 1, number.size()));
    const bool negative = exponent.starts_with('-');
    long long power = 0;
    const char* const digits = exponent.data() + (negative || exponent.starts_with('+') ? 1 : 0);
    const bool huge =
        std::from_chars(digits, exponent.data() + exponent.size(), power).ec == std::errc::result_out_of_range;
    if (huge || power > std::numeric_limits<int>::max())
        return !negative;
    const auto places = static_cast<long long>(point) - static_cast<long long>(first);
    return places + (negative ? -power : power) > 0;
}

}  // namespace

double DecimalValue(std::string_view number)
{
    const bool negative = number.starts_with('-');
    if (negative || number.starts_with('+'))
        number.remove_prefix(1);
    double value = 0;
    if (std::from_chars(number.data(), number.data() + number.size(), value).ec == std::errc::result_out_of_range)
        value = IsLarge(number) ? std::numeric_limits<double>::infinity() : 0;
    return negative ? -value : value;
}

double DecimalAtFront(std::u16string_view text)
{
    const std::u16string_view number = text.substr(0, NumberLength(text));
    if (number.empty())
        return 0;
    std::string ascii(number.size(), '\0');
    std::transform(number.begin(), number.end(), ascii.begin(), [](char16_t unit) { return static_cast<char>(unit); });
    return DecimalValue(ascii);
}

}  // namespace rk
