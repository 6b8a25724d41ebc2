#pragma once

#include <cstddef>
#include <string_view>

namespace mindmap {

inline constexpr char32_t kReplacementCharacter = 0xFFFD;

/// The code point at `index`, which moves past it; U+FFFD for a lone surrogate.
inline char32_t NextCodePoint(std::u16string_view text, std::size_t& index) {
    const char32_t unit = text[index++];
    if (unit < 0xD800 || unit > 0xDFFF)
        return unit;
    if (unit > 0xDBFF || index == text.size() || text[index] < 0xDC00 || text[index] > 0xDFFF)
        return kReplacementCharacter;
    return 0x10000 + ((unit - 0xD800) << 10) + (text[index++] - 0xDC00U);
}

}  // namespace mindmap
