#pragma once

#include "RkUtilities/platform/files/CopyTree.h"
#include "RkUtilities/platform/files/FileFacts.h"
#include "RkUtilities/platform/files/NewFile.h"

#include <sys/stat.h>
#include <system_error>

/// The steps of copying a tree: an entry that is no folder, and the rules on names that are taken.
namespace rk::platform {

/// The kind of what stands at a place, links not followed.
std::error_code KindAt(Place place, FileKind& kind);

/// Gives a copy its permissions and times, as far as its file system keeps them.
void SetPermissionsAndTimes(int descriptor, const struct stat& source, mode_t extraPermissions);

/// Copies an ordinary file, a link as a link, or makes a pipe, socket or device anew. EEXIST when the name is taken. A
/// file grows under its name, so no other process may see that name.
std::error_code CopyItem(Place from, Place to, FileKind kind, mode_t extraPermissions);

/// `ReadOnlyFolder` is a folder that the rules leave read-only.
enum class Decision { Free, Stay, Replace, Folder, ReadOnlyFolder };
/// What the rules say about a destination name. Makes a read-only entry writable where they want that.
std::error_code Decide(Place to, const CopyRules& rules, Decision& decision);

}  // namespace rk::platform
