#pragma once

#include "mindmap/layout/Layout.h"

#include <array>
#include <string_view>

namespace mindmap {

enum class Anchor { Start, Middle, End };  ///< of SVG's text-anchor

/// Where a piece of a topic's text is drawn, in the map's units.
struct RunPlace {
    float x;
    float baseline;
    Anchor anchor;
    float iconX;  ///< the left edge of its sign
    float iconTop;
};

RunPlace PlaceOf(const TextRun& run, const TopicShape& shape);

/// What a role is called in scripts and signs.
constexpr std::string_view NameOf(TextRole role) {
    constexpr std::array<std::string_view, 6> kNames = {"title", "note", "date", "amount", "link", "more"};
    return kNames[static_cast<std::size_t>(role)];
}

constexpr std::string_view NameOf(Anchor anchor) {
    constexpr std::array<std::string_view, 3> kNames = {"start", "middle", "end"};
    return kNames[static_cast<std::size_t>(anchor)];
}

/// Signs of 12 by 12 units, drawn with the stroke of their user: "icon-date", "icon-amount", "icon-link".
inline constexpr char16_t kIcons[] = uR"(<defs>
<g id="icon-date" fill="none" stroke-width="1.2"><path d="M1.5 3h9v7.5h-9zM1.5 5.5h9M4 1.2v2.6M8 1.2v2.6"/></g>
<g id="icon-amount" fill="none" stroke-width="1.2"><path d="M.8 3h10.4v6.6H.8z"/><circle cx="6" cy="6.3" r="1.5"/></g>
<g id="icon-link" fill="none" stroke-width="1.2"><path d="M5 2.6H1.8v7.6h7.6V7M7 1.6h3.4V5M10.2 1.8 5.6 6.4"/></g>
</defs>
)";

}  // namespace mindmap
