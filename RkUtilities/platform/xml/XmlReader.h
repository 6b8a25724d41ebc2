#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace rk::platform {

/// Receives what stands in an XML document, in its order. Names and texts are UTF-8, valid during the call.
class XmlReceiver {
public:
    virtual ~XmlReceiver() = default;
    /// An element begins. The name stands as the document writes it, prefix included; attributes are not reported.
    virtual void ElementBegins(std::string_view qualifiedName) = 0;
    /// A piece of text of the innermost open element; a text may come in several pieces. White space is kept, a line
    /// break is "\n", references to characters are resolved.
    virtual void Text(std::string_view piece) = 0;
    virtual void ElementEnds() = 0;  ///< The innermost open element ends.
};

/// Larger documents, deeper elements and more declarations of attributes, which the parser looks through for each
/// element, are refused. Reading takes time and memory linear in the length.
constexpr std::size_t kLongestXmlFile = std::size_t{8} << 20;
constexpr int kDeepestXmlElement = 1000;
constexpr int kMostXmlAttributeDeclarations = 100;

/// Reads an XML 1.0 document from an ordinary file; returns why it was refused ("line 3: mismatched tag"), "" when all
/// of it was read and is well-formed.
/// The receiver may have been told the beginning of a document that is refused later.
/// - Encodings: UTF-8, UTF-16, ISO-8859-1 and US-ASCII, as the document declares. Namespaces are not looked at.
/// - Anything but an ordinary file (a folder, a pipe, a device) is refused without waiting for it; links are followed.
/// - Nothing is expanded and nothing else is opened: a document that declares an entity, or refers to one beyond the
///   five of XML and character references, is refused there and then. An external document type is left alone.
/// - What the receiver throws ends the reading and reaches the caller; exhausted memory throws `std::bad_alloc`.
///
/// Safe from any thread.
[[nodiscard]] std::string ReadXmlFile(const std::string& nativePath, XmlReceiver& receiver);

}  // namespace rk::platform
