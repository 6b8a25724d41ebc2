#include "mindmap/write/TopicIds.h"

#include <RkUtilities/strings/CrkStringUtilities.h>
#include <RkUtilities/xml/CrkXmlUtilities.h>

namespace mindmap {

int& TopicIds::CountOf(const CString& id)
{
    if (m_counts.Lookup(id) == nullptr)
        m_counts.SetAt(id, 0);
    return m_counts.Lookup(id)->m_value;
}

CString TopicIds::Make(const CString& topicText)
{
    constexpr int kMaximumUnits = 48;  // of the text
    const CString name = CrkXmlUtilities::StringToNCName(u"topic-" + topicText.Left(kMaximumUnits), u'_',
                                                         /*insertUnderscore=*/true);
    CString id = name;
    int& count = CountOf(name);  // stays where it is when others come
    while (++count > 1) {
        id = CrkStringUtilities::AppendInt(name + u"-", count);
        if (CountOf(id)++ == 0)
            break;
    }
    return id;
}

}  // namespace mindmap
