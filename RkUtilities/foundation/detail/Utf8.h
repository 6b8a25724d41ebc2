#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// UTF-8 to UTF-16 and back, in blocks.
namespace rk {

/// Decodes at least one and at most about `byteCount` bytes from the front of `utf8`, takes them off and returns how
/// many units were written: at most `byteCount` + 3, and at most as many as bytes were taken. Units behind the written
/// units, up to that number, may be overwritten. Every maximal part that is no UTF-8 gives one U+FFFD.
std::size_t DecodeUtf8(std::string_view& utf8, std::size_t byteCount, char16_t* units) noexcept;

/// The bytes that the units encode to.
std::size_t CountEncodedBytes(std::u16string_view units) noexcept;

/// Encodes all units; a lone surrogate gives U+FFFD. Returns the end of what was written, and writes nothing behind it.
char* EncodeUtf8(std::u16string_view units, char* bytes) noexcept;

/// The same, to the end of `bytes`. An empty string takes the memory that it needs and no more; other strings grow as
/// `std::string` grows. Throws `std::length_error`, `std::bad_alloc`.
void AppendUtf8(std::u16string_view units, std::string& bytes);

}  // namespace rk
