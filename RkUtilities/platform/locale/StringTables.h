#pragma once

#include <string>
#include <string_view>

namespace rk::platform {

/// Names the folder of the application's own string tables; "" names none. Safe from any thread.
void NameStringTables(std::string_view folder);

/// The text for `key` in a bundle (null: the application's own), in the user's language (LC_MESSAGES); "" without one.
std::u16string StringTableText(const char* key, const char* bundle);

}  // namespace rk::platform
