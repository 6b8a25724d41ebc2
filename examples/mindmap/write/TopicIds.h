#pragma once

#include <RkUtilities/foundation/CAtlMap.h>
#include <RkUtilities/foundation/CString.h>

namespace mindmap {

/// Makes the XML ids of a map: "topic-" and the topic's text, as much of it as an XML name may hold. All ids of one
/// object differ, and no other kind of element has such an id.
///
///     "Crew change"  ->  "topic-Crew_change"     a second  ->  "topic-Crew_change-2"
class TopicIds {
public:
    CString Make(const CString& topicText);

private:
    CAtlMap<CString, int, CStringElementTraits<CString>> m_counts;  // how often each id was asked for
};

}  // namespace mindmap
