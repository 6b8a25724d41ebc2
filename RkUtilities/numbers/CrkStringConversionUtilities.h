#pragma once

#include "RkUtilities/RkExport.h"
#include "RkUtilities/foundation/CString.h"

/// Numbers, amounts and truth values from text and to text.
///
/// - The user's locale is looked up at each call (`rk::SetUserLocale`, else `setlocale`): parsers follow its plain
///   numbers (LC_NUMERIC); number text and the texts formatted from it follow its money (LC_MONETARY).
/// - *Number text* travels between the members: an optional sign, ASCII digits, the decimal point
///   `CrkLocaleUtilities::GetDecimalPoint`, an optional exponent. Members that take number text look at single units
///   only; a text that is no number is split, cut, padded and grouped as if its units were digits. Surplus decimals are
///   cut off, never rounded.
/// - White space is Unicode's White_Space.
/// - Members throw `std::bad_alloc`, `std::length_error` for a result that a `CString` cannot hold, and nothing else.
///   Without memory nothing incomplete is kept, and the next call is right. Safe from any thread, and in a child after
///   `fork`. The first call with a locale needs memory for ICU's data (`rk::PrepareFormats`).
class RK_EXPORT CrkStringConversionUtilities {
public:
    // --- Truth values and integers to text

    /// Exactly "true" or "false"; for other texts (" true", "True", "1") the result is false and `value` stays.
    static bool StringToBool(const CString& text, bool& value);
    static CString BoolToString(bool value, bool asWords);  ///< "true" or "false" with `asWords`, else "1" or "0".
    static CString LongToString(long value);                ///< ASCII digits, "-" before negative numbers. No grouping.
    static CString ULongToString(unsigned long value);      ///< The same for an unsigned number.

    // --- The number at the start of a text
    //
    // White space before the number and text behind it are ignored. The longest prefix that is a number counts:
    //
    //     sign      "+", "-", U+2212 or the locale's own signs; optional, directly before the digits
    //     digits    0 to 9 and the locale's own digits
    //     fraction  the locale's decimal separator, however long; digits on one side of it suffice
    //     exponent  "e" or "E", an optional sign, digits
    //
    // Grouping separators, "inf", "nan" and hexadecimal digits are no part of a number. Without a number the result is
    // false and `value` stays. Time is linear in the length of the text.

    /// In en_US:
    ///
    ///     "  3.5xyz"  ->  3.5      ".5"  ->  0.5     "1e3"     ->  1000     "1,234"  ->  1
    ///     "7 days"    ->  7        "5."  ->  5       "1e", "1e+" ->  1      "days 7", ".", "-", "": no number
    ///
    /// Correctly rounded to the nearest double, ties to even. Beyond the range of `double`: infinity, or 0, with the
    /// number's sign.
    static bool StringToDouble(const CString& text, double& value);
    /// "-7 apples" -> -7, "12.7" -> 12. Beyond the range of `int`: INT_MAX or INT_MIN.
    static bool StringToInteger(const CString& text, int& value);
    static bool IsStringDouble(const CString& text);   ///< Whether `StringToDouble` reads a number.
    static bool IsStringInteger(const CString& text);  ///< Whether `StringToInteger` reads a number.
    /// A number or a percentage as a fraction, white space around it aside: "50%" -> 0.5, "0.5" -> 0.5, "12" -> 12.
    /// With a "%", which must be the last unit, the number before it is multiplied by the double 0.01 ("57%" gives
    /// 0.5700000000000001). Units between number and "%" are ignored: "50%%", "50 x%" -> 0.5. `value` is 0 where the
    /// result is false ("%50", "abc%").
    static bool StringToPercentageDouble(const CString& text, double& value);

    // --- Texts that are a number as a whole
    //
    // - In every locale: an optional "-" and digits 0 to 9, any number of them.
    // - Beyond that, up to 10,000 units that ICU's plain decimal format of the locale accepts whole: U+2212 for "-",
    //   digits of any script, grouping separators between groups of the right size (also blanks, apostrophes and
    //   marks that look like the locale's), a fraction, an exponent in the locale's spelling ("1E3", "1e3"). No "+", no
    //   white space at the ends, no "%", no currency.
    // - No spelling of infinity or "not a number".
    //
    // A fraction is cut off ("-1.5" -> -1). A number beyond the type stores the type's nearest value: a negative number
    // stores 0 where the type is unsigned. For other texts the result is false and `value` stays.

    /// Reads a whole text into 32 bits without a sign.
    static bool StringToUInteger(const CString& text, unsigned int& value);
    /// Its namesake `CrkStringUtilities::StringToLong` reads the start of a text, in every locale alike, up to 32 bits.
    static bool StringToLong(const CString& text, long& value);
    /// `base` has no effect: numbers are decimal.
    static bool StringToULong(const CString& text, int base, unsigned long& value);
    /// Reads a whole text into 64 bits without a sign.
    static bool StringToULong(const CString& text, unsigned long& value);
    static bool IsStringULong(const CString& text);  ///< Whether `StringToULong` reads it.

    // --- Number text

    /// The value as number text. Between 1e-9 and 99999999999 (both exclusive) at most nine decimals, without zeros at
    /// the end; other values, negative values included, with six significant digits as C's "%g" gives them. The
    /// digits are those of C's printf: exact, ties to the even digit.
    ///
    ///     2.0/3  ->  "0.666666667"    2.0    ->  "2"     -1234567.0  ->  "-1.23457e+06"    infinity  ->  "inf"
    ///     1.5e-9 ->  "0.000000001"    1e-10  ->  "1e-10"        0.0  ->  "0"            NaN  ->  "nan", "-nan"
    static CString DoubleToString(double value);
    /// The value as number text with exactly `decimalCount` decimals (0 to 30, other counts as the nearer limit), of
    /// either sign and any size, rounded as C's "%.*f" rounds. For amounts: the members below cut and do not round.
    ///
    ///     -1234567.891, 2  ->  "-1234567.89"    0.125, 2  ->  "0.12"    -0.001, 2  ->  "-0.00"
    static CString DoubleToFixedString(double value, int decimalCount);

    /// Takes number text apart: its integer digits, its fraction digits and whether a "-" leads it. White space at the
    /// ends is left off; an exponent moves the decimal point. With decimal point ".":
    ///
    ///     "-1234.5"  ->  "1234", "5", true       "1.5E3"      ->  "1500", ""     "1.5e-3"  ->  "0", "0015"
    ///     "5."       ->  "5", untouched          "123.45e-1"  ->  "12", "345"    "+7"      ->  "7", untouched
    ///
    /// Pass empty parts: `fractionPart` stays as it was where the text has no unit after the decimal point, and a blank
    /// text changes no output. The fraction begins behind the whole decimal point, however long. The exponent follows
    /// the first "e", else the first "E", and reads as `_ttoi` reads it; it adds at most 1,000,000 zeros
    /// ("1e2147483647" -> "1" and a million zeros).
    static void SplitNumberString(const CString& text, CString& integerPart, CString& fractionPart, bool& negative);

    /// Brings a fraction to `decimalCount` units, 0 to 30 (other counts as the nearer limit): cut off, or filled up
    /// with "0". "239" with 2 -> "23", "5" with 3 -> "500".
    static void FormatDecimalDigits(CString& fractionPart, int decimalCount);

    /// Puts the locale's grouping separator, however long, between groups of three units: "1234567" -> "1,234,567".
    static void Format1000Separator(CString& integerPart);

    // --- Formatted numbers

    /// How a negative number shows. Other values count as `NoSign`.
    enum NegativeNumberRepresentation : int {
        NoSign,          ///< without a sign; an amount without its currency symbol too
        MinusSign,       ///< "-" before the number; in amounts where the negative format puts it
        NoSignAlt,       ///< as `NoSign`
        Parentheses,     ///< in "(" and ")"; in amounts where the negative format has them
        ParenthesesAlt,  ///< as `Parentheses`
    };

    /// Number text with exactly `decimalCount` decimals (0 to 30, other counts as the nearer limit), grouped if wished.
    /// "" for "".
    ///
    ///     "-1234.5", 2 decimals, grouped  ->  "-1,234.50" with a minus sign, "(1,234.50)" in parentheses
    ///     "1234.5678", 0 decimals         ->  "1234"
    ///     "-0.001", 2 decimals            ->  "-0.00": the sign stays
    ///     ".5", 1 decimal                 ->  ".5";  blanks, 2 decimals -> ".00"
    static CString DoubleStringToFormattedNumber(const CString& numberText, bool groupThousands, int decimalCount,
                                                 NegativeNumberRepresentation representation);
    /// Marks the text of a number without its sign as negative: "5" -> "-5", "(5)" or "5".
    static void FormatNegativeNumber(CString& text, NegativeNumberRepresentation representation);

    /// An amount of money: the number text grouped, cut to `decimalCount` decimals, and the symbol placed as below.
    /// "" for "". The text of a `double` comes from `DoubleToFixedString`, which keeps all its digits.
    static CString DoubleStringToFormattedCurrency(const CString& numberText, const CString& currencySymbol,
                                                   int decimalCount, int positiveFormat, int negativeFormat,
                                                   NegativeNumberRepresentation representation);
    /// Places the symbol: 0 "$1.10", 1 "1.10$", 2 "$ 1.10", 3 "1.10 $"; other formats as 0.
    static void FormatPositiveCurrency(CString& text, int positiveFormat, const CString& currencySymbol);
    /// Places symbol and sign:
    ///
    ///     0 ($1.10)   4 (1.10$)    8 -1.10 $   12 $ -1.10     other formats  -$1.10
    ///     1 -$1.10    5 -1.10$     9 -$ 1.10   13 1.10- $
    ///     2 $-1.10    6 1.10-$    10 1.10 $-   14 ($ 1.10)
    ///     3 $1.10-    7 1.10$-    11 $ 1.10-   15 (1.10 $)
    ///
    /// With `MinusSign` the formats in parentheses have a minus in front instead: 0 -$1.10, 4 -1.10$, 14 -$ 1.10,
    /// 15 -1.10 $. Without a sign (`NoSign`) the text stays as it is.
    static void FormatNegativeCurrency(CString& text, NegativeNumberRepresentation representation, int negativeFormat,
                                       const CString& currencySymbol);

    /// A fraction, given as number text, as a percentage: "0.256" with 1 decimal -> "25.6%", "-0.5" with 0 -> "-50%",
    /// "5" with 2 -> "500.00%". "" for "". Never grouped.
    static CString DoubleStringToFormattedPercentage(const CString& numberText, int decimalCount);

    /// Currency symbols a user may choose from: "$€£¥₽", zero-terminated UTF-16.
    static unsigned short const* const CurrencySymbols;
};
