#include "RkUtilities/paths/detail/PathNames.h"

#include "RkUtilities/foundation/NativePath.h"
#include "RkUtilities/platform/process/Environment.h"

CString rk::AbsolutePath(const CString& path) {
    const unsigned short first = path.GetAt(0);
    if (path.IsEmpty() || first == u'/' || first == u'~')
        return path;
    const std::string folder = platform::CurrentFolder();
    if (folder.empty())
        return path;
    return PathText(folder.back() == '/' ? folder : folder + '/') + path;
}
