#pragma once

#include "mindmap/read/Outline.h"

#include <string_view>

namespace mindmap {

/// How the lines of a text outline are read.
enum class TextSyntax {
    /// One topic a line, below the last topic that is indented less. "- ", "* ", "+ " and numbers before the text are
    /// taken off.
    Indented,
    /// Headings ("# " to "###### ") and list items are topics; the paragraphs under a topic are its note. Fenced code
    /// is a note too, and "---" lines are left out. The first link of a topic ("[text](target)") is its link; "**" and
    /// "`" go.
    Markdown,
};

/// Markdown when the first line with text is a heading or begins a list.
TextSyntax GuessTextSyntax(std::string_view document);

/// Reads an outline of lines in UTF-8, a byte-order mark at the start or not. A tab in the indentation leads to the
/// next multiple of four columns; a list item counts as deeper than any heading.
///
/// @param title  of the map when several topics are at the top.
/// @throws OutlineError for a line that is no UTF-8 or holds U+0000, and when there is no topic.
Outline ReadTextOutline(std::string_view document, TextSyntax syntax, const CString& title);

}  // namespace mindmap
