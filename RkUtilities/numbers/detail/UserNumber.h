#pragma once

#include <string_view>

namespace rk {

/// `ReadSpelledDouble` and `ReadSpelledInteger` as the user's locale writes numbers.
bool ReadUserDouble(std::u16string_view text, double& value);
bool ReadUserInteger(std::u16string_view text, int& value);

}  // namespace rk
