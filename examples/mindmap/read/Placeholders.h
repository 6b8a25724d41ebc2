#pragma once

#include <RkUtilities/foundation/CString.h>

namespace mindmap {

/// The path with each placeholder "%NAME%" replaced by the environment variable's value
/// (`CrkStringUtilities::ReplaceEnvironmentVariables`): "%HOME%/maps/plan.svg".
///
/// A path that names a variable which is not set stays as it is: "50%-100%.svg" is the name of a file. So does a
/// text that is too long for a path.
CString ExpandPlaceholders(const CString& path);

}  // namespace mindmap
