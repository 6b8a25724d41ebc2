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

void Place(CString& number, std::u16string_view pattern, std::u16string_view symbol)
{
    rk::TextBuilder builder(number.View().size() + symbol.size() + pattern.size());
    for (const char16_t unit : pattern) {
        if (unit == u'n')
            builder.Append(number.View());
        else if (unit == u'$')
            builder.Append(symbol);
        else
            builder.Append(unit);
    }
    number = builder.Take();
}

/// A number text as its digits show, without its sign.
CString UnsignedText(const CString& numberText, bool groupThousands, int decimalCount, bool& negative)
{
    const NumberFormats& formats = NumberFormats::Of(LocaleUse::Money);
    std::u16string moved;
    const rk::SplitNumber number =
        rk::Split(numberText, formats.currencyDecimalSeparator, moved).value_or(rk::SplitNumber());
    negative = number.negative;
    rk::TextBuilder builder;
    if (groupThousands)
        rk::AppendGrouped(builder, number.integer, formats.currencyGroupingSeparator);
    else
        builder.Append(number.integer);
    if (const std::size_t decimals = rk::ClampedDecimals(decimalCount); decimals != 0) {
        builder.Append(formats.currencyDecimalSeparator);
        rk::AppendDecimals(builder, number.fraction, decimals);
    }
    return builder.Take();
}

}  // namespace

CString CrkStringConversionUtilities::DoubleStringToFormattedNumber(const CString& numberText, bool groupThousands,
                                                                    int decimalCount,
                                                                    NegativeNumberRepresentation representation)
{
    if (numberText.IsEmpty())
        return {};
    bool negative = false;
    CString text = UnsignedText(numberText, groupThousands, decimalCount, negative);
    if (negative)
        FormatNegativeNumber(text, representation);
    return text;
}

void CrkStringConversionUtilities::FormatNegativeNumber(CString& text, NegativeNumberRepresentation representation)
{
    Place(text, PatternFor(representation, kNegativeNumber), {});
}

CString CrkStringConversionUtilities::DoubleStringToFormattedCurrency(const CString& numberText,
                                                                      const CString& currencySymbol, int decimalCount,
                                                                      int positiveFormat, int negativeFormat,
                                                                      NegativeNumberRepresentation representation)
{
    if (numberText.IsEmpty())
        return {};
    bool negative = false;
    CString text = UnsignedText(numberText, /*groupThousands=*/true, decimalCount, negative);
    if (negative)
        FormatNegativeCurrency(text, representation, negativeFormat, currencySymbol);
    else
        FormatPositiveCurrency(text, positiveFormat, currencySymbol);
    return text;
}

void CrkStringConversionUtilities::FormatPositiveCurrency(CString& text, int positiveFormat,
                                                          const CString& currencySymbol)
{
    const bool known = positiveFormat >= 0 && positiveFormat < std::ssize(kPositivePatterns);
    Place(text, kPositivePatterns[known ? positiveFormat : 0], currencySymbol);
}

void CrkStringConversionUtilities::FormatNegativeCurrency(CString& text, NegativeNumberRepresentation representation,
                                                          int negativeFormat, const CString& currencySymbol)
{
    const bool known = negativeFormat >= 0 && negativeFormat < std::ssize(kNegativeAmounts);
    const NegativePattern& pattern = kNegativeAmounts[known ? negativeFormat : kOtherNegativeFormat];
    Place(text, PatternFor(representation, pattern), currencySymbol);
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
