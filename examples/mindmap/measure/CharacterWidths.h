#pragma once

namespace mindmap {

enum class Weight { Regular, Bold };

/// How far a code point moves the pen at most, in hundredths of the font size: the larger of its widths in DejaVu Sans
/// and Noto Sans or, where both lack it, in the Noto font of its script.
int CharacterWidth(char32_t codePoint, Weight weight);

/// The code point belongs to the code point before it: a combining mark, a joiner, a variation or skin tone selector.
bool IsMark(char32_t codePoint);

}  // namespace mindmap
