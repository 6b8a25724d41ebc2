#pragma once

#include <string>
#include <string_view>

namespace rk::platform {

/// The bytes of a path's text: UTF-8, the escapes of `PathOfBytes` as their bytes, other lone surrogates as U+FFFD.
/// U+0000 becomes a zero byte.
std::string BytesOfPath(std::u16string_view path);

/// The text of a path given as bytes. UTF-8 is decoded; a byte that belongs to no well-formed sequence becomes the lone
/// low surrogate U+DC00 plus the byte. `BytesOfPath` of the result is `bytes` again, for every `bytes`.
std::u16string PathOfBytes(std::string_view bytes);

}  // namespace rk::platform
