#include "mindmap/write/TopicFacts.h"

#include "mindmap/measure/Dates.h"

namespace mindmap {

TopicFacts FactsOf(const Topic& topic, const BranchSum& sum)
{
    TopicFacts facts{DateTooltip(topic.date), ShownAmount(topic, sum), ShownSum(sum), ReadLink(topic.link)};
    if (facts.sum == facts.amount || facts.sum == u"Σ " + facts.amount)
        facts.sum = CString();
    return facts;
}

}  // namespace mindmap
