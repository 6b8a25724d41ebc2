#pragma once

#include <string>
#include <string_view>

namespace rk::platform {

/// The bytes that a path's text stands for: UTF-8, with the escapes of `PathOfBytes` turned back into their bytes and
/// every other lone surrogate as U+FFFD. U+0000 becomes a zero byte.
std::string BytesOfPath(std::u16string_view path);

/// The text of a path given as bytes. What is UTF-8 is decoded; a byte that belongs to no well-formed sequence, always
/// one of 0x80 to 0xFF, becomes the lone low surrogate U+DC00 plus the byte. `BytesOfPath` of the result is `bytes`
/// again, for every `bytes`.
std::u16string PathOfBytes(std::string_view bytes);

}  // namespace rk::platform
