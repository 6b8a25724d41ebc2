#pragma once

#include <string>
#include <string_view>

namespace mindmap {

/// A text as a JSON string (RFC 8259) with its quotes, fit to stand in a script element of HTML: "<", ">" and "&" are
/// written as escapes, so that no end of the element and no comment can begin. A lone surrogate becomes U+FFFD.
std::u16string JsonText(std::u16string_view text);

}  // namespace mindmap
