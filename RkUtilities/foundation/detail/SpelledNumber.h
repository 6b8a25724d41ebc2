#pragma once

#include <array>
#include <string_view>

namespace rk {

/// How numbers are written, besides ASCII digits, "-", "+" and the exponent's "e" or "E". Empty texts stand for nothing.
struct NumberSpelling {
    std::u16string_view decimalSeparator = u".";
    std::u16string_view minusSigns[2];
    std::u16string_view plusSign;
    const std::array<char32_t, 10>* digits = nullptr;  // from 0 on
};

/// Reads the longest number at the start of `text`; white space before it is skipped, what follows it ignored.
///
/// `value` is written when there is one, and the result tells whether. Correctly rounded, infinity or 0 beyond the range of
/// `double`, INT_MAX or INT_MIN beyond that of `int`. Time is linear in the length of the text.
bool ReadSpelledDouble(std::u16string_view text, const NumberSpelling& spelling, double& value);
bool ReadSpelledInteger(std::u16string_view text, const NumberSpelling& spelling, int& value);

}  // namespace rk
