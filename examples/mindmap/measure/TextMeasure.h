#pragma once

#include "mindmap/measure/CharacterWidths.h"

#include <RkUtilities/foundation/CString.h>

#include <string_view>
#include <vector>

namespace mindmap {

/// Measuring and breaking text without a font engine.
///
/// Widths are upper bounds, in drawing units, for the fonts that the map asks for; see CharacterWidth. A text that is
/// drawn narrower leaves a little air in its shape, it never leaves the shape.

struct Font {
    int size;  ///< drawing units per em
    Weight weight;
};

/// The stack of fonts that the widths hold for, and the stack for color pictures, which other fonts draw as mere
/// outlines.
inline constexpr char16_t kFontFamily[] = u"'Noto Sans', 'DejaVu Sans', sans-serif";
inline constexpr char16_t kPictureFontFamily[] =
    u"'Noto Color Emoji', 'Apple Color Emoji', 'Segoe UI Emoji', sans-serif";

/// From a line's top to the next line's, and from a line's top to the baseline: enough for the accents of capitals and
/// the descenders in both fonts.
constexpr int LineHeight(Font font) { return (font.size * 138 + 99) / 100; }
constexpr int Ascent(Font font) { return (font.size * 107 + 99) / 100; }

/// The width of one line, rounded up.
int TextWidth(std::u16string_view line, Font font);

/// The first part of a text that is drawn in one stack of fonts.
struct FontPart {
    std::u16string_view text;
    bool isPicture;
};
FontPart FirstFontPart(std::u16string_view text);

enum class Direction { LeftToRight, RightToLeft };

/// The direction of a paragraph: that of its first letter (Unicode Standard Annex 9, rules P2 and P3); left to right
/// without a letter.
Direction DirectionOf(std::u16string_view text);

/// What can be drawn of a text: line breaks of any kind become U+000A, tabs become spaces, other control characters,
/// noncharacters and lone surrogates U+FFFD. At most four marks stay on a character: more marks would leave the line.
CString DrawableText(std::u16string_view text);

struct WrappedText {
    std::vector<CString> lines;
    int width = 0;  ///< of the widest line
    bool isShortened = false;
};

/// Breaks a drawable text into lines that are at most `maximumWidth` wide.
///
/// - Lines break after spaces, dashes, slashes and between ideographs, but not before closing or after opening
///   punctuation; a word that is too wide for a line breaks behind one of "/.-_?&=", then anywhere, but never inside a
///   character with its marks.
/// - The lines are made about equally wide. U+000A always ends a line.
/// - What does not go into `maximumLineCount` lines is cut off and "…" ends the last line.
WrappedText Wrap(std::u16string_view text, Font font, int maximumWidth, int maximumLineCount);

}  // namespace mindmap
