#pragma once

#include "RkUtilities/foundation/NativePath.h"

#include <filesystem>

namespace rk {

/// The path for `std::filesystem`, as every class of the library reads it: "~/" is the home folder; see NativePath.h.
inline std::filesystem::path ToFilesystemPath(const CString& path) { return NativePath(path); }

/// The text of a path of `std::filesystem`, names that are no UTF-8 included.
inline CString FromFilesystemPath(const std::filesystem::path& path) { return PathText(path.native()); }

}  // namespace rk
