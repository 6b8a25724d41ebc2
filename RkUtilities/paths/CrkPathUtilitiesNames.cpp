#include "RkUtilities/foundation/detail/TextBuilder.h"
#include "RkUtilities/paths/CrkPathUtilities.h"

#include <algorithm>
#include <string_view>

namespace {

constexpr std::u16string_view kInvalidCharacters = u"/:";
constexpr char16_t kReplacement = u'.';
constexpr char16_t kQuote = u'"';

CString WithExtension(std::u16string_view name, std::u16string_view extension) {
    const std::size_t dotUnits = !extension.empty() && extension.front() != u'.' ? 1 : 0;
    return rk::TextBuilder::Written(name.size() + dotUnits + extension.size(), [&](char16_t* units) {
        std::copy(name.begin(), name.end(), units);
        std::fill_n(units + name.size(), dotUnits, u'.');
        std::copy(extension.begin(), extension.end(), units + name.size() + dotUnits);
    });
}

}  // namespace

CString CrkPathUtilities::AddExtension(const CString& name, const CString& extension) {
    return WithExtension(name, extension);
}

CString CrkPathUtilities::ReplaceExtension(const CString& name, const CString& extension) {
    const std::u16string_view text = name;
    return WithExtension(text.substr(0, text.rfind(u'.')), extension);
}

bool CrkPathUtilities::HasExtension(const CString& name, const CString& extension) {
    const int start = name.GetLength() - extension.GetLength();
    return start >= 0 && name.FindNoCase(extension, start) == start;
}

bool CrkPathUtilities::DoesFilenameUseOnlyValidCharacters(const CString& name) {
    return name.View().find_first_of(kInvalidCharacters) == std::u16string_view::npos;
}

void CrkPathUtilities::RemoveInvalidCharsFromFilename(CString& name, unsigned short) {
    name.RemoveLineFeeds();
    RemoveCharsFromFilename(name, kInvalidCharacters, kReplacement);
}

void CrkPathUtilities::RemoveCharsFromFilename(CString& name, const CString& characters, unsigned short replacement) {
    // NOLINTNEXTLINE(performance-unnecessary-copy-initialization): it may be the name itself
    const CString set = characters;
    for (int i = name.FindOneOf(set); i >= 0; i = name.FindOneOf(set, i + 1))
        name.SetAt(i, replacement);
}

bool CrkPathUtilities::UnquotePath(CString& path) {
    const int length = path.GetLength();
    if (length < 2 || path.GetAt(0) != kQuote || path.GetAt(length - 1) != kQuote)
        return false;
    path = path.Mid(1, length - 2);  // one pair only: quotes inside belong to the name
    return true;
}
