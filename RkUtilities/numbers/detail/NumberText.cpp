#include "RkUtilities/numbers/detail/NumberText.h"

#include "RkUtilities/foundation/CharacterTypes.h"
#include "RkUtilities/platform/locale/Unicode.h"

#include <algorithm>
#include <cstdint>
#include <limits>

namespace rk {

namespace {

constexpr std::size_t kGroupUnits = 3;
constexpr int kMostDecimals = 30;
constexpr std::size_t kMostZeros = 1000000;  // that an exponent adds: a few units of text must not ask for gigabytes

/// Moves the decimal point by `places`, to the right for positive ones.
void ShiftPoint(SplitNumber& number, std::int64_t places)
{
    const std::u16string_view whole = number.integer.first;
    const std::u16string_view fraction = number.fraction.first;
    const auto count = static_cast<std::size_t>(places < 0 ? -places : places);
    if (places > 0) {
        const std::size_t moved = std::min(count, fraction.size());
        number.integer.second = fraction.substr(0, moved);
        number.integer.trailingZeros = std::min(count - moved, kMostZeros);
        number.fraction = DigitRun(fraction.substr(moved));
    } else if (places < 0) {
        const std::size_t moved = std::min(count, whole.size());
        number.integer.first = moved < whole.size() ? whole.substr(0, whole.size() - moved) : u"0";
        number.fraction.leadingZeros = std::min(count - moved, kMostZeros);
        number.fraction.first = whole.substr(whole.size() - moved);
        number.fraction.second = fraction;
    }
}

}  // namespace

std::u16string_view Trimmed(std::u16string_view text)
{
    while (!text.empty() && platform::IsWhiteSpace(text.back()))
        text.remove_suffix(1);
    while (!text.empty() && platform::IsWhiteSpace(text.front()))
        text.remove_prefix(1);
    return text;
}

void DigitRun::AppendTo(TextBuilder& builder, std::size_t start, std::size_t count) const
{
    if (leadingZeros == 0 && start <= first.size() && count <= first.size() - start)
        return builder.Append(first.substr(start, count));  // the common case
    const auto take = [&](std::size_t length, const auto& append) {
        const std::size_t skipped = std::min(start, length);
        const std::size_t taken = std::min(count, length - skipped);
        if (taken != 0)
            append(skipped, taken);
        start -= skipped;
        count -= taken;
    };
    const auto zeros = [&](std::size_t, std::size_t taken) { builder.Append(taken, u'0'); };
    take(leadingZeros, zeros);
    take(first.size(), [&](std::size_t at, std::size_t taken) { builder.Append(first.substr(at, taken)); });
    take(second.size(), [&](std::size_t at, std::size_t taken) { builder.Append(second.substr(at, taken)); });
    take(trailingZeros, zeros);
}

CString DigitRun::Text() const
{
    TextBuilder builder(Length());
    AppendTo(builder, 0, Length());
    return builder.Take();
}

std::optional<SplitNumber> Split(const CString& text, std::u16string_view decimalPoint,
                                 std::u16string_view fractionBefore)
{
    std::u16string_view rest = Trimmed(text);
    if (rest.empty())
        return std::nullopt;
    SplitNumber number;
    number.negative = rest.front() == u'-';
    if (number.negative || rest.front() == u'+')
        rest.remove_prefix(1);

    const auto isDigit = [](char16_t unit) { return unit >= u'0' && unit <= u'9'; };
    const auto digitsEnd = std::find_if_not(rest.begin(), rest.end(), isDigit);
    const auto wholeDigits = static_cast<std::size_t>(digitsEnd - rest.begin());  // hold neither point nor exponent
    std::size_t exponentAt = rest.find(u'e', wholeDigits);
    if (exponentAt == std::u16string_view::npos)
        exponentAt = rest.find(u'E', wholeDigits);
    const std::u16string_view digits = rest.substr(0, exponentAt);

    const std::size_t pointAt =
        decimalPoint.empty() ? std::u16string_view::npos : digits.find(decimalPoint, wholeDigits);
    number.integer.first = digits.substr(0, pointAt);
    number.fraction.first = fractionBefore;
    if (pointAt != std::u16string_view::npos && pointAt + decimalPoint.size() < digits.size())
        number.fraction.first = digits.substr(pointAt + decimalPoint.size());
    if (exponentAt != std::u16string_view::npos)
        ShiftPoint(number, _ttoi(AsUnsignedShort(rest.data() + exponentAt + 1)));  // up to the text's terminator
    return number;
}

std::size_t ClampedDecimals(int decimalCount)
{
    return static_cast<std::size_t>(std::clamp(decimalCount, 0, kMostDecimals));
}

void AppendDecimals(TextBuilder& builder, const DigitRun& fraction, std::size_t start, std::size_t count)
{
    const std::size_t before = builder.Length();
    fraction.AppendTo(builder, start, count);
    builder.Append(count - (builder.Length() - before), u'0');
}

void AppendGrouped(TextBuilder& builder, const DigitRun& integer, std::u16string_view separator)
{
    const std::size_t length = integer.Length();
    if (length <= kGroupUnits)
        return integer.AppendTo(builder, 0, length);
    if (integer.first.size() != length) {  // a run with zeros or of two stretches, which an exponent has made
        const CString digits = integer.Text();
        return AppendGrouped(builder, DigitRun(digits), separator);
    }
    const std::size_t separatorCount = (length - 1) / kGroupUnits;
    char16_t* group = builder.Extend(length + separatorCount * separator.size());
    const char16_t* digit = integer.first.data();
    group = std::copy_n(digit, length - separatorCount * kGroupUnits, group);
    digit += length - separatorCount * kGroupUnits;
    for (std::size_t i = 0; i < separatorCount; ++i, digit += kGroupUnits) {
        for (const char16_t unit : separator)
            *group++ = unit;
        group = std::copy_n(digit, kGroupUnits, group);
    }
}

}  // namespace rk
