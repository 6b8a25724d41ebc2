#include "mindmap/write/Theme.h"

#include "mindmap/measure/Style.h"
#include "mindmap/write/BranchColors.h"

#include <algorithm>
#include <cstddef>

namespace mindmap {

namespace {

/// Percentages for the shades of a branch's color.
struct TopicShades {
    int fill;
    int edge;
};

struct Palette {
    Page page;
    Look centre;
    std::uint32_t mainText;  // on the branch's color itself
    int lineShade;
    int accentShade;
    std::array<TopicShades, 3> topics;  // from level 2 on; deeper levels look like the last
};

constexpr std::array<Palette, 2> kPalettes = {{
    {{0xFCFBF8, 0xFFFFFF, 0xE4E1DA, 0x22303C, 0x5D6873},
     {0x22303C, 0x22303C, 0, 0xFFFFFF, 0xC9D3DC, 0xC9D3DC},
     0xFFFFFF,
     0,
     -12,
     {{{90, 60}, {96, 62}, {99, 66}}}},
    {{0x161B22, 0x1D242D, 0x36414D, 0xECF0F4, 0xAEB9C4},
     {0xECF0F4, 0xECF0F4, 0, 0x1B232C, 0x4A5661, 0x4A5661},
     0xFFFFFF,
     18,
     50,
     {{{-56, 0}, {-68, -12}, {-76, -24}}}},
}};

constexpr const Palette& PaletteOf(Theme theme) { return kPalettes[static_cast<std::size_t>(theme)]; }

/// Whether a quarter circle of this radius, in the corner of a shape, passes outside the corner of the text.
constexpr bool IsOutsideText(int radius, const LevelStyle& style) {
    const int x = std::max(0, radius - style.horizontalPadding);
    const int y = std::max(0, radius - style.verticalPadding);
    return x == 0 || y == 0 || x * x + y * y <= radius * radius;
}
static_assert(std::all_of(kLevels.begin(), kLevels.end(), [](const LevelStyle& style) {
    return IsOutsideText(style.cornerRadius, style) && IsOutsideText(style.largestRadius, style);
}));

}  // namespace

const Page& PageOf(Theme theme) { return PaletteOf(theme).page; }

Look LookOf(Theme theme, int level, int branch) {
    const Palette& palette = PaletteOf(theme);
    if (level == 0)
        return palette.centre;
    const std::uint32_t color = kBranchColors[ColorIndexOf(branch)].argb & 0xFFFFFF;
    if (level == 1)
        return {color, color, 0, palette.mainText, palette.mainText, palette.mainText};
    const TopicShades& shades =
        palette.topics[std::min(static_cast<std::size_t>(level) - 2, palette.topics.size() - 1)];
    return {ShadeOfRgb(color, shades.fill), ShadeOfRgb(color, shades.edge),        1.25, palette.page.ink,
            palette.page.quietInk,          ShadeOfRgb(color, palette.accentShade)};
}

std::uint32_t LineColorOf(Theme theme, int branch) {
    return ShadeOfRgb(kBranchColors[ColorIndexOf(branch)].argb, PaletteOf(theme).lineShade);
}

int CornerRadiusOf(Shapes shapes, int level, int height) {
    switch (shapes) {
    case Shapes::Rounded:
        return StyleOf(level).cornerRadius;
    case Shapes::Pill:
        return std::min(height / 2, StyleOf(level).largestRadius);
    default:
        return 0;
    }
}

}  // namespace mindmap
