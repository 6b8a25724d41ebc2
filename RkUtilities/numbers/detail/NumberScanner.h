#pragma once

#include <string_view>

namespace rk {

/// `ScanDouble` and `ScanInteger` of foundation/NumberScan.h as the user's locale writes numbers.
bool ScanDouble(std::u16string_view text, double& value);
bool ScanInteger(std::u16string_view text, int& value);

}  // namespace rk
