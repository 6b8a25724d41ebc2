#pragma once

#include "RkUtilities/foundation/detail/TextBuilder.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

/// Number text taken apart and put together: the steps that the number members share.
namespace rk {

/// The text without white space (Unicode's White_Space) at its ends.
std::u16string_view Trimmed(std::u16string_view text);

/// A number text taken apart, its exponent carried out: views of the text, or of the digits that the exponent moved.
struct SplitNumber {
    std::u16string_view integer;
    std::u16string_view fraction;
    bool negative = false;
};

/// `CrkStringConversionUtilities::SplitNumberString`; empty for a blank text. `moved` gets the digits that an exponent
/// moves; `fractionBefore` stands for the fraction of a text that has no fraction.
std::optional<SplitNumber> Split(const CString& text, std::u16string_view decimalPoint, std::u16string& moved,
                                 std::u16string_view fractionBefore = {});

/// A number of decimals within 0 to 30.
std::size_t ClampedDecimals(int decimalCount);
/// Appends exactly `count` units of a fraction: cut off, or filled up with zeros.
void AppendDecimals(TextBuilder& builder, std::u16string_view fraction, std::size_t count);

/// Appends an integer part, `separator` between groups of three units counted from its end.
void AppendGrouped(TextBuilder& builder, std::u16string_view integer, std::u16string_view separator);

}  // namespace rk
