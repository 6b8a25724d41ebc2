#include "mindmap/read/Outline.h"

#include "mindmap/read/CleanText.h"

#include <utility>

namespace mindmap {

OutlineBuilder::OutlineBuilder() { m_outline.topics.emplace_back(); }

int OutlineBuilder::Add(int parent, Topic topic) {
    const int index = static_cast<int>(m_outline.topics.size());
    if (index > kMaximumTopicCount)
        throw OutlineError{topic.line, u"more than 1,000,000 topics"};
    topic.parent = parent;
    topic.level = At(parent).level + 1;
    if (parent == 0)
        ++m_topLevelCount;
    m_outline.topics.push_back(std::move(topic));
    return index;
}

Outline OutlineBuilder::Finish(const CString& title) {
    std::vector<Topic>& topics = m_outline.topics;
    if (topics.size() == 1)
        throw OutlineError{0, u"the outline has no topic"};
    if (m_topLevelCount > 1 || topics.size() == 2)
        topics.front().text = title;
    else
        LetTheOneTopicBeTheCentre();
    for (Topic& topic : topics) {
        topic.text = CleanTopicText(topic.text);
        topic.note = CleanNote(topic.note);
        topic.more = CleanNote(topic.more);
        topic.figure = ReadFigure(topic.amount);
    }
    return std::move(m_outline);
}

void OutlineBuilder::LetTheOneTopicBeTheCentre() {
    m_outline.topics.erase(m_outline.topics.begin());
    for (Topic& topic : m_outline.topics) {
        --topic.parent;
        --topic.level;
    }
}

}  // namespace mindmap
