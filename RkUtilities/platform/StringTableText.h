#pragma once

#include <string>

namespace rk::platform {

/// The text for `key` in a bundle (null: the application's own), in the user's language (LC_MESSAGES); "" without one.
std::u16string StringTableText(const char* key, const char* bundle);

}  // namespace rk::platform
