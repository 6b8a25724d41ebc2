#pragma once

#include <RkUtilities/foundation/CString.h>

#include <array>
#include <charconv>
#include <concepts>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace mindmap {

/// Takes a document piece by piece.
using TextSink = std::function<void(const CString&)>;

/// Text content: shown as it is. Attribute: line breaks and tabs are written as references, which readers keep.
enum class Place { Content, Attribute };

/// A color as XML wants it.
struct Color {
    std::uint32_t rgb;
};

/// Collects an XML document and hands it on in pieces.
class XmlStream {
public:
    explicit XmlStream(const TextSink& sink);

    /// Markup is written as it stands.
    XmlStream& operator<<(std::u16string_view markup) {
        m_buffer += markup;
        return *this;
    }
    XmlStream& operator<<(Color color);
    /// The shortest text that reads back as the same number.
    template <class Number>
        requires std::same_as<Number, float> || std::same_as<Number, double> || std::same_as<Number, int>
    XmlStream& operator<<(Number number) {
        std::array<char, 40> text;
        const auto end = std::to_chars(text.data(), text.data() + text.size(), number).ptr;
        m_buffer.append(text.data(), end);
        return *this;
    }
    /// A text of any content: markup is escaped, and what XML 1.0 does not allow becomes U+FFFD.
    XmlStream& Text(std::u16string_view text, Place place);

    /// Hands on what has been collected, once it is long enough.
    void HandOnPieces();
    void HandOnAll();

private:
    const TextSink& m_sink;
    std::u16string m_buffer;
};

}  // namespace mindmap
