#pragma once

#include "RkUtilities/foundation/CString.h"

#include <algorithm>
#include <cstddef>
#include <string_view>

/// The parts of a path as views into its text, and its absolute form. `CrkPathUtilities` and `SECFileSystem` state the
/// rules.
namespace rk {

constexpr bool IsSeparator(char16_t unit) { return unit == u'/' || unit == u'\\'; }

/// Where the file name starts: after the last separator.
inline std::size_t FileNameStart(std::u16string_view path) {
    const auto name = std::find_if(path.rbegin(), path.rend(), IsSeparator);
    return static_cast<std::size_t>(path.rend() - name);
}

inline std::u16string_view FileNameOf(std::u16string_view path) { return path.substr(FileNameStart(path)); }

inline std::u16string_view FolderOf(std::u16string_view path) { return path.substr(0, FileNameStart(path)); }

inline std::u16string_view ExtensionOf(std::u16string_view path) {
    std::size_t start = path.size();
    while (start > 0 && path[start - 1] != u'.' && !IsSeparator(path[start - 1]))
        --start;
    return start > 0 && path[start - 1] == u'.' ? path.substr(start) : std::u16string_view();
}

inline std::u16string_view BaseNameOf(std::u16string_view path) {
    const std::u16string_view name = FileNameOf(path);
    return name.substr(0, name.rfind(u'.'));
}

/// The path itself when it begins with "/" or "~", is empty or there is no current folder; else the current folder, "/"
/// and the path.
CString AbsolutePath(const CString& path);

}  // namespace rk
