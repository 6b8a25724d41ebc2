#pragma once

#include "RkUtilities/RkExport.h"

#include <string_view>

namespace rk {

/// Names the application's own string tables for `CString::LoadString`: a folder of compiled ICU resource files
/// (root.res, en.res, de.res ...), as `genrb` makes them; "" takes the name back.
///
/// @param folder  a native path in UTF-8 that begins with "/" or "."; "~/" is not expanded.
/// @return whether ICU can read the tables for the user's language there; false when they are missing, damaged, or
///         in the byte order of other processors (`icupkg -tb` and `-tl` change it). The folder is named all the same.
/// Throws `std::bad_alloc`; the folder may be named then. Safe from any thread.
RK_EXPORT bool SetStringTables(std::string_view folder);

}  // namespace rk

/// The names by which existing calling code knows them.
namespace rk::platform {
using rk::SetStringTables;
}  // namespace rk::platform
