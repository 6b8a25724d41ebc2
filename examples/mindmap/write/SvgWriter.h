#pragma once

#include "mindmap/layout/Layout.h"
#include "mindmap/write/Legend.h"
#include "mindmap/write/Theme.h"
#include "mindmap/write/XmlStream.h"

namespace mindmap {

/// Writes the map as one SVG document, well-formed whatever the texts are. Every topic is a group with an id
/// (TopicIds), its GUID, a tooltip (ComposeTooltip) and, where it has a link that may be followed, that link.
///
/// @param topicGuids  in the outline's order.
void WriteSvg(const Outline& outline, const MapLayout& map, const Legend& legend, const Design& design,
              const std::vector<CString>& topicGuids, const TextSink& sink, const ProgressHook& progress = {});

}  // namespace mindmap
