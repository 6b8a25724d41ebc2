#include "mindmap/layout/Layout.h"

#include "mindmap/measure/Style.h"

#include <RkUtilities/geometry/CrkFloatMargin.h>
#include <RkUtilities/geometry/CrkMathUtilities.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <limits>

namespace mindmap {

namespace {

using Units = std::int64_t;

/// What is known of a topic's place while it is sought.
struct Place {
    int width = 0;
    int height = 0;
    Units bandHeight = 0;      // of the topic with all its descendants
    Units childrenHeight = 0;  // of its children's bands and the gaps between them
    Units bandTop = 0;
    Units nextChildTop = 0;
    Units near = 0;    // x of the side towards the centre, as a distance from the centre
    Units middle = 0;  // y
    Units firstChildMiddle = std::numeric_limits<Units>::max();
    Units lastChildMiddle = std::numeric_limits<Units>::min();
};

constexpr Units DownToGrid(Units value)
{
    return value >= 0 ? value / kGrid * kGrid : -((-value + kGrid - 1) / kGrid * kGrid);
}

class Layouter {
public:
    Layouter(const Outline& outline, const ProgressHook& progress)
        : m_topics(outline.topics), m_progress(progress), m_places(m_topics.size())
    {
        m_map.shapes.resize(m_topics.size());
        m_map.connections.resize(m_topics.size());
        m_map.sums = SumBranches(outline);
    }

    MapLayout Run()
    {
        ComposeTexts();
        MeasureBands();
        ShareOutSides();
        PlaceBands();
        PlaceMiddles();
        MakeShapes();
        Connect();
        FindBounds();
        return std::move(m_map);
    }

private:
    Place& PlaceOf(std::size_t index) { return m_places[index]; }
    Place& ParentPlaceOf(std::size_t index) { return m_places[static_cast<std::size_t>(m_topics[index].parent)]; }
    const LevelStyle& LevelOf(std::size_t index) const { return StyleOf(m_topics[index].level); }

    void ComposeTexts()
    {
        for (std::size_t i = 0; i < m_topics.size(); ++i) {
            Tell(m_progress, "laying out", i, m_topics.size());
            TopicText& text = m_map.shapes[i].text = ComposeText(m_topics[i], m_map.sums[i]);
            const LevelStyle& style = LevelOf(i);
            text.height = std::max(text.height, LineHeight(style.font));
            PlaceOf(i).width = OnGrid(std::max(text.width, style.font.size) + 2 * style.horizontalPadding);
            PlaceOf(i).height = OnGrid(text.height + 2 * style.verticalPadding);
        }
        MakeEllipse();
    }

    /// An ellipse whose axes are √2 times a rectangle's sides goes through its corners.
    void MakeEllipse()
    {
        const auto axis = [](int side) {
            return OnGrid(static_cast<int>(std::ceil((side + kCentralPadding) * std::sqrt(2.0) / 2))) * 2;
        };
        const TopicText& text = m_map.shapes.front().text;
        Place& centre = PlaceOf(0);
        centre.width = axis(std::max(text.width, LevelOf(0).font.size));
        centre.height = axis(text.height);
    }

    void MeasureBands()
    {
        for (std::size_t i = m_topics.size(); i-- > 1;) {
            Place& place = PlaceOf(i);
            place.bandHeight = std::max<Units>(place.height, place.childrenHeight);
            Units& sum = ParentPlaceOf(i).childrenHeight;
            sum += place.bandHeight + (sum > 0 ? LevelOf(i).siblingGap : 0);
        }
    }

    /// Splits the main topics between right and left and gives each its band.
    void ShareOutSides()
    {
        std::vector<std::size_t> mains;
        Units total = 0;
        for (std::size_t i = 1; i < m_topics.size(); ++i)
            if (m_topics[i].level == 1) {
                mains.push_back(i);
                total += PlaceOf(i).bandHeight;
            }
        std::size_t rightCount = 0;
        Units rightHeight = 0;
        while (rightCount < mains.size()) {
            const Units withNext = rightHeight + PlaceOf(mains[rightCount]).bandHeight;
            if (rightCount > 0 && std::abs(2 * withNext - total) > std::abs(2 * rightHeight - total))
                break;
            rightHeight = withNext;
            ++rightCount;
        }
        const auto split = mains.begin() + static_cast<std::ptrdiff_t>(rightCount);
        std::vector<std::size_t> left(split, mains.end());
        std::reverse(left.begin(), left.end());
        mains.erase(split, mains.end());
        m_centralGap = OnGrid(static_cast<int>(std::clamp<Units>(std::max(StackHeight(mains), StackHeight(left)) / 10,
                                                                 kMinimumCentralGap, kMaximumCentralGap)));
        Stack(mains, Side::Right);
        Stack(left, Side::Left);
        for (std::size_t i = 1, branch = 0; i < m_topics.size(); ++i)
            m_map.shapes[i].branch = static_cast<int>(m_topics[i].level == 1 ? branch++ : branch - 1);
    }

    Units StackHeight(const std::vector<std::size_t>& mains)
    {
        Units height = mains.empty() ? 0 : static_cast<Units>(mains.size() - 1) * kLevels[1].siblingGap;
        for (const std::size_t i : mains)
            height += PlaceOf(i).bandHeight;
        return height;
    }

    void Stack(const std::vector<std::size_t>& mains, Side side)
    {
        Units top = DownToGrid(-StackHeight(mains) / 2);
        for (const std::size_t i : mains) {
            PlaceOf(i).bandTop = top;
            m_map.shapes[i].side = side;
            top += PlaceOf(i).bandHeight + kLevels[1].siblingGap;
        }
    }

    void PlaceBands()
    {
        for (std::size_t i = 1; i < m_topics.size(); ++i) {
            Place& place = PlaceOf(i);
            Place& parent = ParentPlaceOf(i);
            if (m_topics[i].level == 1) {
                place.near = PlaceOf(0).width / 2 + m_centralGap;
            } else {
                m_map.shapes[i].side = m_map.shapes[static_cast<std::size_t>(m_topics[i].parent)].side;
                place.near = parent.near + parent.width + StyleOf(m_topics[i].level - 1).childGap;
                place.bandTop = parent.nextChildTop;
                parent.nextChildTop += place.bandHeight + LevelOf(i).siblingGap;
            }
            place.nextChildTop = place.bandTop + DownToGrid((place.bandHeight - place.childrenHeight) / 2);
        }
    }

    /// A topic stands in the middle of its first and last child, as far as its band lets it.
    void PlaceMiddles()
    {
        for (std::size_t i = m_topics.size(); i-- > 1;) {
            Place& place = PlaceOf(i);
            const bool isLeaf = place.childrenHeight == 0;
            const Units wanted =
                isLeaf ? place.bandTop + place.bandHeight / 2 : (place.firstChildMiddle + place.lastChildMiddle) / 2;
            const Units top = std::clamp(DownToGrid(wanted - place.height / 2), place.bandTop,
                                         place.bandTop + place.bandHeight - place.height);
            place.middle = top + place.height / 2;
            Place& parent = ParentPlaceOf(i);
            parent.firstChildMiddle = std::min(parent.firstChildMiddle, place.middle);
            parent.lastChildMiddle = std::max(parent.lastChildMiddle, place.middle);
        }
    }

    void MakeShapes()
    {
        for (std::size_t i = 0; i < m_topics.size(); ++i) {
            const Place& place = PlaceOf(i);
            TopicShape& shape = m_map.shapes[i];
            const Units far = place.near + place.width;
            const Units top = place.middle - place.height / 2;
            if (std::max({far, std::abs(top), std::abs(top + place.height)}) > kMaximumExtent)
                throw OutlineError{m_topics[i].line, u"the map would be wider or taller than 67,108,864 units"};
            const Units x = shape.side == Side::Centre  ? -place.width / 2
                            : shape.side == Side::Right ? place.near
                                                        : -far;
            shape.bounds = {static_cast<float>(x), static_cast<float>(top), static_cast<float>(place.width),
                            static_cast<float>(place.height)};
            PlaceText(shape);
        }
    }

    static void PlaceText(TopicShape& shape)
    {
        const float air = (shape.bounds.width - static_cast<float>(shape.text.width)) / 2;
        const bool beginsRight = shape.text.direction == Direction::RightToLeft;
        shape.textOrigin = {shape.bounds.x + (beginsRight ? shape.bounds.width - air : air),
                            shape.bounds.y + (shape.bounds.height - static_cast<float>(shape.text.height)) / 2};
    }

    void Connect()
    {
        for (std::size_t i = 1; i < m_topics.size(); ++i)
            m_map.connections[i] =
                ConnectShapes(m_map.shapes[static_cast<std::size_t>(m_topics[i].parent)], m_map.shapes[i]);
    }

    static Connection ConnectShapes(const TopicShape& parent, const TopicShape& child)
    {
        const float outward = child.side == Side::Right ? 1.0F : -1.0F;
        const CrkFloatPoint end = CrkMathUtilities::GetRectangleEdgePoint(child.bounds, {-outward, 0}, 0);
        if (parent.side == Side::Centre) {
            const CrkFloatPoint start = CrkMathUtilities::GetEllipseEdgePoint(parent.bounds, end, 0);
            const float reach = end.x - start.x;
            return {start,
                    {start.x + reach * 0.25F, start.y + (end.y - start.y) * 0.75F},
                    {end.x - reach * 0.6F, end.y},
                    end};
        }
        const CrkFloatPoint start = CrkMathUtilities::GetRectangleEdgePoint(parent.bounds, {outward, 0}, 0);
        const float half = (end.x - start.x) / 2;
        return {start, {start.x + half, start.y}, {end.x - half, end.y}, end};
    }

    void FindBounds()
    {
        std::vector<CrkFloatPoint> corners;
        corners.reserve(2 * m_map.shapes.size());
        for (const TopicShape& shape : m_map.shapes) {
            const CrkFloatRect& r = shape.bounds;
            corners.push_back({r.x, r.y});
            corners.push_back({r.x + r.width, r.y + r.height});
        }
        m_map.bounds =
            CrkMathUtilities::CalculatePointsBoundingRectangle(corners.data(), static_cast<int>(corners.size()));
        constexpr float kWidth = kMargin;
        CrkFloatMargin{kWidth, kWidth, kWidth, kWidth}.InflateRect(m_map.bounds);
    }

    const std::vector<Topic>& m_topics;
    const ProgressHook& m_progress;
    std::vector<Place> m_places;
    Units m_centralGap = kMinimumCentralGap;
    MapLayout m_map;
};

}  // namespace

MapLayout LayOut(const Outline& outline, const ProgressHook& progress)
{
    return Layouter(outline, progress).Run();
}

std::vector<CrkFloatPoint> Flatten(const Connection& connection, int segmentCount)
{
    std::vector<CrkFloatPoint> points;
    points.reserve(static_cast<std::size_t>(segmentCount) + 1);
    points.push_back(connection.start);
    for (int i = 1; i < segmentCount; ++i) {
        const float t = static_cast<float>(i) / static_cast<float>(segmentCount);
        const float s = 1 - t;
        const auto mix = [s, t](float a, float b, float c, float d) {
            return s * s * s * a + 3 * s * s * t * b + 3 * s * t * t * c + t * t * t * d;
        };
        points.push_back(
            {mix(connection.start.x, connection.firstControl.x, connection.secondControl.x, connection.end.x),
             mix(connection.start.y, connection.firstControl.y, connection.secondControl.y, connection.end.y)});
    }
    points.push_back(connection.end);
    return points;
}

}  // namespace mindmap
