#pragma once

#include <array>
#include <cstdint>
#include <string_view>

namespace mindmap {

/// What the user chooses of a map's look: the colors of paper and topics, and the form of the topics' shapes.
enum class Theme { Light, Dark };
enum class Shapes { Rounded, Square, Pill };

struct Design {
    Theme theme = Theme::Light;
    Shapes shapes = Shapes::Rounded;
};

/// The names of both, in the order of their values.
inline constexpr std::array<std::string_view, 2> kThemeNames = {"light", "dark"};
inline constexpr std::array<std::string_view, 3> kShapesNames = {"rounded", "square", "pill"};

/// All colors are 0xRRGGBB. Every text stands on what is below it with a contrast of 4.5 or more (Web Content
/// Accessibility Guidelines 2.1, 1.4.3).

/// What lies around the topics.
struct Page {
    std::uint32_t paper;
    std::uint32_t boxFill;  ///< of the legend
    std::uint32_t boxEdge;
    std::uint32_t ink;
    std::uint32_t quietInk;
};

/// What the shape of a topic looks like.
struct Look {
    std::uint32_t fill;
    std::uint32_t edge;
    double edgeWidth;  ///< 0: no edge
    std::uint32_t title;
    std::uint32_t detail;
    std::uint32_t accent;  ///< amounts and links
};

const Page& PageOf(Theme theme);
/// The deeper the level, the closer its shade of the branch's color is to the paper.
Look LookOf(Theme theme, int level, int branch);
/// The color of a branch's lines.
std::uint32_t LineColorOf(Theme theme, int branch);

/// The radius of a shape's corners; no corner of its text leaves them. `height` is the shape's.
int CornerRadiusOf(Shapes shapes, int level, int height);

}  // namespace mindmap
