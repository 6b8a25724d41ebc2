#pragma once

#include "mindmap/layout/Forms.h"

namespace mindmap {

/// Finds the forms of all branches, from the leaves to the centre, and those of the two sides that make the best sheet.
///
/// When `isPacked` is false every branch has one form, its children in a column beside it.
Packing FindForms(const BoxTree& tree, bool isPacked);

}  // namespace mindmap
