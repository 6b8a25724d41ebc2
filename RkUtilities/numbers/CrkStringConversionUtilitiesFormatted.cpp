// Numbers, amounts and percentages for the user's eyes.
#include "RkUtilities/numbers/CrkStringConversionUtilities.h"

#include "RkUtilities/foundation/CharacterTypes.h"
#include "RkUtilities/numbers/detail/NumberText.h"
#include "RkUtilities/platform/locale/NumberFormats.h"

#include <algorithm>
#include <iterator>

namespace {

using rk::platform::LocaleUse;
using rk::platform::NumberFormats;
using Conversion = CrkStringConversionUtilities;

// Patterns: "$" stands for the currency symbol, "n" for the number.

constexpr std::u16string_view kPositivePatterns[] = {u"$n", u"n$", u"$ n", u"n $"};

struct NegativePattern {
    std::u16string_view parentheses;
    std::u16string_view minusSign;
};
constexpr NegativePattern kNegativeAmounts[] = {
    {u"($n)", u"-$n"},    // 0
    {u"-$n", u"-$n"},     // 1
    {u"$-n", u"$-n"},     // 2
    {u"$n-", u"$n-"},     // 3
    {u"(n$)", u"-n$"},    // 4
    {u"-n$", u"-n$"},     // 5
    {u"n-$", u"n-$"},     // 6
    {u"n$-", u"n$-"},     // 7
    {u"-n $", u"-n $"},   // 8
    {u"-$ n", u"-$ n"},   // 9
    {u"n $-", u"n $-"},   // 10
    {u"$ n-", u"$ n-"},   // 11
    {u"$ -n", u"$ -n"},   // 12
    {u"n- $", u"n- $"},   // 13
    {u"($ n)", u"-$ n"},  // 14
    {u"(n $)", u"-n $"},  // 15
};
constexpr int kOtherNegativeFormat = 1;
constexpr NegativePattern kNegativeNumber = {u"(n)", u"-n"};

/// "n" alone where a negative number shows no sign, and a negative amount no symbol either.
std::u16string_view PatternFor(Conversion::NegativeNumberRepresentation representation, const NegativePattern& pattern)
{
    switch (representation) {
    case Conversion::Parentheses:
    case Conversion::ParenthesesAlt:
        return pattern.parentheses;
    case Conversion::MinusSign:
        return pattern.minusSign;
    default:
        return u"n";
    }
}

std::u16string_view PositiveAmount(int format)
{
    return kPositivePatterns[format >= 0 && format < std::ssize(kPositivePatterns) ? format : 0];
}

std::u16string_view NegativeAmount(Conversion::NegativeNumberRepresentation representation, int format)
{
    const bool known = format >= 0 && format < std::ssize(kNegativeAmounts);
    return PatternFor(representation, kNegativeAmounts[known ? format : kOtherNegativeFormat]);
}

CString Placed(std::u16string_view number, std::u16string_view pattern, std::u16string_view symbol)
{
    rk::TextBuilder builder(number.size() + symbol.size() + pattern.size());
    for (const char16_t unit : pattern) {
        if (unit == u'n')
            builder.Append(number);
        else if (unit == u'$')
            builder.Append(symbol);
        else
            builder.Append(unit);
    }
    return builder.Take();
}

/// Appends a number text as its digits show, without its sign; returns whether the number is negative.
bool AppendUnsigned(rk::TextBuilder& builder, const CString& numberText, bool groupThousands, int decimalCount)
{
    const NumberFormats& formats = NumberFormats::Of(LocaleUse::Money);
    std::u16string moved;
    const rk::SplitNumber number =
        rk::Split(numberText, formats.currencyDecimalSeparator, moved).value_or(rk::SplitNumber());
    if (groupThousands)
        rk::AppendGrouped(builder, number.integer, formats.currencyGroupingSeparator);
    else
        builder.Append(number.integer);
    if (const std::size_t decimals = rk::ClampedDecimals(decimalCount); decimals != 0) {
        builder.Append(formats.currencyDecimalSeparator);
        rk::AppendDecimals(builder, number.fraction, decimals);
    }
    return number.negative;
}

}  // namespace

CString CrkStringConversionUtilities::DoubleStringToFormattedNumber(const CString& numberText, bool groupThousands,
                                                                    int decimalCount,
                                                                    NegativeNumberRepresentation representation)
{
    if (numberText.IsEmpty())
        return {};
    rk::TextBuilder digits;
    if (!AppendUnsigned(digits, numberText, groupThousands, decimalCount))
        return digits.Take();
    return Placed(digits.View(), PatternFor(representation, kNegativeNumber), {});
}

void CrkStringConversionUtilities::FormatNegativeNumber(CString& text, NegativeNumberRepresentation representation)
{
    text = Placed(text, PatternFor(representation, kNegativeNumber), {});
}

CString CrkStringConversionUtilities::DoubleStringToFormattedCurrency(const CString& numberText,
                                                                      const CString& currencySymbol, int decimalCount,
                                                                      int positiveFormat, int negativeFormat,
                                                                      NegativeNumberRepresentation representation)
{
    if (numberText.IsEmpty())
        return {};
    rk::TextBuilder digits;
    const bool negative = AppendUnsigned(digits, numberText, /*groupThousands=*/true, decimalCount);
    return Placed(digits.View(),
                  negative ? NegativeAmount(representation, negativeFormat) : PositiveAmount(positiveFormat),
                  currencySymbol);
}

void CrkStringConversionUtilities::FormatPositiveCurrency(CString& text, int positiveFormat,
                                                          const CString& currencySymbol)
{
    text = Placed(text, PositiveAmount(positiveFormat), currencySymbol);
}

void CrkStringConversionUtilities::FormatNegativeCurrency(CString& text, NegativeNumberRepresentation representation,
                                                          int negativeFormat, const CString& currencySymbol)
{
    text = Placed(text, NegativeAmount(representation, negativeFormat), currencySymbol);
}

CString CrkStringConversionUtilities::DoubleStringToFormattedPercentage(const CString& numberText, int decimalCount)
{
    constexpr std::size_t kMovedDigits = 2;  // times 100
    if (numberText.IsEmpty())
        return {};
    const std::u16string& point = NumberFormats::Of(LocaleUse::Money).currencyDecimalSeparator;
    std::u16string moved;
    const rk::SplitNumber number = rk::Split(numberText, point, moved).value_or(rk::SplitNumber());
    rk::TextBuilder percents;
    if (_ttoi(CString(number.integer).GetUTF16Ptr()) != 0)
        percents.Append(number.integer);
    rk::AppendDecimals(percents, number.fraction, kMovedDigits);
    const std::u16string_view whole = percents.View();
    const std::u16string_view shown = whole.substr(std::min(whole.find_first_not_of(u'0'), whole.size()));

    rk::TextBuilder builder;
    if (number.negative)
        builder.Append(u'-');
    builder.Append(shown.empty() ? std::u16string_view(u"0") : shown);
    if (const std::size_t decimals = rk::ClampedDecimals(decimalCount); decimals != 0) {
        builder.Append(point);
        rk::AppendDecimals(builder, number.fraction.substr(std::min(kMovedDigits, number.fraction.size())), decimals);
    }
    builder.Append(u'%');
    return builder.Take();
}
