#include "mindmap/write/Legend.h"

#include "mindmap/measure/Style.h"
#include "mindmap/write/BranchColors.h"

#include <RkUtilities/geometry/CrkFloatMargin.h>
#include <RkUtilities/strings/CrkStringUtilities.h>

#include <algorithm>
#include <cmath>

namespace mindmap {

namespace {

std::vector<const Topic*> MainTopics(const Outline& outline) {
    std::vector<const Topic*> mains;
    for (const Topic& topic : outline.topics)
        if (topic.level == 1)
            mains.push_back(&topic);
    return mains;
}

CString OneLine(const CString& text, int maximumWidth) {
    CString line = DrawableText(text);
    line.Replace(u"\n", u" ");
    const WrappedText wrapped = Wrap(line, kDetailFont, maximumWidth, 1);
    return wrapped.lines.empty() ? CString() : wrapped.lines.front();
}

/// The titles of the main topics with one color, and how many more than a line holds there are: "Route · Ship +2".
CString TitlesOf(const std::vector<const Topic*>& mains, std::size_t colorIndex) {
    constexpr std::size_t kStep = kBranchColors.size();
    std::size_t restCount = (mains.size() - colorIndex - 1) / kStep;
    const auto withRest = [&](const CString& titles) {
        return restCount == 0 ? titles : CrkStringUtilities::AppendInt(titles + u" +", static_cast<int>(restCount));
    };
    const int room = kLegendTextWidth - TextWidth(withRest({}), kDetailFont);
    CString titles = OneLine(mains[colorIndex]->text, room);
    for (std::size_t i = colorIndex + kStep; i < mains.size(); i += kStep, --restCount) {
        const CString longer =
            CrkStringUtilities::Combine(u" · ", titles, OneLine(mains[i]->text, room), /*skipEmptyParts=*/true);
        if (TextWidth(longer, kDetailFont) > room)
            break;
        titles = longer;
    }
    return withRest(titles);
}

int CellWidth(const std::vector<LegendEntry>& entries) {
    int textWidth = 0;
    for (const LegendEntry& entry : entries)
        textWidth = std::max({textWidth, TextWidth(entry.name, kLegendFont), TextWidth(entry.topics, kDetailFont)});
    return OnGrid(kSwatchSize + kSwatchGap + textWidth);
}

/// Places entries row by row, in as many columns as the map's width has room for, each row about as full as the others.
void PlaceEntries(Legend& legend, const CrkFloatRect& map) {
    const int count = static_cast<int>(legend.entries.size());
    const int step = CellWidth(legend.entries) + kLegendColumnGap;
    const int room = static_cast<int>(map.width) - 2 * kMargin - 2 * kLegendPadding + kLegendColumnGap;
    const int most = std::clamp(room / step, 1, count);
    const int rowCount = (count + most - 1) / most;
    const int columnCount = (count + rowCount - 1) / rowCount;

    const int width = columnCount * step - kLegendColumnGap + 2 * kLegendPadding;
    const int height = rowCount * (kLegendRowHeight + kLegendRowGap) - kLegendRowGap + 2 * kLegendPadding;
    legend.box = {map.x + std::floor((map.width - static_cast<float>(width)) / 2), map.y + map.height,
                  static_cast<float>(width), static_cast<float>(height)};
    for (int i = 0; i < count; ++i) {
        const int row = i / columnCount;
        const int column = i % columnCount;
        legend.entries[static_cast<std::size_t>(i)].origin = {
            legend.box.x + static_cast<float>(kLegendPadding + column * step),
            legend.box.y + static_cast<float>(kLegendPadding + row * (kLegendRowHeight + kLegendRowGap))};
    }
}

/// Grown evenly on two sides until neither side is longer than kMaximumSideRatio times the other.
CrkFloatRect WithinRatio(CrkFloatRect page) {
    const float x = std::ceil(std::max(0.0F, page.height / kMaximumSideRatio - page.width) / 2);
    const float y = std::ceil(std::max(0.0F, page.width / kMaximumSideRatio - page.height) / 2);
    CrkFloatMargin{x, y, x, y}.InflateRect(page);
    return page;
}

}  // namespace

Legend MakeLegend(const Outline& outline, const MapLayout& map) {
    Legend legend;
    legend.bounds = map.bounds;
    const std::vector<const Topic*> mains = MainTopics(outline);
    for (std::size_t i = 0; i < std::min(mains.size(), kBranchColors.size()); ++i) {
        const std::uint32_t color = kBranchColors[i].argb & 0xFFFFFF;
        legend.entries.push_back({color, NameOfRgb(color), TitlesOf(mains, i), {}});
    }
    if (!mains.empty()) {
        PlaceEntries(legend, map.bounds);
        CrkFloatRect box = legend.box;
        CrkFloatMargin{kMargin, 0, kMargin, kMargin}.InflateRect(box);  // above, the map has its own
        legend.bounds = CrkFloatRect::Union(map.bounds, box);
    }
    legend.bounds = WithinRatio(legend.bounds);
    return legend;
}

}  // namespace mindmap
