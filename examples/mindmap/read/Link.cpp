#include "mindmap/read/Link.h"

#include <RkUtilities/strings/CrkStringUtilities.h>

#include <array>
#include <string>
#include <string_view>
#include <vector>

namespace mindmap {

namespace {

constexpr std::string_view kHexDigits = "0123456789ABCDEF";

int HexValue(char c) {
    const char upper = c >= 'a' && c <= 'f' ? static_cast<char>(c - 'a' + 'A') : c;
    const std::size_t value = kHexDigits.find(upper);
    return value == std::string_view::npos ? -1 : static_cast<int>(value);
}

/// The byte that is written as "%41" at `index`; -1 when no byte is written there so.
int EncodedByteAt(std::string_view text, std::size_t index) {
    if (text[index] != '%' || index + 2 >= text.size())
        return -1;
    const int high = HexValue(text[index + 1]);
    const int low = HexValue(text[index + 2]);
    return high < 0 || low < 0 ? -1 : high * 16 + low;
}

CString Decoded(const CString& text) {
    const std::string encoded = text.ToUtf8();
    std::string bytes;
    for (std::size_t i = 0; i < encoded.size(); ++i) {
        const int byte = EncodedByteAt(encoded, i);
        bytes += byte < 0 ? encoded[i] : static_cast<char>(byte);
        i += byte < 0 ? 0 : 2;
    }
    return bytes;
}

/// The address with everything encoded that no URI holds; what is encoded already stays.
CString Encoded(const CString& address) {
    constexpr std::string_view kKept = "-._~:/?#[]@!$&'()*+,;=";
    const std::string bytes = address.ToUtf8();
    std::string encoded;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        const char c = bytes[i];
        const bool isAlphanumeric = (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
        if (isAlphanumeric || kKept.find(c) != std::string_view::npos || EncodedByteAt(bytes, i) >= 0) {
            encoded += c;
            continue;
        }
        const auto byte = static_cast<unsigned char>(c);
        encoded += {'%', kHexDigits[byte / 16], kHexDigits[byte % 16]};
    }
    return encoded;
}

/// "https:" of "https://example.org"; "" when there is no scheme (RFC 3986, section 3.1).
CString SchemeOf(const CString& link) {
    const int colon = link.Find(u":");
    for (int i = 0; i < colon; ++i) {
        const unsigned short c = link.GetAt(i);
        const bool isLetter = (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z');
        if (!isLetter && (i == 0 || !((c >= u'0' && c <= u'9') || c == u'+' || c == u'-')))
            return {};
    }
    return link.Left(colon + 1);
}

/// With its scheme, when it may be followed; else "".
CString Followable(const CString& link, const CString& scheme) {
    constexpr std::array<std::u16string_view, 4> kSchemes = {u"https:", u"http:", u"mailto:", u"file:"};
    for (const std::u16string_view followed : kSchemes)
        if (scheme.CompareNoCase(followed) == 0)
            return link;
    if (!scheme.IsEmpty())
        return {};
    if (CrkStringUtilities::BeginsWith(link, u"www.", /*ignoreCase=*/true))
        return CrkStringUtilities::GetUrlString(link, u"https://%s");
    const bool isMail = CrkStringUtilities::IsValidEmail(link) && link.FindOneOf(u" /%") < 0;
    return isMail ? CrkStringUtilities::GetUrlString(link, u"mailto:%s") : link;
}

/// Whether a query or fragment is made of "name=value" alone. The library pairs other parts wrongly: after an empty
/// value it takes the next name for the value.
bool HoldsPairs(const CString& part) {
    int pieceCount = 0;
    int position = 0;
    for (CString piece = part.Tokenize(u"&", position); !piece.IsEmpty(); piece = part.Tokenize(u"&", position)) {
        const int sign = piece.Find(u"=");
        if (sign < 1 || sign + 1 == piece.GetLength() || piece.Find(u"=", sign + 1) >= 0)
            return false;
        ++pieceCount;
    }
    return pieceCount > 0;
}

/// Takes what begins with `sign` off the address: parameters go into the map, anything else is returned.
CString TakeOff(CString& address, const CString& sign, CrkStringUtilities::ParameterMap& parameters) {
    const int at = address.Find(sign);
    if (at < 0)
        return {};
    CString part = address.Mid(at);
    address = address.Left(at);
    if (!HoldsPairs(part.Mid(1)))
        return part;
    CrkStringUtilities::ExtractUrlParameters(u"#" + part.Mid(1), parameters);
    return {};
}

CString Told(const CrkStringUtilities::ParameterMap& parameters) {
    CAtlList<CString> names;
    for (const auto& [name, value] : parameters)
        names.AddTail(name);
    CrkStringUtilities::SortStringList(names, /*ascending=*/true);
    std::vector<CString> pairs;
    for (const CString& name : names) {
        CString value = parameters.Lookup(name)->m_value;
        value.Replace(u"+", u" ");
        pairs.push_back(Decoded(name) + u": " + Decoded(value));
    }
    return CrkStringUtilities::Combine(u" · ", pairs.data(), pairs.size(), /*skipEmptyParts=*/false);
}

}  // namespace

Link ReadLink(const CString& written) {
    CString address = written;
    address.Trim();
    const CString scheme = SchemeOf(address);
    Link link;
    link.target = Encoded(Followable(address, scheme));
    if (link.target.IsEmpty()) {
        link.address = address;
        return link;
    }
    address = CrkStringUtilities::RemovePrefix(address.Mid(scheme.GetLength()), u"//");
    CrkStringUtilities::ParameterMap parameters;
    const CString fragment = TakeOff(address, u"#", parameters);
    const CString query = TakeOff(address, u"?", parameters);
    if (address.GetLength() > 1 && CrkStringUtilities::EndsWith(address, u"/", /*ignoreCase=*/false))
        address = address.Left(address.GetLength() - 1);
    link.address = Decoded(address + query + fragment);
    link.parameters = Told(parameters);
    return link;
}

}  // namespace mindmap
