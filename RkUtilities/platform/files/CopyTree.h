#pragma once

#include "RkUtilities/platform/files/FileCalls.h"

#include <string>
#include <system_error>

/// Copying files and folders with all they hold. The rules of Files.h hold.
/// No link is followed on the way down, each step is taken relative to the folder reached, and neither the depth of a
/// tree nor the number of its entries is limited by the stack or by the descriptors of the process.
namespace rk::platform {

/// What happens to an existing destination, by its facts (links followed).
struct CopyRules {
    bool keepWritable = false;     ///< a writable file stays
    bool replaceReadOnly = false;  ///< a read-only file is replaced, a read-only folder made writable; else both stay
    bool makeWritable = false;     ///< a file that was copied becomes writable for its owner
};
enum class CopyOutcome { Copied, Stayed };
/// Copies a file, link or folder with all it holds to the path `to`. Success too when the rules let `to` stay. A file
/// appears, and replaces another file, when its copy is complete. An existing folder that does not stay is EEXIST. In a
/// folder the first failure is reported and the other entries are copied. The destination is not copied into itself.
[[nodiscard]] std::error_code CopyTree(Place from, Place to, const CopyRules& rules, CopyOutcome& outcome);
[[nodiscard]] std::error_code CopyTree(const std::string& from, const std::string& to, const CopyRules& rules,
                                       CopyOutcome& outcome);
/// Copies all that a folder holds into an existing folder, sub-folders that exist on both sides into each other.
[[nodiscard]] std::error_code CopyContents(const std::string& from, const std::string& to, const CopyRules& rules);

}  // namespace rk::platform
