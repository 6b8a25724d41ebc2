#pragma once

#include <string_view>

namespace rk {

/// Reads the number at the start of `text` as the user's locale writes it; white space before it is skipped.
///
/// `value` is written when there is one, and the result tells whether. Time is linear in the length of the text.
bool ScanDouble(std::u16string_view text, double& value);
bool ScanInteger(std::u16string_view text, int& value);

}  // namespace rk
