#include "RkUtilities/foundation/NativePath.h"
#include "RkUtilities/paths/CrkPathUtilities.h"
#include "RkUtilities/platform/files/TemporaryFolder.h"

#include <string>
#include <system_error>

CString CrkPathUtilities::GetTempFolder() {
    // Never destroyed, since other objects may ask while the process ends.
    static const CString* const folder = new CString(
        GetAbsolutePath(NormalizedPath(rk::PathText(rk::platform::MakeTemporaryFolder()), StripTrailingChar)));
    return *folder;
}

CString CrkPathUtilities::GetTempFilename(const CString& prefix) {
    const CString path = GetTempFolder() + u'/' + prefix;
    std::error_code error;
    const std::string file = rk::platform::MakeTemporaryFile(rk::NativePath(path), error);
    return error ? path + u"XXXXXXXX" : rk::PathText(file);
}
