#include "tests/support/Test.h"

#include <bit>
#include <cfloat>
#include <climits>
#include <cstdio>

namespace {

using Conversion = CrkStringConversionUtilities;

/// By C's printf, with "." as the process is in the "C" locale.
std::string Printed(double value) {
    char text[64];
    if (value > 1e-9 && value < 99999999999.0) {
        std::string fixed(text, static_cast<std::size_t>(std::snprintf(text, sizeof text, "%11.9f", value)));
        fixed.erase(fixed.find_last_not_of('0') + 1);
        if (fixed.back() == '.')
            fixed.pop_back();
        return fixed;
    }
    std::string general(text, static_cast<std::size_t>(std::snprintf(text, sizeof text, "%*g", 15, value)));
    return general.substr(general.find_first_not_of(' '));
}

TEST(DoubleText, IsWhatTheCLibraryPrints) {
    constexpr double kLow = 1e-9, kHigh = 99999999999;
    for (const double value :
         std::initializer_list<double>{0.0, -0.0, kLow, std::nextafter(kLow, 1), kHigh, std::nextafter(kHigh, 0),
                                       0.9999999995, INFINITY, -INFINITY, NAN, -NAN, DBL_MAX, DBL_TRUE_MIN, -1234567.0})
        EXPECT_EQ(Conversion::DoubleToString(value).ToUtf8(), Printed(value)) << value;
    std::mt19937_64 random(9);
    const auto low = std::bit_cast<std::uint64_t>(1e-10), high = std::bit_cast<std::uint64_t>(1e12);
    for (int round = 0; round < 600'000; ++round) {
        const double inRange = std::bit_cast<double>(low + random() % (high - low));
        ASSERT_EQ(Conversion::DoubleToString(inRange).ToUtf8(), Printed(inRange));
        // The tenth decimal ends on a tie that a double holds: odd multiples of 2^-10.
        const double tie = static_cast<double>(random() % 0x2000000000) + static_cast<double>(random() % 1024) / 1024;
        ASSERT_EQ(Conversion::DoubleToString(tie).ToUtf8(), Printed(tie));
        const auto any = std::bit_cast<double>(static_cast<std::uint64_t>(random()));
        ASSERT_EQ(Conversion::DoubleToString(any).ToUtf8(), Printed(any));
    }
}

constexpr std::tuple<double, int, const char16_t*> kFixedRows[] = {
    {-10516.54, 2, u"-10516,54"}, {0.125, 2, u"0,12"},   {2.5, -1, u"2"},
    {-INFINITY, 2, u"-inf"},      {-0.001, 2, u"-0,00"}, {NAN, 2, u"nan"}};

TEST(DoubleText, HasAsManyDecimalsAsAskedForOfEitherSign) {
    const ScopedUserLocale user("de_DE");
    for (const auto& [value, decimals, text] : kFixedRows)
        EXPECT_EQ(Conversion::DoubleToFixedString(value, decimals), text) << value;
    EXPECT_EQ(Conversion::DoubleToFixedString(-DBL_MAX, INT_MAX).GetLength(), 1 + 309 + 1 + 30);
}

/// Text, integer, fraction (null: stays as it was) and whether it is negative.
using SplitRow = std::tuple<const char16_t*, const char16_t*, const char16_t*, bool>;
constexpr SplitRow kSplitRows[] = {
    {u"-1234.5", u"1234", u"5", true}, {u"", u"kept", nullptr, true},     {u" \u2003\t", u"kept", nullptr, true},
    {u" +42 ", u"42", nullptr, false}, {u"--5", u"-5", nullptr, true},    {u"5.", u"5", nullptr, false},
    {u"1.2.3", u"1", u"2.3", false},   {u"1.5E3", u"1500", u"", false},   {u"1.234e2", u"123", u"4", false},
    {u"1E5e2", u"1E500", u"", false},  {u"1.5e-3", u"0", u"0015", false}, {u"123.45e-1", u"12", u"345", false},
    {u"12e-2", u"0", u"12", false},    {u".5e-2", u"0", u"005", false},   {u"1.5ex", u"1", u"5", false},
    {u"1.5e 1 \n", u"15", u"", false}};

TEST(NumberText, ComesApart) {
    const ScopedUserLocale user("en_US");
    for (const auto& [text, expectedInteger, expectedFraction, isNegative] : kSplitRows) {
        SCOPED_TRACE(CString(text).ToUtf8());
        CString integer = u"kept", fraction = expectedFraction == nullptr ? u"kept" : u"";
        bool negative = true;
        Conversion::SplitNumberString(text, integer, fraction, negative);
        EXPECT_EQ(integer, expectedInteger);
        EXPECT_EQ(fraction, expectedFraction == nullptr ? u"kept" : expectedFraction);
        EXPECT_EQ(negative, isNegative);
    }
    CString both = u"-12.5";
    bool negative = false;
    Conversion::SplitNumberString(both, both, both, negative);
    EXPECT_EQ(both, u"5");
    const ScopedUserLocale german("de_DE");
    CString integer, fraction;
    Conversion::SplitNumberString(u"1.5,25e1", integer, fraction, negative);
    EXPECT_EQ(integer + u"|" + fraction, u"1.52|5");
}

constexpr auto kMinus = Conversion::MinusSign;
constexpr auto kParentheses = Conversion::Parentheses;

using Representation = Conversion::NegativeNumberRepresentation;
constexpr std::tuple<const char16_t*, Representation, const char16_t*> kNumberRows[] = {
    {u"-1234.5", kMinus, u"-1,234.50"}, {u"-1234.5", kParentheses, u"(1,234.50)"}, {u"", kMinus, u""}};

TEST(FormattedNumber, ShowsDecimalsGroupsAndSign) {
    const ScopedUserLocale user("en_US");
    const std::tuple<const char16_t*, int, const char16_t*, const char16_t*> pieces[] = {
        {u"239", 2, u"23", u"239"}, {u"5", 3, u"500", u"5"}, {u"", INT_MIN, u"", u""}, {u"abcdef", 0, u"", u"abc,def"}};
    for (const auto& [text, decimals, expectedFraction, expectedGrouped] : pieces) {
        CString fraction = text, grouped = text;
        Conversion::FormatDecimalDigits(fraction, decimals);
        Conversion::Format1000Separator(grouped);
        EXPECT_EQ(fraction, expectedFraction);
        EXPECT_EQ(grouped, expectedGrouped);
    }
    for (const auto& [text, representation, formatted] : kNumberRows)
        EXPECT_EQ(Conversion::DoubleStringToFormattedNumber(text, /*groupThousands=*/true, 2, representation),
                  formatted);
    CString integer, fraction;
    bool negative = false;
    Conversion::SplitNumberString(u"1.5e2147483647", integer, fraction, negative);
    EXPECT_EQ(integer, u"15" + std::u16string(1000000, u'0'));
    Conversion::SplitNumberString(u"1.5e-2147483648", integer, fraction, negative);
    EXPECT_EQ(fraction, std::u16string(1000000, u'0') + u"15");
}

/// The tables as a reader of the interface knows them, with "$" and 1.10.
constexpr const char16_t* kPositive[] = {u"$1.10", u"1.10$", u"$ 1.10", u"1.10 $"};
constexpr const char16_t* kNegative[][2] = {
    {u"($1.10)", u"-$1.10"},  {u"-$1.10", u"-$1.10"},   {u"$-1.10", u"$-1.10"},    {u"$1.10-", u"$1.10-"},
    {u"(1.10$)", u"-1.10$"},  {u"-1.10$", u"-1.10$"},   {u"1.10-$", u"1.10-$"},    {u"1.10$-", u"1.10$-"},
    {u"-1.10 $", u"-1.10 $"}, {u"-$ 1.10", u"-$ 1.10"}, {u"1.10 $-", u"1.10 $-"},  {u"$ 1.10-", u"$ 1.10-"},
    {u"$ -1.10", u"$ -1.10"}, {u"1.10- $", u"1.10- $"}, {u"($ 1.10)", u"-$ 1.10"}, {u"(1.10 $)", u"-1.10 $"},
};

TEST(FormattedAmount, HasItsSymbolAndSignWhereTheFormatSays) {
    const ScopedUserLocale user("en_US");
    const auto shown = [](const char16_t* number, int positive, int negative, Representation representation) {
        return Conversion::DoubleStringToFormattedCurrency(number, u"$", 2, positive, negative, representation);
    };
    for (int format : {INT_MIN, -1, 0, 1, 2, 3, 4, INT_MAX})
        EXPECT_EQ(shown(u"1.1", format, 0, kMinus), kPositive[format >= 0 && format < 4 ? format : 0]) << format;
    for (int format : {INT_MIN, -1, 0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, INT_MAX}) {
        const auto& [inParentheses, withMinus] = kNegative[format >= 0 && format < 16 ? format : 1];
        EXPECT_EQ(shown(u"-1.109", 0, format, kParentheses), inParentheses) << format;
        EXPECT_EQ(shown(u"-1.109", 0, format, kMinus), withMinus) << format;
    }
    EXPECT_EQ(shown(u"-1.1", 0, 0, Conversion::ParenthesesAlt), u"($1.10)");
    EXPECT_EQ(shown(u"-1.1", 0, 0, Conversion::NoSign), u"1.10");
    EXPECT_EQ(shown(u"-1.1", 0, 0, static_cast<Representation>(5)), u"1.10");
    CString negative = u"1.10", positive = negative;
    Conversion::FormatNegativeCurrency(negative, kParentheses, 14, u"$");
    Conversion::FormatPositiveCurrency(positive, 3, u"$");
    EXPECT_EQ(negative + u"|" + positive, u"($ 1.10)|1.10 $");
    EXPECT_EQ(Conversion::DoubleStringToFormattedCurrency(u"1234.5", u"n$", 2, 3, 0, kMinus), u"1,234.50 n$");
    EXPECT_EQ(Conversion::DoubleStringToFormattedCurrency(u"", u"$", 2, 3, 0, kMinus), u"");
    EXPECT_EQ(CString(Conversion::CurrencySymbols), u"$\u20AC\u00A3\u00A5\u20BD");
}

constexpr std::tuple<const char16_t*, int, const char16_t*> kPercentageRows[] = {
    {u"0.25", 0, u"25%"},     {u"-0.5", 0, u"-50%"},   {u"5", 0, u"500%"},
    {u"0", 0, u"0%"},         {u"0.256", 1, u"25.6%"}, {u"0.256", 0, u"25%"},
    {u"0.0005", 2, u"0.05%"}, {u"abc.5", 0, u"50%"},   {u"012.3456", 1, u"1234.5%"},
    {u" ", 1, u"0.0%"},       {u"", 3, u""},           {u"1", 0, u"100%"}};

TEST(FormattedPercentage, MovesThePointByTwoDigits) {
    const ScopedUserLocale user("en_US");
    for (const auto& [text, decimals, percentage] : kPercentageRows)
        EXPECT_EQ(Conversion::DoubleStringToFormattedPercentage(text, decimals), percentage) << CString(text);
}

}  // namespace
