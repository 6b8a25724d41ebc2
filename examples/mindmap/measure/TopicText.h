#pragma once

#include "mindmap/measure/BranchSums.h"
#include "mindmap/measure/TextMeasure.h"

#include <vector>

namespace mindmap {

enum class TextRole {
    Title,
    Note,
    Date,
    Amount,
    Link,
    More,  ///< goes on with what stands above it: the weeks of dates, the parameters of a link
};

/// A piece of a topic's text on one line.
struct TextRun {
    CString text;
    TextRole role;
    Direction direction;
    int start;     ///< from the side where the block's lines begin: the left side, or the right side in a
                   ///< right-to-left block
    int baseline;  ///< from the block's top
    int width;     ///< at most
    bool hasIcon;  ///< a sign for the role stands before the text, kIconSize wide and kIconGap away
};

/// The text of a topic, broken into lines and put in its places: the title, then note, date and amount, and link; dates
/// and figures in the user's locale.
struct TopicText {
    std::vector<TextRun> runs;
    int width = 0;
    int height = 0;
    Direction direction = Direction::LeftToRight;  ///< the title's
    bool isCentred = false;                        ///< each line is centred in the block, and `start` leads to it
    bool isShortened = false;                      ///< something of it had to be cut off
};

TopicText ComposeText(const Topic& topic, const BranchSum& sum);

}  // namespace mindmap
