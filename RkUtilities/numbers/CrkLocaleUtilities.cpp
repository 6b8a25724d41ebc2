#include "RkUtilities/numbers/CrkLocaleUtilities.h"

#include "RkUtilities/platform/locale/NumberFormats.h"

using rk::platform::LocaleUse;
using rk::platform::NumberFormats;

CString CrkLocaleUtilities::GetDecimalPoint() { return NumberFormats::Of(LocaleUse::Money).currencyDecimalSeparator; }

CString CrkLocaleUtilities::GetDigitGroupingSymbol() {
    return NumberFormats::Of(LocaleUse::Money).currencyGroupingSeparator;
}

void CrkLocaleUtilities::GetNegativeNumberPrefixSuffix(CString& prefix, CString& suffix) {
    prefix = u"-";
    suffix = u"";
}

CString CrkLocaleUtilities::GetCurrencySymbol() { return NumberFormats::Of(LocaleUse::Money).currencySymbol; }

int CrkLocaleUtilities::GetCurrencyNumberOfDecimalDigits() {
    return NumberFormats::Of(LocaleUse::Money).currencyFractionDigits;
}

CString CrkLocaleUtilities::GetListSeparator() { return NumberFormats::Of(LocaleUse::Numbers).decimalSeparator; }

int CrkLocaleUtilities::GetFirstDayOfWeek() { return NumberFormats::Of(LocaleUse::Time).firstWeekday; }
