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

// --- Patterns: "$" stands for the currency symbol, "n" for the number

constexpr std::u16string_view kPositivePatterns[] = {u"$n", u"n$", u"$ n", u"n $"};

struct NegativePattern {
    std::u16string_view parentheses;
    std::u16string_view minusSign;
};
constexpr NegativePattern kNegativePatterns[] = {
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
constexpr NegativePattern kOtherNegativePattern = {u"-$n", u"-$n"};
constexpr std::size_t kMostPatternUnits = 4;  // beside symbol and number

std::u16string_view PositivePattern(int format)
{
    const bool known = format >= 0 && format < static_cast<int>(std::size(kPositivePatterns));
    return kPositivePatterns[known ? format : 0];
}

/// "n" alone where the negative amount shows neither sign nor symbol.
std::u16string_view NegativePatternFor(Conversion::NegativeNumberRepresentation representation, int format)
{
    const bool known = format >= 0 && format < static_cast<int>(std::size(kNegativePatterns));
    const NegativePattern& pattern = known ? kNegativePatterns[format] : kOtherNegativePattern;
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

/// Appends an amount by its pattern; `appendNumber` appends the number.
template <class AppendNumber>
void AppendAmount(rk::TextBuilder& builder, std::u16string_view pattern, std::u16string_view symbol,
                  const AppendNumber& appendNumber)
{
    for (const char16_t unit : pattern) {
        if (unit == u'$')
            builder.Append(symbol);
        else if (unit == u'n')
            appendNumber();
        else
            builder.Append(unit);
    }
}

void PlaceAmount(CString& text, std::u16string_view pattern, const CString& symbol)
{
    rk::TextBuilder builder(text.View().size() + symbol.View().size() + kMostPatternUnits);
    AppendAmount(builder, pattern, symbol, [&] { builder.Append(text.View()); });
    text = builder.Take();
}

// --- Numbers

struct Affixes {
    std::u16string_view before;
    std::u16string_view after;
};

Affixes NegativeAffixes(Conversion::NegativeNumberRepresentation representation)
{
    switch (representation) {
    case Conversion::Parentheses:
    case Conversion::ParenthesesAlt:
        return {u"(", u")"};
    case Conversion::MinusSign:
        return {rk::kNegativePrefix, rk::kNegativeSuffix};
    default:
        return {};
    }
}

enum class Grouping { None, Thousands };

/// A number text, split, with the locale and the decimals it is to have.
class Number {
public:
    Number(const CString& text, Grouping grouping, int decimalCount)
        : m_formats(NumberFormats::Of(LocaleUse::Money)),
          m_split(rk::Split(text, m_formats.currencyDecimalSeparator).value_or(rk::SplitNumber())),
          m_decimals(rk::ClampedDecimals(decimalCount)), m_grouping(grouping)
    {}

    [[nodiscard]] bool IsNegative() const noexcept { return m_split.negative; }
    /// Units that suffice for the number without sign.
    [[nodiscard]] std::size_t MostUnits() const noexcept
    {
        const std::size_t whole = m_split.integer.Length();
        const std::size_t separators = m_grouping == Grouping::None ? 0 : whole / 3;
        return whole + separators * m_formats.currencyGroupingSeparator.size() +
               m_formats.currencyDecimalSeparator.size() + m_decimals;
    }
    void AppendTo(rk::TextBuilder& builder) const
    {
        if (m_grouping == Grouping::Thousands)
            rk::AppendGrouped(builder, m_split.integer, m_formats.currencyGroupingSeparator);
        else
            m_split.integer.AppendTo(builder, 0, m_split.integer.Length());
        if (m_decimals == 0)
            return;
        builder.Append(m_formats.currencyDecimalSeparator);
        rk::AppendDecimals(builder, m_split.fraction, 0, m_decimals);
    }

private:
    const NumberFormats& m_formats;
    rk::SplitNumber m_split;
    std::size_t m_decimals;
    Grouping m_grouping;
};

}  // namespace

CString CrkStringConversionUtilities::DoubleStringToFormattedNumber(const CString& numberText, bool groupThousands,
                                                                    int decimalCount,
                                                                    NegativeNumberRepresentation representation)
{
    if (numberText.IsEmpty())
        return {};
    const Number number(numberText, groupThousands ? Grouping::Thousands : Grouping::None, decimalCount);
    const Affixes affixes = number.IsNegative() ? NegativeAffixes(representation) : Affixes();
    rk::TextBuilder builder(affixes.before.size() + number.MostUnits() + affixes.after.size());
    builder.Append(affixes.before);
    number.AppendTo(builder);
    builder.Append(affixes.after);
    return builder.Take();
}

void CrkStringConversionUtilities::FormatNegativeNumber(CString& text, NegativeNumberRepresentation representation)
{
    const Affixes affixes = NegativeAffixes(representation);
    text = affixes.before + text + affixes.after;
}

CString CrkStringConversionUtilities::DoubleStringToFormattedCurrency(const CString& numberText,
                                                                      const CString& currencySymbol, int decimalCount,
                                                                      int positiveFormat, int negativeFormat,
                                                                      NegativeNumberRepresentation representation)
{
    if (numberText.IsEmpty())
        return {};
    const Number number(numberText, Grouping::Thousands, decimalCount);
    const std::u16string_view pattern =
        number.IsNegative() ? NegativePatternFor(representation, negativeFormat) : PositivePattern(positiveFormat);
    rk::TextBuilder builder(number.MostUnits() + currencySymbol.View().size() + kMostPatternUnits);
    AppendAmount(builder, pattern, currencySymbol, [&] { number.AppendTo(builder); });
    return builder.Take();
}

void CrkStringConversionUtilities::FormatPositiveCurrency(CString& text, int positiveFormat,
                                                          const CString& currencySymbol)
{
    PlaceAmount(text, PositivePattern(positiveFormat), currencySymbol);
}

void CrkStringConversionUtilities::FormatNegativeCurrency(CString& text, NegativeNumberRepresentation representation,
                                                          int negativeFormat, const CString& currencySymbol)
{
    PlaceAmount(text, NegativePatternFor(representation, negativeFormat), currencySymbol);
}

CString CrkStringConversionUtilities::DoubleStringToFormattedPercentage(const CString& numberText, int decimalCount)
{
    constexpr std::size_t kMovedDigits = 2;  // times 100
    if (numberText.IsEmpty())
        return {};
    const std::u16string& point = NumberFormats::Of(LocaleUse::Money).currencyDecimalSeparator;
    const rk::SplitNumber split = rk::Split(numberText, point).value_or(rk::SplitNumber());
    rk::TextBuilder percents;
    const CString integer = split.integer.Text();
    if (_ttoi(integer.GetUTF16Ptr()) != 0)
        percents.Append(integer.View());
    rk::AppendDecimals(percents, split.fraction, 0, kMovedDigits);
    const std::u16string_view whole = percents.View();
    const std::u16string_view shown = whole.substr(std::min(whole.find_first_not_of(u'0'), whole.size()));

    const std::size_t decimals = rk::ClampedDecimals(decimalCount);
    rk::TextBuilder builder(shown.size() + point.size() + decimals + 3);
    if (split.negative)
        builder.Append(u'-');
    builder.Append(shown.empty() ? std::u16string_view(u"0") : shown);
    if (decimals != 0) {
        builder.Append(point);
        rk::AppendDecimals(builder, split.fraction, kMovedDigits, decimals);
    }
    builder.Append(u'%');
    return builder.Take();
}
