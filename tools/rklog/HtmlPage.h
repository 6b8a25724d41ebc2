#pragma once

#include <string_view>

namespace rklog {

/// The page that page.html holds. "ENTRIES" is where the elements of a JSON array go; each "NONCE" is to be replaced by
/// a text that cannot be guessed.
extern const std::string_view kPage;

}  // namespace rklog
