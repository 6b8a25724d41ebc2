#pragma once

#include "mindmap/read/Outline.h"

#include <string_view>

namespace mindmap {

/// Reads an OPML 2.0 document.
///
/// - A topic is an `outline` element of the `body`: its `text` (or `title`), its note (`_note`, `note`), its link
///   (`url`, `htmlUrl`, `xmlUrl`, `link`), its date (`_date`, `date`, `due`) and its amount (`_amount`, `amount`,
///   `cost`). Of several attributes for a field the first that is not empty counts. Other elements are passed over, and
///   other attributes are kept in `Topic::more`.
/// - Topics marked with `isComment="true"` are left out with all below them.
/// - UTF-8, UTF-16, ISO 8859-1 and US-ASCII are read, as the document says.
/// - A document type declaration is refused, so there are no entities but XML's own, and no entity can explode.
///
/// @param title  of the map when the head has no title and the body has several topics at its top.
/// @throws OutlineError for a document that is not well-formed, is no OPML or has no topic.
Outline ReadOpml(std::string_view document, const CString& title);

}  // namespace mindmap
