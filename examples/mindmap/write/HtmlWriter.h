#pragma once

#include "mindmap/write/Legend.h"
#include "mindmap/write/Theme.h"
#include "mindmap/write/XmlStream.h"

#include <cstddef>
#include <string_view>

namespace mindmap {

/// Writes the map as one HTML file that lives in a browser: it is panned, zoomed, folded and searched there. It needs
/// nothing from outside. Topics with the sizes of their boxes stand in it as JSON, never run as script or read as
/// markup; a content security policy lets the page's own script and style run and nothing else.
///
/// Colors follow the system, dark or light; of the design only the shapes count. The page's own words are in the user's
/// language where the string tables have it.
void WriteHtml(const Outline& outline, const MapLayout& map, const Legend& legend, Shapes shapes, const TextSink& sink,
               const ProgressHook& progress = {});

/// The page without its topics: `write/page/` in one text, in pieces that any compiler takes. The build makes it.
extern const std::string_view kPagePieces[];
extern const std::size_t kPagePieceCount;

}  // namespace mindmap
