#include "mindmap/write/XmlStream.h"

#include "mindmap/read/CodePoints.h"

#include <array>
#include <charconv>

namespace mindmap {

namespace {

constexpr std::size_t kPieceUnits = 1 << 16;

std::u16string_view ReferenceFor(char32_t c, Place place)
{
    switch (c) {
    case u'&':
        return u"&amp;";
    case u'<':
        return u"&lt;";
    case u'>':
        return u"&gt;";
    case u'"':
        return u"&quot;";
    case u'\r':
        return u"&#13;";
    case u'\n':
        return place == Place::Attribute ? u"&#10;" : u"";
    case u'\t':
        return place == Place::Attribute ? u"&#9;" : u"";
    case kReplacementCharacter:  // may stand for a lone surrogate
        return u"\uFFFD";
    default:
        return {};
    }
}

bool IsXmlCharacter(char32_t c)
{
    return c == u'\t' || c == u'\n' || (c >= 0x20 && c < 0xFFFE) || c > 0xFFFF;
}

template <class Number>
void Append(std::u16string& buffer, Number number)
{
    std::array<char, 40> text;
    const auto end = std::to_chars(text.data(), text.data() + text.size(), number).ptr;
    buffer.append(text.data(), end);
}

}  // namespace

XmlStream::XmlStream(const TextSink& sink) : m_sink(sink)
{
    m_buffer.reserve(kPieceUnits + kPieceUnits / 8);
}

XmlStream& XmlStream::operator<<(Color color)
{
    std::array<char16_t, 7> text = {u'#'};
    for (std::size_t i = 0; i < 6; ++i)
        text[i + 1] = u"0123456789ABCDEF"[(color.rgb >> (20 - 4 * i)) & 15];
    return *this << std::u16string_view(text.data(), text.size());
}

XmlStream& XmlStream::Text(std::u16string_view text, Place place)
{
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

void XmlStream::HandOnPieces()
{
    if (m_buffer.size() > kPieceUnits)
        HandOnAll();
}

void XmlStream::HandOnAll()
{
    m_sink(m_buffer);
    m_buffer.clear();
}

void XmlStream::AppendNumber(float number)
{
    Append(m_buffer, number);
}

void XmlStream::AppendNumber(double number)
{
    Append(m_buffer, number);
}

void XmlStream::AppendNumber(int number)
{
    Append(m_buffer, number);
}

}  // namespace mindmap
