#include "RkUtilities/numbers/detail/NumberText.h"

#include "RkUtilities/foundation/CharacterTypes.h"
#include "RkUtilities/platform/locale/Unicode.h"

#include <algorithm>
#include <cstdint>

namespace rk {

namespace {

constexpr std::size_t kDigitsInGroup = 3;
constexpr int kMostDecimals = 30;
constexpr std::size_t kMostZeros = 1000000;  // that an exponent adds: a few units of text must not ask for gigabytes

/// Moves the decimal point by `places`, to the right for a positive number.
void ShiftPoint(SplitNumber& number, std::int64_t places, std::u16string& moved) {
    const auto count = static_cast<std::size_t>(places < 0 ? -places : places);
    if (places > 0) {
        const std::size_t taken = std::min(count, number.fraction.size());
        moved.assign(number.integer)
            .append(number.fraction, 0, taken)
            .append(std::min(count - taken, kMostZeros), u'0');
        number.integer = moved;
        number.fraction.remove_prefix(taken);
    } else if (places < 0) {
        const std::size_t left = number.integer.size() - std::min(count, number.integer.size());
        moved.assign(std::min(count - (number.integer.size() - left), kMostZeros), u'0');
        moved.append(number.integer, left).append(number.fraction);
        number.integer = left != 0 ? number.integer.substr(0, left) : u"0";
        number.fraction = moved;
    }
}

}  // namespace

std::u16string_view Trimmed(std::u16string_view text) {
    while (!text.empty() && platform::IsWhiteSpace(text.back()))
        text.remove_suffix(1);
    while (!text.empty() && platform::IsWhiteSpace(text.front()))
        text.remove_prefix(1);
    return text;
}

std::optional<SplitNumber> Split(const CString& text, std::u16string_view decimalPoint, std::u16string& moved,
                                 std::u16string_view fractionBefore) {
    std::u16string_view rest = Trimmed(text);
    if (rest.empty())
        return std::nullopt;
    SplitNumber number;
    number.negative = rest.front() == u'-';
    if (number.negative || rest.front() == u'+')
        rest.remove_prefix(1);

    const auto digitsEnd = std::find_if_not(rest.begin(), rest.end(), platform::IsAsciiDigit);
    const auto wholeDigits = static_cast<std::size_t>(digitsEnd - rest.begin());  // hold neither point nor exponent
    std::size_t exponentAt = rest.find(u'e', wholeDigits);
    if (exponentAt == std::u16string_view::npos)
        exponentAt = rest.find(u'E', wholeDigits);
    const std::u16string_view digits = rest.substr(0, exponentAt);

    const std::size_t pointAt =
        decimalPoint.empty() ? std::u16string_view::npos : digits.find(decimalPoint, wholeDigits);
    number.integer = digits.substr(0, pointAt);
    number.fraction = fractionBefore;
    if (pointAt != std::u16string_view::npos && pointAt + decimalPoint.size() < digits.size())
        number.fraction = digits.substr(pointAt + decimalPoint.size());
    if (exponentAt != std::u16string_view::npos)
        ShiftPoint(number, _ttoi(rest.substr(exponentAt + 1)), moved);
    return number;
}

std::size_t ClampedDecimals(int decimalCount) {
    return static_cast<std::size_t>(std::clamp(decimalCount, 0, kMostDecimals));
}

void AppendDecimals(TextBuilder& builder, std::u16string_view fraction, std::size_t count) {
    fraction = fraction.substr(0, count);
    builder.Append(fraction);
    builder.Append(count - fraction.size(), u'0');
}

void AppendGrouped(TextBuilder& builder, std::u16string_view integer, std::u16string_view separator) {
    if (integer.empty())
        return;
    const std::size_t separatorCount = (integer.size() - 1) / kDigitsInGroup;
    char16_t* group = builder.Extend(integer.size() + separatorCount * separator.size());
    const char16_t* digit = integer.data();
    const char16_t* const end = digit + integer.size();
    group = std::copy_n(digit, integer.size() - separatorCount * kDigitsInGroup, group);
    for (digit = end - separatorCount * kDigitsInGroup; digit != end; digit += kDigitsInGroup) {
        group = std::copy(separator.begin(), separator.end(), group);
        group = std::copy_n(digit, kDigitsInGroup, group);
    }
}

}  // namespace rk
