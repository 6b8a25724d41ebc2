#pragma once

#include <string>
#include <string_view>

namespace rklog {

/// Appends a text of well-formed UTF-8 for the eye: what could steer a terminal or turn the direction of reading is
/// shown by its code, lines behind the first are indented, and line feeds at the end are left out.
void AppendVisible(std::string_view text, std::string& out);

}  // namespace rklog
