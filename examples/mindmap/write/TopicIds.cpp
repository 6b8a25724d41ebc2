#include "mindmap/write/TopicIds.h"

#include <RkUtilities/strings/CrkStringUtilities.h>
#include <RkUtilities/xml/CrkXmlUtilities.h>

namespace mindmap {

CString TopicIds::Make(const CString& topicText) {
    constexpr int kMaximumUnits = 48;  // of the text
    const CString name = CrkXmlUtilities::StringToNCName(u"topic-" + topicText.Left(kMaximumUnits), u'_',
                                                         /*insertUnderscore=*/true);
    CString id = name;
    int& count = m_counts[name];  // stays where it is when other names are added
    while (++count > 1) {
        id = CrkStringUtilities::AppendInt(name + u"-", count);
        if (m_counts[id]++ == 0)
            break;
    }
    return id;
}

}  // namespace mindmap
