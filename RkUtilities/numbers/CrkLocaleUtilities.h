#pragma once

#include "RkUtilities/RkExport.h"
#include "RkUtilities/foundation/CString.h"

/// What the user's locale says about money, numbers and the week. The answers are CLDR's, from ICU, for the user's
/// locale at the moment of the call (`rk::SetUserLocale`, else `setlocale`): the members about money and digits follow
/// LC_MONETARY, the list separator LC_NUMERIC, the week LC_TIME. Where a locale tells nothing the answer is "" or 0. A
/// locale's data are read once and kept, when they are complete. Members throw only `std::bad_alloc`. Safe from any
/// thread, and in a child after `fork`.
class RK_EXPORT CrkLocaleUtilities {
public:
    // --- Digits of numbers and amounts

    /// The decimal separator of amounts of money: "." in en_US, "," in de_DE, "." in fr_CH, "$" in pt_CV. All number
    /// text of `CrkStringConversionUtilities` has this decimal point, from which plain numbers differ in a few locales.
    static CString GetDecimalPoint();
    /// The separator between groups of digits in amounts: "," in en_US, "." in de_DE, U+202F in fr_FR.
    static CString GetDigitGroupingSymbol();
    /// What stands before and behind a negative number: "-" and "" whatever the user's locale is (CLDR's root locale).
    static void GetNegativeNumberPrefixSuffix(CString& prefix, CString& suffix);

    // --- Money

    /// The symbol of the locale's currency: "$", "€", "CHF"; U+00A4 where a locale names no country.
    static CString GetCurrencySymbol();
    /// How many decimals an amount in the locale's currency has: 2 for cents, 0 for yen.
    static int GetCurrencyNumberOfDecimalDigits();
    /// Always 0: "$1.10" (`CrkStringConversionUtilities::FormatPositiveCurrency`).
    static int GetPositiveCurrencyFormat() { return 0; }
    /// Always 0: "($1.10)" (`CrkStringConversionUtilities::FormatNegativeCurrency`).
    static int GetNegativeCurrencyFormat() { return 0; }

    // --- Lists and weeks

    /// Not a list separator but the decimal separator of plain numbers: "," in de_DE and fr_CH, "." in en_US.
    static CString GetListSeparator();
    static int GetFirstDayOfWeek();  ///< The first day of the week: 1 is Sunday, 2 Monday ... 7 Saturday.
};
