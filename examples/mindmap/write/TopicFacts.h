#pragma once

#include "mindmap/measure/BranchSums.h"
#include "mindmap/read/Link.h"

namespace mindmap {

/// All that is known of a topic in the user's locale, whole, beside its text and note. "" for a missing fact.
struct TopicFacts {
    CString dates;   ///< in words, and the weeks they fall into (DateTooltip)
    CString amount;  ///< its own, or the sum of its branch
    CString sum;     ///< of its branch, where the amount differs from it
    Link link;
};

TopicFacts FactsOf(const Topic& topic, const BranchSum& sum);

/// The facts below the topic's text and note, cleaned and wrapped (WrapTooltip).
CString ComposeTooltip(const Topic& topic, const BranchSum& sum);

}  // namespace mindmap
