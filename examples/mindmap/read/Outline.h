#pragma once

#include "mindmap/read/Figure.h"

#include <vector>

namespace mindmap {

/// One topic as it was written, cleaned of what no text shows: what an outline says of it, nothing of how it is drawn.
struct Topic {
    CString text;
    CString note;
    CString link;                  ///< as written, see ReadLink
    CString date;                  ///< as written, see Dates.h
    CString amount;                ///< as written: an amount or a percentage
    CString more;                  ///< what else the outline says of it, as lines "name: value"
    std::optional<Figure> figure;  ///< what the amount says, if it can be read
    int parent = -1;
    int level = 0;  ///< 0 for the central topic
    int line = 0;   ///< where it begins in the outline, from 1; 0 when it has no line of its own
};

/// A tree of topics in the order of the outline.
///
/// A parent stands before its children and a topic's descendants follow it without a gap, so a walk over the vector
/// from front to back meets parents first, and a walk from back to front meets children first. Nothing here needs
/// recursion, however deep the outline is.
struct Outline {
    std::vector<Topic> topics;  ///< the first is the central topic
    int leftOutCount = 0;       ///< topics that the outline itself marks as commented out
};

/// Why an outline cannot be drawn. `line` is counted from 1; 0 when the fault has no line.
struct OutlineError {
    int line;
    CString reason;
};

inline constexpr int kMaximumTopicCount = 1'000'000;
inline constexpr int kMaximumOutlineBytes = 64 << 20;

/// Adds topics in the order of the outline.
///
/// Readers hand over topics under a root that no outline has; `Finish` makes the map's centre of it.
class OutlineBuilder {
public:
    OutlineBuilder();

    /// Adds a topic below another topic (0 is the root) and returns its index.
    ///
    /// @throws OutlineError above kMaximumTopicCount topics.
    int Add(int parent, Topic topic);
    Topic& At(int index) { return m_outline.topics[static_cast<std::size_t>(index)]; }
    void CountLeftOut() { ++m_outline.leftOutCount; }

    /// The outline, with clean texts and notes and its figures read. A single top-level topic that has topics below it
    /// is the centre; otherwise the centre is a topic with the text `title`.
    ///
    /// @throws OutlineError when there is no topic.
    Outline Finish(const CString& title);

private:
    void LetTheOneTopicBeTheCentre();

    Outline m_outline;
    int m_topLevelCount = 0;
};

}  // namespace mindmap
