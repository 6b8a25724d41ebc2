#pragma once

#include <RkUtilities/foundation/CString.h>

#include <cstdint>
#include <optional>

namespace mindmap {

/// Where a unit stands. The values are the positive currency formats of `CrkStringConversionUtilities`.
enum class UnitPlace { Before, Behind, BeforeBlank, BehindBlank };

/// An amount or a percentage: an exact decimal number and what it counts.
struct Figure {
    static constexpr std::int64_t kScale = 10'000;

    CString unit;            ///< "€", "NOK", "%"; "" for a bare number
    std::int64_t value = 0;  ///< in ten-thousandths
    UnitPlace place = UnitPlace::Before;

    friend bool operator==(const Figure&, const Figure&) = default;
};

/// Reads a figure as outlines write it, the same in every locale; nothing for other texts.
///
///     "€ 1 284 000"    "1.284.000 €"    "-EUR 1284.50"    "1'284.5 CHF"    "US$12"    "12,5 %"    "300 kr"    "42"
///
/// - One unit, before or behind the number, at most one sign ("-", U+2212, "+"), blanks of any width between them. A
///   unit is "%", a currency sign with up to two letters, a code of three capitals, or "kr", "zł", "Kč", "Ft". Codes
///   that have a sign of their own are read as that sign: "EUR" is "€".
/// - Groups of three digits may be separated, by one of blank, apostrophe, "." and ",". The last "." or "," is the
///   decimal point, but not when it occurs twice, and not in an amount like "1.284" or "1,284", where it can only stand
///   between groups.
/// - Up to 13 digits and 4 decimals.
std::optional<Figure> ReadFigure(const CString& text);

/// The figure in the user's locale, exactly and with the decimals that it needs; an amount has two and more, but of yen
/// and other units without cents: "€ 1,284.00", "1.284,00 €", "12,5%".
///
/// The unit of an amount stands behind it, after a blank, where the decimal point is a comma, as German, French and
/// most readers of such numbers expect; elsewhere it stands where it was written. The library leaves that to its
/// caller: CrkLocaleUtilities knows one currency format for all locales, "$1.10", so a German amount differs from that
/// format.
CString ShownFigure(const Figure& figure);

}  // namespace mindmap
