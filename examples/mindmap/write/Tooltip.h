#pragma once

#include "mindmap/measure/BranchSums.h"

namespace mindmap {

/// All that is known of a topic, for the tooltip over its shape: its text and note in full, dates in words and with
/// their weeks, its amount and, where that is another one, the sum of its branch, the link and its parameters. Cleaned
/// and wrapped (WrapTooltip), in the user's locale.
CString ComposeTooltip(const Topic& topic, const BranchSum& sum);

}  // namespace mindmap
