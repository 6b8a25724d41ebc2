#pragma once

#include "rklog/InputFile.h"

#include <string>
#include <vector>

namespace rklog {

/// The files of a log folder in the order in which they were written: backups first, the active file last.
///
/// Backups are the other ".xml" files there with an entry near their start. A backup is renamed after its last entry,
/// so the time of its last change tells its place; of equal times the name decides.
/// @throws std::system_error  a folder that cannot be read
[[nodiscard]] std::vector<std::string> FilesOfFolder(const std::string& folder);

/// The files behind an argument: those of a folder, or the file itself; "-" is standard input.
[[nodiscard]] std::vector<std::string> FilesOf(const std::string& path);

/// The path of a folder's active file.
[[nodiscard]] std::string ActiveFileOf(const std::string& folder);

}  // namespace rklog
