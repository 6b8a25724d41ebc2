// Whatever a text is: repaired texts are sound, parsers agree with one another.
#include "fuzz/Fuzz.h"

namespace {

using Conversion = CrkStringConversionUtilities;
using Strings = CrkStringUtilities;
using Xml = CrkXmlUtilities;

void CheckRepairs(const CString& text, int width, int lines) {
    Require(CString(text.ToUtf8()) == text);
    CString note = text, wrapped = text;
    Require(Xml::IsValidNCName(Xml::StringToNCName(text, u'_', /*insertUnderscore=*/true)));
    Strings::InsertLineSeparators(&wrapped, note.Left(3), width, lines);
    Strings::ReplaceEnvironmentVariables(&note);
    Require(Strings::ShortenString(text, width).GetLength() <= std::max(width, 0));
}

void CheckParsers(const CString& text) {
    double value = 1;
    int integer = 1;
    long whole = 1;
    unsigned long natural = 1;
    const bool isDouble = Conversion::StringToDouble(text, value);
    const bool isInteger = Conversion::StringToInteger(text, integer);
    Require(isDouble ? !std::isnan(value) : value == 1);
    Require(isInteger ? isDouble : integer == 1);
    double same = 0;  // what follows a number does not matter
    Require(Conversion::StringToDouble(u" \n" + text + u" x", same) == isDouble && (!isDouble || same == value));
    const bool isWhole = Conversion::StringToLong(text, whole);
    Require(Conversion::StringToULong(text, natural) == isWhole);
    Require(isWhole ? whole <= 0 || static_cast<unsigned long>(whole) <= natural : whole == 1 && natural == 1);
    Require(!isWhole || whole >= 0 || natural == 0);
}

void CheckNumberText(const CString& text, int decimals) {
    CString joined, fraction;
    bool negative = false;
    Conversion::SplitNumberString(text, joined, fraction, negative);
    Conversion::Format1000Separator(joined);
    Conversion::FormatDecimalDigits(fraction, decimals);
    Require(fraction.GetLength() == std::clamp(decimals, 0, 30));
    if (!fraction.IsEmpty())
        joined += CrkLocaleUtilities::GetDecimalPoint() + fraction;
    if (negative)
        Conversion::FormatNegativeNumber(joined, Conversion::Parentheses);
    Require(text.IsEmpty() || Conversion::DoubleStringToFormattedNumber(text, /*groupThousands=*/true, decimals,
                                                                        Conversion::Parentheses) == joined);
    Require(text.IsEmpty() || Conversion::DoubleStringToFormattedPercentage(text, decimals).ReverseFind(u"%") >= 0);
}

}  // namespace

void Try(FuzzedDataProvider& data) {
    constexpr const char* kLocales[] = {"en_US", "de_DE", "ar_EG", "fa_IR", "fr_CH", "ff_Adlm", "pt_CV", "hi_IN"};
    rk::SetUserLocale(data.ConsumeBool() ? data.PickValueInArray(kLocales) : data.ConsumeRandomLengthString(110));
    const int number = data.ConsumeIntegral<std::uint8_t>() - 4, lines = data.ConsumeIntegral<std::uint8_t>();
    const CString text(data.ConsumeRemainingBytesAsString());
    CheckRepairs(text, number, lines);
    CheckParsers(text);
    CheckNumberText(text, number);
}
