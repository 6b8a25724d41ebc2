#include "RkUtilities/foundation/NativePath.h"

#include "RkUtilities/platform/files/PathBytes.h"
#include "RkUtilities/platform/files/UserFolders.h"

namespace rk {
namespace {

std::string WithHomeExpanded(std::u16string_view path) {
    std::string home = platform::HomeFolder();
    std::string rest = platform::BytesOfPath(path.substr(1));
    if (home.empty())
        return '~' + rest;
    if (home.back() == '/' && !rest.empty())
        home.pop_back();
    return home + rest;
}

}  // namespace

std::string NativePath(const CString& path) {
    const std::u16string_view text = path.View();
    if (text.find(u'\0') != std::u16string_view::npos)
        return std::string(1, '\0');
    return text == u"~" || text.starts_with(u"~/") ? WithHomeExpanded(text) : platform::BytesOfPath(text);
}

CString PathText(std::string_view nativeBytes) { return CString(platform::PathOfBytes(nativeBytes)); }

}  // namespace rk
