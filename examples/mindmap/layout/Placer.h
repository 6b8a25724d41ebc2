#pragma once

#include "mindmap/layout/Forms.h"

namespace mindmap {

/// Places boxes and lines by the forms that were chosen for the two sides, from the centre to the leaves.
Placement PlaceByForms(const Packing& packing);

}  // namespace mindmap
