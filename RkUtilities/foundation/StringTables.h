#pragma once

#include "RkUtilities/RkExport.h"

#include <string_view>

namespace rk {

/// Names the application's own string tables for `CString::LoadString`: a folder of compiled ICU resource files
/// (root.res, en.res, de.res ...), as `genrb` makes them. "" names none. The folder is looked into by the next call
/// that loads a text.
///
/// @param folder  a native path in UTF-8; "~/" is not expanded.
/// Safe from any thread.
RK_EXPORT void SetStringTables(std::string_view folder);

}  // namespace rk

/// The names by which existing calling code knows them.
namespace rk::platform {
using rk::SetStringTables;
}  // namespace rk::platform
