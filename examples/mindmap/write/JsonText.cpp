#include "mindmap/write/JsonText.h"

#include "mindmap/read/CodePoints.h"

namespace mindmap {

std::u16string JsonText(std::u16string_view text)
{
    std::u16string json = u"\"";
    for (std::size_t index = 0; index < text.size();) {
        const std::size_t begin = index;
        const char32_t c = NextCodePoint(text, index);
        if (c == u'"' || c == u'\\')
            json += {u'\\', static_cast<char16_t>(c)};
        else if (c < 0x20 || c == u'<' || c == u'>' || c == u'&')
            json += {u'\\', u'u', u'0', u'0', u"0123"[c / 16], u"0123456789abcdef"[c % 16]};
        else if (c == kReplacementCharacter)  // may stand for a lone surrogate
            json += static_cast<char16_t>(kReplacementCharacter);
        else
            json += text.substr(begin, index - begin);
    }
    return json + u'"';
}

}  // namespace mindmap
