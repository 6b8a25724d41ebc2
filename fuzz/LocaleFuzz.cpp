// Numbers and the texts made of them in the locale of any name lead back to one another.
#include "RkUtilities/foundation/UserLocale.h"
#include "RkUtilities/logging/CrkLogWriter.h"
#include "RkUtilities/numbers/CrkLocaleUtilities.h"
#include "RkUtilities/numbers/CrkStringConversionUtilities.h"

#include "fuzz/Require.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstdint>
#include <fuzzer/FuzzedDataProvider.h>
#include <string>

namespace {

using Conversion = CrkStringConversionUtilities;
using Locale = CrkLocaleUtilities;

// Those that differ in digits, separators, signs, currencies or calendars.
constexpr const char* kLocales[] = {
    "af_ZA",   "am_ET", "ar_EG",  "ar_MA", "as_IN",  "be_BY",   "bg_BG",  "bn_BD", "bs_Cyrl", "ca_ES", "ckb_IQ",
    "cs_CZ",   "da_DK", "de_AT",  "de_CH", "de_DE",  "de_LI",   "dz_BT",  "el_GR", "en_IN",   "en_US", "en_US_POSIX",
    "en_ZA",   "es_CR", "es_ES",  "es_MX", "et_EE",  "eu_ES",   "fa_AF",  "fa_IR", "ff_Adlm", "fi_FI", "fr_CA",
    "fr_CH",   "fr_FR", "gsw_CH", "he_IL", "hi_IN",  "hu_HU",   "hy_AM",  "id_ID", "is_IS",   "it_CH", "ja_JP",
    "ka_GE",   "kk_KZ", "km_KH",  "ko_KR", "ks_IN",  "lo_LA",   "lrc_IR", "lt_LT", "mni_IN",  "mr_IN", "my_MM",
    "mzn_IR",  "nb_NO", "ne_NP",  "nl_NL", "nqo_GN", "pa_Arab", "pl_PL",  "ps_AF", "pt_CV",   "pt_PT", "rm_CH",
    "ru_RU",   "sa_IN", "sat_IN", "sd_PK", "sv_SE",  "ta_LK",   "th_TH",  "tr_TR", "ug_CN",   "ur_IN", "ur_PK",
    "uz_Arab", "vi_VN", "yue_HK", "zh_TW"};

void CheckDouble(double value) {
    CString text = Conversion::DoubleToString(value);  // with the decimal point of money, which parsers do not read
    if (!std::isfinite(value))
        return Require(text.FindOneOf(u"0123456789") < 0);
    text.Replace(Locale::GetDecimalPoint(), Locale::GetListSeparator());
    double read = 0;
    Require(Conversion::StringToDouble(text, read));
    const bool hasNineDecimals = value > 1e-9 && value < 99999999999;
    Require(std::abs(read - value) <= (hasNineDecimals ? 0.5000001e-9 + value * 2e-16 : std::abs(value) * 5.0001e-6));
}

void CheckWhole(long value) {
    long read = 0;
    int integer = 0;
    const CString text = Conversion::LongToString(value);
    Require(Conversion::StringToLong(text, read) && read == value);
    Require(Conversion::StringToInteger(text, integer) && integer == std::clamp<long>(value, INT_MIN, INT_MAX));
    const CString plain = Conversion::DoubleStringToFormattedNumber(text, false, 0, Conversion::MinusSign);
    CString grouped = Conversion::DoubleStringToFormattedNumber(text, true, 0, Conversion::MinusSign);
    grouped.Replace(Locale::GetDigitGroupingSymbol(), u"");
    Require(plain == text && grouped == text);
}

void CheckFacts() {
    Require(Locale::GetFirstDayOfWeek() >= 1 && Locale::GetFirstDayOfWeek() <= 7);
    Require(Locale::GetCurrencyNumberOfDecimalDigits() >= 0 && !Locale::GetCurrencySymbol().IsEmpty());
    Require(!Locale::GetDecimalPoint().IsEmpty() && !Locale::GetListSeparator().IsEmpty());
    for (const auto style : {kCFDateFormatterShortStyle, kCFDateFormatterFullStyle})
        Require(!CrkLogWriter::CurrentTimeString(style).IsEmpty());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    FuzzedDataProvider data(bytes, size);
    const std::string name = data.ConsumeBool() ? data.PickValueInArray(kLocales) : data.ConsumeRandomLengthString(110);
    rk::SetUserLocale(name);
    CheckFacts();
    while (data.remaining_bytes() > 0) {
        CheckDouble(data.ConsumeBool() ? data.ConsumeFloatingPoint<double>() : data.ConsumeIntegral<int>() / 1e6);
        CheckWhole(data.ConsumeIntegral<long>());
    }
    return 0;
}
