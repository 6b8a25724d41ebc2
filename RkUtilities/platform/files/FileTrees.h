#pragma once

#include "RkUtilities/platform/files/Files.h"

#include <functional>
#include <string>
#include <string_view>
#include <system_error>

/// Folders with all they hold: list, remove, copy, move. The rules of Files.h hold.
///
/// Nothing here follows a link on the way down, each step is taken relative to the folder reached, and neither the
/// depth of a tree nor the number of its entries is limited by the stack or by the descriptors of the process.
namespace rk::platform {

enum class Visit { Continue, Stop };
/// Calls `visit` with the name and kind of each entry but "." and "..", in no order. The name is valid during the
/// call.
[[nodiscard]] std::error_code VisitFolder(const std::string& path,
                                          const std::function<Visit(std::string_view name, FileKind kind)>& visit);

/// Removes a file, a link itself, or a folder with all it holds. Stops at the first failure. "", the root folder, and
/// paths that end in "." or ".." are refused (EINVAL). What vanishes meanwhile counts as removed.
[[nodiscard]] std::error_code RemoveTree(const std::string& path);
/// Removes an empty folder or a link to one (the link itself); ENOTEMPTY, ENOTDIR otherwise.
[[nodiscard]] std::error_code RemoveEmptyFolder(const std::string& path);

/// What is done about a destination name that is taken, by the facts of what has it (links followed).
struct CopyRules {
    bool keepWritable = false;     ///< a writable file stays
    bool replaceReadOnly = false;  ///< a read-only file is replaced, a read-only folder made writable; else both stay
    bool makeWritable = false;     ///< a file that was copied becomes writable for its owner
};
enum class CopyOutcome { Copied, Stayed };
/// Copies a file, link or folder with all it holds to the path `to`. Success too when the rules let `to` stay.
///
/// A file is replaced when its copy is complete. A folder that has the name and does not stay is EEXIST. In a folder the first failure
/// is reported and the other entries are copied. The destination is not copied into itself.
[[nodiscard]] std::error_code CopyTree(const std::string& from, const std::string& to, const CopyRules& rules,
                                       CopyOutcome& outcome);
/// Copies all that a folder holds into an existing folder, sub-folders that exist on both sides into each other.
[[nodiscard]] std::error_code CopyContents(const std::string& from, const std::string& to, const CopyRules& rules);

/// Gives anything a new name that is free (else EEXIST), by copying and removing across file systems. After a failure
/// `from` is whole and there is no `to`.
[[nodiscard]] std::error_code MoveTree(const std::string& from, const std::string& to);

}  // namespace rk::platform
