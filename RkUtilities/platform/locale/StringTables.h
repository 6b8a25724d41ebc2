#pragma once

#include <string>
#include <string_view>

namespace rk::platform {

/// Names the folder of the application's own string tables ("": no folder), and tells whether ICU can read a table for
/// the user's language there. Safe from any thread.
bool NameStringTables(std::string_view folder);

/// The text for `key` in a bundle (null: the application's own), in the user's language (LC_MESSAGES); else "".
std::u16string StringTableText(const char* key, const char* bundle);

}  // namespace rk::platform
