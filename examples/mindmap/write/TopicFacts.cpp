#include "mindmap/write/TopicFacts.h"

#include "mindmap/measure/Dates.h"
#include "mindmap/read/CleanText.h"

#include <RkUtilities/strings/CrkStringUtilities.h>

#include <array>

namespace mindmap {

TopicFacts FactsOf(const Topic& topic, const BranchSum& sum) {
    TopicFacts facts{DateTooltip(topic.date), ShownAmount(topic, sum), ShownSum(sum), ReadLink(topic.link)};
    if (facts.sum == facts.amount || facts.sum == u"Σ " + facts.amount)
        facts.sum = CString();
    return facts;
}

CString ComposeTooltip(const Topic& topic, const BranchSum& sum) {
    const TopicFacts facts = FactsOf(topic, sum);
    std::array<CString, 8> lines = {topic.text, topic.note,         facts.dates,           facts.amount,
                                    facts.sum,  facts.link.address, facts.link.parameters, topic.more};
    for (CString& line : lines)
        line = ShortenForTooltip(line);
    return WrapTooltip(CrkStringUtilities::Combine(u"\n", lines.data(), lines.size(), /*skipEmptyParts=*/true));
}

}  // namespace mindmap
