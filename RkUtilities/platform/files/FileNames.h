#pragma once

#include <string>
#include <system_error>

/// Names of files and folders: make, remove, change. The rules of Files.h hold.
namespace rk::platform {

struct Place;

/// Makes a folder, with all permissions that the process's umask allows.
[[nodiscard]] std::error_code MakeFolder(const std::string& path);
/// Makes a folder and all missing folders above it. EEXIST when it is there already.
[[nodiscard]] std::error_code MakeFolders(const std::string& path);
/// Removes anything but a folder (EISDIR); a link itself.
[[nodiscard]] std::error_code RemoveFile(const std::string& path);
/// Gives a new name that is free (else EEXIST), within one file system (else EXDEV). A file system that cannot promise
/// this is asked just before.
[[nodiscard]] std::error_code Rename(const std::string& from, const std::string& to);
/// The same between open folders.
[[nodiscard]] std::error_code Rename(Place from, Place to) noexcept;
/// The same with a name that may be taken: the file that has it is replaced.
[[nodiscard]] std::error_code RenameOver(const std::string& from, const std::string& to);

}  // namespace rk::platform
