#include "mindmap/read/Placeholders.h"

#include <RkUtilities/strings/CrkStringUtilities.h>

namespace mindmap {

namespace {

constexpr int kMaximumPathUnits = 4096;  // no file has a longer path

bool IsSet(CString placeholder) {
    placeholder.Remove(u'%');
    CString value;
    value.GetEnvironmentVariable(placeholder);
    return !value.IsEmpty();
}

}  // namespace

CString ExpandPlaceholders(const CString& path) {
    if (path.GetLength() > kMaximumPathUnits)
        return path;
    CString placeholder;
    CString rest = path;
    for (int at = 0; (at = CrkStringUtilities::FindEnvironmentVariable(rest, &placeholder)) >= 0;) {
        if (!IsSet(placeholder))
            return path;
        rest = rest.Mid(at + placeholder.GetLength());
    }
    CString expanded = path;
    CrkStringUtilities::ReplaceEnvironmentVariables(&expanded);
    return expanded;
}

}  // namespace mindmap
