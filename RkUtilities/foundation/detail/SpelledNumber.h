#pragma once

#include <array>
#include <cstdint>
#include <string_view>

namespace rk {

/// How numbers are written, besides ASCII digits, "-", "+" and the exponent's "e" or "E". "" stands for nothing.
struct NumberSpelling {
    std::u16string_view decimalSeparator = u".";
    std::u16string_view minusSigns[2];
    std::u16string_view plusSign;
    const std::array<char32_t, 10>* digits = nullptr;  // from 0 on
};

constexpr std::int64_t kMostSpelledInteger = 100'000'000'000'000'000;  // ten times this fits

/// Reads the longest number at the start of `text`, after white space; the result tells whether there is a number.
/// `value`, and `rest` with the text behind the number, are written only then. A `double` is correctly rounded,
/// infinity or 0 beyond its range; an integer lies between -kMostSpelledInteger and kMostSpelledInteger. Linear time.
bool ReadSpelledDouble(std::u16string_view text, const NumberSpelling& spelling, double& value,
                       std::u16string_view* rest = nullptr);
bool ReadSpelledInteger(std::u16string_view text, const NumberSpelling& spelling, std::int64_t& value);

}  // namespace rk
