#pragma once

#include <cstdint>

/// Code points as UTF-16 units and as UTF-8 bytes, one at a time.
namespace rk::platform {

constexpr char16_t kReplacementCharacter = 0xFFFD;

constexpr bool IsSurrogate(char32_t unit) noexcept { return (unit & 0xFFFFF800) == 0xD800; }
constexpr bool IsHighSurrogate(char32_t unit) noexcept { return (unit & 0xFFFFFC00) == 0xD800; }
constexpr bool IsLowSurrogate(char32_t unit) noexcept { return (unit & 0xFFFFFC00) == 0xDC00; }

/// The code point that begins at `in`, which moves behind it: a unit or a pair. A lone surrogate stays as it is.
constexpr char32_t TakeCodePoint(const char16_t*& in, const char16_t* end) noexcept {
    const char32_t unit = *in++;
    if (!IsHighSurrogate(unit) || in == end || !IsLowSurrogate(*in))
        return unit;
    return 0x10000U + ((unit & 0x3FFU) << 10 | (*in++ & 0x3FFU));
}

/// Writes one unit or two; returns their end.
constexpr char16_t* WriteUtf16(char32_t codePoint, char16_t* out) noexcept {
    if (codePoint > 0xFFFF) {
        *out++ = static_cast<char16_t>(0xD7C0U + (codePoint >> 10));
        codePoint = 0xDC00U | (codePoint & 0x3FFU);
    }
    *out++ = static_cast<char16_t>(codePoint);
    return out;
}

/// Writes one to four bytes, a surrogate as U+FFFD; returns their end.
constexpr char* WriteUtf8(char32_t codePoint, char* out) noexcept {
    const auto tail = [](char32_t bits) { return static_cast<char>(0x80U | (bits & 0x3FU)); };
    if (codePoint < 0x80) {
        *out++ = static_cast<char>(codePoint);
    } else if (codePoint < 0x800) {
        *out++ = static_cast<char>(0xC0U | codePoint >> 6);
        *out++ = tail(codePoint);
    } else if (codePoint > 0xFFFF) {
        *out++ = static_cast<char>(0xF0U | codePoint >> 18);
        *out++ = tail(codePoint >> 12);
        *out++ = tail(codePoint >> 6);
        *out++ = tail(codePoint);
    } else {
        const char32_t whole = IsSurrogate(codePoint) ? char32_t{kReplacementCharacter} : codePoint;
        *out++ = static_cast<char>(0xE0U | whole >> 12);
        *out++ = tail(whole >> 6);
        *out++ = tail(whole);
    }
    return out;
}

constexpr bool IsContinuation(unsigned byte) noexcept { return (byte & 0xC0U) == 0x80U; }

constexpr char32_t kNoCodePoint = 0xFFFFFFFF;

/// The code point that begins at `in`, which moves behind it; kNoCodePoint, and `in` moves behind the maximal part that
/// is no UTF-8 (Unicode, chapter 3, table 3-7).
constexpr char32_t TakeUtf8(const unsigned char*& in, const unsigned char* end) noexcept {
    const unsigned first = *in++;
    if (first < 0x80)
        return first;
    if (first < 0xC2 || first > 0xF4 || in == end || !IsContinuation(*in))
        return kNoCodePoint;
    if (first < 0xE0)
        return (first & 0x1FU) << 6 | (*in++ & 0x3FU);
    // What the first two bytes say together: overlong forms, surrogates and code points beyond U+10FFFF end here.
    const unsigned front = (first & 0xFU) << 6 | (*in & 0x3FU);
    const bool isFour = first >= 0xF0;
    if (isFour ? front < 0x10 || front > 0x10F : front < 0x20 || (front & 0x3E0U) == 0x360)
        return kNoCodePoint;
    ++in;
    char32_t codePoint = front;
    for (int left = isFour ? 2 : 1; left > 0; --left) {
        if (in == end || !IsContinuation(*in))
            return kNoCodePoint;
        codePoint = codePoint << 6 | (*in++ & 0x3FU);
    }
    return codePoint;
}

}  // namespace rk::platform
