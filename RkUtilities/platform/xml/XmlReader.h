#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

namespace rk::platform {

/// Larger documents, deeper elements and more declarations of attributes, which the parser looks through for each
/// element, are refused. Reading takes time and memory linear in the length.
constexpr std::size_t kLongestXmlFile = std::size_t{8} << 20;
constexpr int kDeepestXmlElement = 1000;
constexpr int kMostXmlAttributeDeclarations = 100;

/// Takes the name of an element as the document writes it, prefix included, and its text in UTF-8: that of the elements
/// in it too, white space kept, a line break as "\n", references to characters resolved. Valid during the call.
using TakeXmlChild = std::function<void(std::string_view qualifiedName, std::string_view text)>;

/// Reads an XML 1.0 document from an ordinary file and gives the children of its root element to `take`, in their
/// order. Returns why the document was refused ("line 3: mismatched tag"), "" when all of it was read and is
/// well-formed. The children before the place of a refusal have been given then.
/// - Encodings: UTF-8, UTF-16, ISO-8859-1 and US-ASCII, as the document declares. Namespaces are not looked at.
/// - Anything but an ordinary file (a folder, a pipe, a device) is refused without waiting for it; links are followed.
/// - Nothing is expanded and nothing else is opened: a document that declares an entity, or refers to one beyond the
///   five of XML and character references, is refused at once. An external document type is left alone.
/// - What `take` throws ends the reading and reaches the caller; exhausted memory throws `std::bad_alloc`.
///
/// Safe from any thread.
[[nodiscard]] std::string ReadXmlFile(const std::string& nativePath, const TakeXmlChild& take);

}  // namespace rk::platform
