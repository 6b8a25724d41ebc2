#pragma once

#include "mindmap/measure/TextMeasure.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace mindmap {

/// The sizes of everything in a map, in drawing units of the SVG. Its colors are in Theme.h.

/// Shapes and distances are multiples of this. Sums of them, and the middles of sides, are then exact in the single
/// precision of the geometry up to kMaximumExtent, so neighbours cannot overlap by rounding.
inline constexpr int kGrid = 4;
/// No map reaches further than this from its centre.
inline constexpr int kMaximumExtent = 1 << 25;

constexpr int OnGrid(int length) { return (length + kGrid - 1) / kGrid * kGrid; }

struct LevelStyle {
    Font font;
    int maximumTextWidth;
    int maximumLineCount;
    int horizontalPadding;
    int verticalPadding;
    int siblingGap;    ///< between a topic's whole branch and the next topic's
    int childGap;      ///< from a topic to its children
    double lineWidth;  ///< of the line that comes from the parent
    int cornerRadius;
    int largestRadius;  ///< that the corners may have without touching the text
};

/// By level; deeper topics look like the last level.
inline constexpr std::array<LevelStyle, 4> kLevels = {{
    {{22, Weight::Bold}, 200, 6, 0, 0, 0, 0, 0, 0, 0},
    {{16, Weight::Bold}, 160, 6, 14, 8, 24, 36, 3.5, 10, 36},
    {{14, Weight::Regular}, 188, 8, 10, 6, 10, 32, 2, 8, 26},
    {{13, Weight::Regular}, 168, 8, 8, 4, 8, 28, 1.5, 6, 20},
}};

constexpr const LevelStyle& StyleOf(int level) {
    return kLevels[std::min(static_cast<std::size_t>(level), kLevels.size() - 1)];
}

inline constexpr int kCentralPadding = 8;
inline constexpr int kMargin = 24;  ///< around the map
inline constexpr float kMaximumSideRatio = 2.4F;

inline constexpr Font kDetailFont = {12, Weight::Regular};
inline constexpr int kNoteLineCount = 3;
inline constexpr int kFactLineCount = 2;  ///< of a date, an amount, a link
inline constexpr int kDetailGap = 4;      ///< above the first detail
inline constexpr int kIconSize = 12;
inline constexpr int kIconGap = 4;   ///< between an icon and its text
inline constexpr int kFactGap = 12;  ///< between a date and the amount beside it

inline constexpr Font kLegendFont = {13, Weight::Regular};
inline constexpr int kLegendTextWidth = 216;
inline constexpr int kLegendPadding = 14;
inline constexpr int kLegendColumnGap = 24;
inline constexpr int kLegendRowGap = 10;
inline constexpr int kLegendRowHeight = LineHeight(kLegendFont) + LineHeight(kDetailFont);
inline constexpr int kSwatchSize = 20;
inline constexpr int kSwatchTop = (kLegendRowHeight - kSwatchSize) / 2;  ///< below the top of its row
inline constexpr int kSwatchGap = 10;                                    ///< between a square of color and its name

}  // namespace mindmap
