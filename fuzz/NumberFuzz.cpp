// Number texts go there and back, and whatever a text is, the parsers keep their promises to one another.
#include "RkUtilities/numbers/CrkLocaleUtilities.h"
#include "RkUtilities/numbers/CrkStringConversionUtilities.h"
#include "RkUtilities/platform/UserLocale.h"

#include "fuzz/Require.h"

#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <string>
#include <vector>

namespace {

using Conversion = CrkStringConversionUtilities;

/// The shortest text of a double reads back to the bit; the short text of the library to nine decimals or six digits.
void GoThereAndBack(double value)
{
    if (!std::isfinite(value))
        return;
    char characters[64];
    const char* const end = std::to_chars(characters, std::end(characters), value).ptr;
    CString shortest(std::string_view(characters, static_cast<std::size_t>(end - characters)));
    shortest.Replace(u".", CrkLocaleUtilities::GetListSeparator());
    double read = 0;
    Require(Conversion::StringToDouble(shortest, read));
    Require(std::bit_cast<std::uint64_t>(read) == std::bit_cast<std::uint64_t>(value));

    CString text = Conversion::DoubleToString(value);
    text.Replace(CrkLocaleUtilities::GetDecimalPoint(), CrkLocaleUtilities::GetListSeparator());
    Require(Conversion::StringToDouble(text, read));
    Require(std::abs(read - value) <= std::max(1e-9, std::abs(value) * 1e-5) || std::isinf(read));
}

void CheckParsers(const CString& text)
{
    double value = 1;
    int integer = 1;
    long whole = 1;
    unsigned long natural = 1;
    const bool isDouble = Conversion::StringToDouble(text, value);
    const bool isInteger = Conversion::StringToInteger(text, integer);
    Require(isDouble == Conversion::IsStringDouble(text) && isInteger == Conversion::IsStringInteger(text));
    Require(isDouble ? !std::isnan(value) : value == 1);
    Require(isInteger ? isDouble : integer == 1);

    double same = 0;  // what follows a number does not matter
    Require(Conversion::StringToDouble(u" \n" + text + u" x", same) == isDouble && (!isDouble || same == value));

    const bool isWhole = Conversion::StringToLong(text, whole);
    Require(Conversion::StringToULong(text, natural) == isWhole && Conversion::IsStringULong(text) == isWhole);
    Require(isWhole ? whole <= 0 || static_cast<unsigned long>(whole) <= natural : whole == 1 && natural == 1);
    Require(!isWhole || whole >= 0 || natural == 0);
}

void CheckFormatting(const CString& text, int decimals)
{
    CString integer;
    CString fraction;
    bool negative = false;
    if (text.GetLength() > 64 || text.FindOneOf(u"eE") >= 0)
        return;  // an exponent may ask for a text of any size
    Conversion::SplitNumberString(text, integer, fraction, negative);
    CString grouped = integer;
    Conversion::Format1000Separator(grouped);
    CString decimal = fraction;
    Conversion::FormatDecimalDigits(decimal, decimals);
    Require(decimal.GetLength() == std::min(std::max(decimals, 0), 30));
    CString joined = decimal.IsEmpty() ? grouped : grouped + CrkLocaleUtilities::GetDecimalPoint() + decimal;
    if (negative)
        Conversion::FormatNegativeNumber(joined, Conversion::Parentheses);
    Require(text.IsEmpty() ||
            Conversion::DoubleStringToFormattedNumber(text, true, decimals, Conversion::Parentheses) == joined);
    Require(text.IsEmpty() || Conversion::DoubleStringToFormattedPercentage(text, decimals).ReverseFind(u"%") >= 0);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const char* const kLocales[] = {"en_US", "de_DE", "ar_EG", "fa_IR", "fr_CH", "ff_Adlm", "pt_CV", "hi_IN"};
    if (size < 2)
        return 0;
    rk::platform::SetUserLocale(kLocales[data[0] % std::size(kLocales)]);
    const int decimals = data[1] - 4;
    double value = 0;
    std::memcpy(&value, data + 2, std::min(sizeof value, size - 2));
    GoThereAndBack(value);
    const std::string_view bytes(reinterpret_cast<const char*>(data) + 2, size - 2);
    CheckParsers(CString(bytes));
    CheckFormatting(CString(bytes), decimals);
    return 0;
}
