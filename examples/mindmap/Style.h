#pragma once

#include "mindmap/TextMeasure.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

namespace mindmap {

/// Everything that makes the look of a map: sizes here, colors below. Lengths are drawing units of the SVG.

/// Shapes and distances are multiples of this. Sums of them, and the middles of sides, are then exact in the single
/// precision of the geometry up to kMaximumExtent, so neighbours cannot overlap by rounding.
inline constexpr int kGrid = 4;
/// No map reaches further than this from its centre.
inline constexpr int kMaximumExtent = 1 << 25;

constexpr int OnGrid(int length)
{
    return (length + kGrid - 1) / kGrid * kGrid;
}

struct LevelStyle {
    Font font;
    int maximumTextWidth;
    int maximumLineCount;
    int horizontalPadding;
    int verticalPadding;
    int siblingGap;    ///< between a topic's whole branch and the next one's
    int childGap;      ///< from a topic to its children
    double lineWidth;  ///< of the line that comes from the parent
    int cornerRadius;
};

/// By level; deeper topics look like the last one.
inline constexpr std::array<LevelStyle, 4> kLevels = {{
    {{22, Weight::Bold}, 200, 6, 0, 0, 0, 0, 0, 0},
    {{16, Weight::Bold}, 160, 6, 14, 8, 24, 36, 3.5, 10},
    {{14, Weight::Regular}, 188, 8, 10, 6, 10, 32, 2, 8},
    {{13, Weight::Regular}, 168, 8, 8, 4, 8, 28, 1.5, 6},
}};

constexpr const LevelStyle& StyleOf(int level)
{
    return kLevels[std::min(static_cast<std::size_t>(level), kLevels.size() - 1)];
}

/// From the central topic to the main topics: wider for taller maps, so that the lines do not get too steep.
inline constexpr int kMinimumCentralGap = 48;
inline constexpr int kMaximumCentralGap = 64;
inline constexpr int kCentralPadding = 8;
inline constexpr int kMargin = 24;  ///< around the map

inline constexpr Font kDetailFont = {12, Weight::Regular};
inline constexpr int kNoteLineCount = 3;
inline constexpr int kDetailGap = 4;  ///< above the first detail
inline constexpr int kIconSize = 12;
inline constexpr int kIconGap = 4;   ///< between an icon and its text
inline constexpr int kFactGap = 12;  ///< between a date and the amount beside it

/// Colors as 0xRRGGBB.
inline constexpr std::uint32_t kPaper = 0xFCFBF8;
inline constexpr std::uint32_t kInk = 0x22303C;
inline constexpr std::uint32_t kQuietInk = 0x5D6873;
inline constexpr std::uint32_t kCentralFill = 0x22303C;
inline constexpr std::uint32_t kCentralText = 0xFFFFFF;
inline constexpr std::uint32_t kCentralDetail = 0xC9D3DC;

struct BranchColors {
    std::uint32_t strong;  ///< main topics and lines; white text stands on it with a contrast of 4.5 or more
    std::uint32_t tint;    ///< topics of the second level
    std::uint32_t edge;    ///< their outline
};
inline constexpr std::array<BranchColors, 8> kBranches = {{
    {0x2B6CB0, 0xEAF2FA, 0xA9C8E6},  // blue
    {0xC2452D, 0xFCEEEA, 0xEBB6AA},  // brick
    {0x2F7D4F, 0xEAF5EE, 0xA6D0B6},  // green
    {0x7A4AA8, 0xF3EEF9, 0xCBB5E2},  // violet
    {0xA1640A, 0xFBF2E3, 0xE3C592},  // ochre
    {0x0F7C82, 0xE6F4F5, 0x9FD0D3},  // teal
    {0xB03A6B, 0xFBECF2, 0xE4AFC6},  // rose
    {0x4E6072, 0xEFF2F5, 0xB9C5D0},  // slate
}};

constexpr const BranchColors& ColorsOf(int branch)
{
    return kBranches[static_cast<std::size_t>(branch) % kBranches.size()];
}

}  // namespace mindmap
