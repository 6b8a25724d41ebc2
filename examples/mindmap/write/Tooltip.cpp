#include "mindmap/write/Tooltip.h"

#include "mindmap/measure/Dates.h"
#include "mindmap/read/CleanText.h"
#include "mindmap/read/Link.h"

#include <RkUtilities/strings/CrkStringUtilities.h>

#include <array>

namespace mindmap {

CString ComposeTooltip(const Topic& topic, const BranchSum& sum)
{
    const CString amount = ShownAmount(topic, sum);
    const CString branchSum = ShownSum(sum);
    const bool isOwnTheSum = branchSum == amount || branchSum == u"Σ " + amount;
    const Link link = ReadLink(topic.link);
    std::array<CString, 7> lines = {
        topic.text,   topic.note,     DateTooltip(topic.date), amount, isOwnTheSum ? CString() : branchSum,
        link.address, link.parameters};
    for (CString& line : lines)
        line = ShortenForTooltip(line);
    return WrapTooltip(CrkStringUtilities::Combine(u"\n", lines.data(), lines.size(), /*skipEmptyParts=*/true));
}

}  // namespace mindmap
