#pragma once

#include <RkUtilities/foundation/CString.h>

namespace mindmap {

/// The texts of an outline, made fit to be kept and shown.

/// A topic's text: form feeds end a line, other control characters, lone surrogates and noncharacters become spaces
/// (`CrkStringUtilities::ReplaceInvalidTopicTextCharacters`). Characters outside the Basic Multilingual Plane stay: in
/// UTF-8 they are as valid as any.
CString CleanTopicText(const CString& text);

/// A note without control characters; tabs and line breaks stay.
CString CleanNote(CString note);

/// What a tooltip shows of one text: up to some thousand characters, then "...".
CString ShortenForTooltip(const CString& text);

/// A tooltip: "<br>" breaks a line, tabs are four spaces, and long lines are broken, if possible after a space.
CString WrapTooltip(CString text);

}  // namespace mindmap
