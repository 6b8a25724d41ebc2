#pragma once

#include <cstddef>
#include <string_view>

/// UTF-8 to UTF-16 and back, in blocks.
namespace rk {

/// The units that well-formed UTF-8 decodes to; for other bytes a guess, at least 0 and at most their count.
std::size_t GuessDecodedUnits(std::string_view utf8) noexcept;

/// Decodes at least one and at most about `byteCount` bytes from the front of `utf8`, takes them off and returns how
/// many units were written: at most `byteCount` + 3, at most as many as bytes were taken. Every maximal part that is no
/// UTF-8 gives one U+FFFD.
std::size_t DecodeUtf8(std::string_view& utf8, std::size_t byteCount, char16_t* units) noexcept;

/// The bytes that the units encode to.
std::size_t CountEncodedBytes(std::u16string_view units) noexcept;

/// Encodes all units; a lone surrogate gives U+FFFD. Returns the end of what was written.
char* EncodeUtf8(std::u16string_view units, char* bytes) noexcept;

}  // namespace rk
