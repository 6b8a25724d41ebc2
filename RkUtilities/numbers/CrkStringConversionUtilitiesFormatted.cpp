// Numbers, amounts and percentages for the user's eyes.
#include "RkUtilities/numbers/CrkStringConversionUtilities.h"

#include "RkUtilities/foundation/CharacterTypes.h"
#include "RkUtilities/numbers/detail/NumberText.h"
#include "RkUtilities/platform/locale/NumberFormats.h"

#include <algorithm>
#include <iterator>
#include <span>

namespace {

using rk::platform::LocaleUse;
using rk::platform::NumberFormats;
using Conversion = CrkStringConversionUtilities;

// Patterns: "$" stands for the currency symbol, "n" for the number. Where "(" and ")" are not shown, "-" is.

constexpr std::u16string_view kPositiveAmounts[] = {u"$n", u"n$", u"$ n", u"n $"};
constexpr std::u16string_view kNegativeAmounts[] = {u"($n)", u"-$n",  u"$-n",   u"$n-",  u"(n$)", u"-n$",
                                                    u"n-$",  u"n$-",  u"-n $",  u"-$ n", u"n $-", u"$ n-",
                                                    u"$ -n", u"n- $", u"($ n)", u"(n $)"};
constexpr std::u16string_view kNegativeNumber = u"(n)";

/// The pattern of a format; of the format `other` where no pattern has that number.
std::u16string_view PatternOf(std::span<const std::u16string_view> patterns, int format, std::size_t other) {
    return patterns[format >= 0 && format < std::ssize(patterns) ? static_cast<std::size_t>(format) : other];
}

CString Placed(std::u16string_view number, std::u16string_view pattern, std::u16string_view symbol,
               bool showsMinus = false) {
    rk::TextBuilder builder(number.size() + symbol.size() + pattern.size());
    for (const char16_t unit : pattern) {
        if (unit == u'n')
            builder.Append(number);
        else if (unit == u'$')
            builder.Append(symbol);
        else if (unit != u')' || !showsMinus)
            builder.Append(unit == u'(' && showsMinus ? u'-' : unit);
    }
    return builder.Take();
}

/// A negative number or amount: the number alone where no sign shows.
CString NegativePlaced(std::u16string_view number, std::u16string_view pattern, std::u16string_view symbol,
                       Conversion::NegativeNumberRepresentation representation) {
    const bool showsMinus = representation == Conversion::MinusSign;
    const bool showsSign =
        showsMinus || representation == Conversion::Parentheses || representation == Conversion::ParenthesesAlt;
    return Placed(number, showsSign ? pattern : u"n", symbol, showsMinus);
}

CString PositiveAmount(std::u16string_view number, int format, std::u16string_view symbol) {
    return Placed(number, PatternOf(kPositiveAmounts, format, 0), symbol);
}

CString NegativeAmount(std::u16string_view number, int format, std::u16string_view symbol,
                       Conversion::NegativeNumberRepresentation representation) {
    return NegativePlaced(number, PatternOf(kNegativeAmounts, format, 1), symbol, representation);
}

/// Appends a number text as its digits show, without its sign; returns whether the number is negative.
bool AppendUnsigned(rk::TextBuilder& builder, const CString& numberText, bool groupThousands, int decimalCount) {
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
                                                                    NegativeNumberRepresentation representation) {
    if (numberText.IsEmpty())
        return {};
    rk::TextBuilder digits;
    if (!AppendUnsigned(digits, numberText, groupThousands, decimalCount))
        return digits.Take();
    return NegativePlaced(digits.View(), kNegativeNumber, {}, representation);
}

void CrkStringConversionUtilities::FormatNegativeNumber(CString& text, NegativeNumberRepresentation representation) {
    text = NegativePlaced(text, kNegativeNumber, {}, representation);
}

CString CrkStringConversionUtilities::DoubleStringToFormattedCurrency(const CString& numberText,
                                                                      const CString& currencySymbol, int decimalCount,
                                                                      int positiveFormat, int negativeFormat,
                                                                      NegativeNumberRepresentation representation) {
    if (numberText.IsEmpty())
        return {};
    rk::TextBuilder digits;
    if (AppendUnsigned(digits, numberText, /*groupThousands=*/true, decimalCount))
        return NegativeAmount(digits.View(), negativeFormat, currencySymbol, representation);
    return PositiveAmount(digits.View(), positiveFormat, currencySymbol);
}

void CrkStringConversionUtilities::FormatPositiveCurrency(CString& text, int positiveFormat,
                                                          const CString& currencySymbol) {
    text = PositiveAmount(text, positiveFormat, currencySymbol);
}

void CrkStringConversionUtilities::FormatNegativeCurrency(CString& text, NegativeNumberRepresentation representation,
                                                          int negativeFormat, const CString& currencySymbol) {
    text = NegativeAmount(text, negativeFormat, currencySymbol, representation);
}

CString CrkStringConversionUtilities::DoubleStringToFormattedPercentage(const CString& numberText, int decimalCount) {
    constexpr std::size_t kMovedDigits = 2;  // times 100
    if (numberText.IsEmpty())
        return {};
    const std::u16string& point = NumberFormats::Of(LocaleUse::Money).currencyDecimalSeparator;
    std::u16string moved;
    const rk::SplitNumber number = rk::Split(numberText, point, moved).value_or(rk::SplitNumber());
    rk::TextBuilder percents;
    if (_ttoi(number.integer) != 0)
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
