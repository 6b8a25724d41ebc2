#pragma once

#include <string>
#include <string_view>

namespace rk::platform {

/// The key of a text in the user's order of names, without regard to case (CLDR's collation at its second level): keys
/// compare byte by byte as the texts compare. Follows the user's locale of the moment (LC_COLLATE): keys made before
/// and after a change do not belong together. Lone surrogates have a place too. Safe from any thread.
std::string CollationKey(std::u16string_view text);

}  // namespace rk::platform
