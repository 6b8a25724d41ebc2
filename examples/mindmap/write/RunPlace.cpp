#include "mindmap/write/RunPlace.h"

#include "mindmap/measure/Style.h"

namespace mindmap {

RunPlace PlaceOf(const TextRun& run, const TopicShape& shape) {
    constexpr float kIconRise = 10;  // from an icon's top to the baseline of its text
    const bool isMiddle = shape.text.isCentred && !run.hasIcon;
    const bool beginsRight = shape.text.direction == Direction::RightToLeft;
    const float towardsEnd = beginsRight ? -1.0F : 1.0F;
    const float start = shape.textOrigin.x + towardsEnd * static_cast<float>(run.start);
    const float baseline = shape.textOrigin.y + static_cast<float>(run.baseline);
    return {isMiddle ? shape.bounds.x + shape.bounds.width / 2 : start, baseline,
            isMiddle                                ? Anchor::Middle
            : run.direction != shape.text.direction ? Anchor::End
                                                    : Anchor::Start,
            beginsRight ? start + kIconGap : start - kIconGap - kIconSize, baseline - kIconRise};
}

}  // namespace mindmap
