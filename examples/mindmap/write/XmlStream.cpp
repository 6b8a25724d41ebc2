#include "mindmap/write/XmlStream.h"

#include "mindmap/read/CodePoints.h"

namespace mindmap {

namespace {

constexpr std::size_t kPieceUnits = 1 << 16;

struct Reference {
    char32_t character;
    std::u16string_view text;
    bool isForAttributes = false;  // alone
};
constexpr Reference kReferences[] = {
    {u'&', u"&amp;"},       {u'<', u"&lt;"},
    {u'>', u"&gt;"},        {u'"', u"&quot;"},
    {u'\r', u"&#13;"},      {u'\n', u"&#10;", true},
    {u'\t', u"&#9;", true}, {kReplacementCharacter, u"\uFFFD"},  // may stand for a lone surrogate
};

std::u16string_view ReferenceFor(char32_t c, Place place) {
    for (const Reference& reference : kReferences)
        if (reference.character == c && (place == Place::Attribute || !reference.isForAttributes))
            return reference.text;
    return {};
}

bool IsXmlCharacter(char32_t c) { return c == u'\t' || c == u'\n' || (c >= 0x20 && c < 0xFFFE) || c > 0xFFFF; }

}  // namespace

XmlStream::XmlStream(const TextSink& sink) : m_sink(sink) { m_buffer.reserve(kPieceUnits + kPieceUnits / 8); }

XmlStream& XmlStream::operator<<(Color color) {
    std::array<char16_t, 7> text = {u'#'};
    for (std::size_t i = 0; i < 6; ++i)
        text[i + 1] = u"0123456789ABCDEF"[(color.rgb >> (20 - 4 * i)) & 15];
    return *this << std::u16string_view(text.data(), text.size());
}

XmlStream& XmlStream::Text(std::u16string_view text, Place place) {
    for (std::size_t index = 0; index < text.size();) {
        const std::size_t begin = index;
        const char32_t c = NextCodePoint(text, index);
        if (const std::u16string_view reference = ReferenceFor(c, place); !reference.empty())
            m_buffer += reference;
        else if (IsXmlCharacter(c))
            m_buffer += text.substr(begin, index - begin);
        else
            m_buffer += static_cast<char16_t>(kReplacementCharacter);
    }
    return *this;
}

void XmlStream::HandOnPieces() {
    if (m_buffer.size() > kPieceUnits)
        HandOnAll();
}

void XmlStream::HandOnAll() {
    m_sink(m_buffer);
    m_buffer.clear();
}

}  // namespace mindmap
