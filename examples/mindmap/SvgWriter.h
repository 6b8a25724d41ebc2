#pragma once

#include "mindmap/Layout.h"
#include "mindmap/Legend.h"
#include "mindmap/Theme.h"

#include <functional>

namespace mindmap {

/// Takes the map piece by piece.
using TextSink = std::function<void(const CString&)>;

/// Writes the map as one SVG 1.1 document, well-formed whatever the texts are. Every topic is a group whose id is "t"
/// and its GUID; `topicIds` gets these, in the outline's order.
void WriteSvg(const Outline& outline, const MapLayout& map, const Legend& legend, const Design& design,
              const std::vector<CString>& topicIds, const TextSink& sink, const ProgressHook& progress = {});

}  // namespace mindmap
