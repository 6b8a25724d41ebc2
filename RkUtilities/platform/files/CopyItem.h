#pragma once

#include "RkUtilities/platform/files/FileTrees.h"

#include <sys/stat.h>
#include <system_error>

/// The steps of copying a tree: one entry that is no folder, and the rules on names that are taken.
namespace rk::platform {

/// A name as system calls take it: relative to an open folder, or a path when that is AT_FDCWD.
struct Place {
    int folder;
    const char* name;
};

/// The kind of what stands at a place, links not followed.
std::error_code KindAt(Place place, FileKind& kind);

/// Gives a copy its permissions and times, as far as its file system keeps them: a stick without permissions takes
/// files too.
void SetPermissionsAndTimes(int descriptor, const struct stat& source, mode_t extraPermissions);

/// Copies an ordinary file, a link as a link, or makes a pipe, socket or device anew. EEXIST when the name is taken.
std::error_code CopyItem(Place from, Place to, FileKind kind, mode_t extraPermissions);
/// The same over a name that is taken, once the copy is complete.
std::error_code ReplaceWithCopy(Place from, Place to, FileKind kind, mode_t extraPermissions);

enum class Decision { Free, Stay, Replace, Folder };
/// What the rules say about a destination name. Makes what is read-only writable where they want that.
std::error_code Decide(Place to, const CopyRules& rules, Decision& decision);

}  // namespace rk::platform
