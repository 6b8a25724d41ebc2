#pragma once

#include "RkUtilities/foundation/detail/TextBuilder.h"

#include <cstddef>
#include <optional>
#include <string_view>

/// Decimal text taken apart and put together without copying: the steps that the number members share.
namespace rk {

/// The affixes of a negative number in CLDR's root locale.
constexpr std::u16string_view kNegativePrefix = u"-";
constexpr std::u16string_view kNegativeSuffix;

/// The text without white space (Unicode's White_Space) at its ends.
std::u16string_view Trimmed(std::u16string_view text);

/// A run of digits as stretches of the text it comes from, with zeros around them.
struct DigitRun {
    DigitRun() = default;
    explicit DigitRun(std::u16string_view digits) : first(digits) {}

    std::size_t leadingZeros = 0;
    std::u16string_view first;
    std::u16string_view second;
    std::size_t trailingZeros = 0;

    [[nodiscard]] std::size_t Length() const noexcept
    {
        return leadingZeros + first.size() + second.size() + trailingZeros;
    }
    /// Appends up to `count` units from `start` on.
    void AppendTo(TextBuilder& builder, std::size_t start, std::size_t count) const;
    [[nodiscard]] CString Text() const;
};

/// A number text taken apart, its exponent carried out. Valid as long as the text.
struct SplitNumber {
    DigitRun integer;
    DigitRun fraction;
    bool negative = false;
};

/// `CrkStringConversionUtilities::SplitNumberString`; empty for a blank text. `fractionBefore` stands for the fraction
/// of a text that has no fraction.
std::optional<SplitNumber> Split(const CString& text, std::u16string_view decimalPoint,
                                 std::u16string_view fractionBefore = {});

/// A number of decimals within 0 to 30.
std::size_t ClampedDecimals(int decimalCount);
/// Appends exactly `count` units of a fraction from `start` on: cut off, or filled up with zeros.
void AppendDecimals(TextBuilder& builder, const DigitRun& fraction, std::size_t start, std::size_t count);

/// Appends an integer part, `separator` between groups of three units counted from its end.
void AppendGrouped(TextBuilder& builder, const DigitRun& integer, std::u16string_view separator);

}  // namespace rk
