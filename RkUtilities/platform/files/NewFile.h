#pragma once

#include "RkUtilities/platform/files/WorkFolder.h"

#include <string>
#include <system_error>

namespace rk::platform {

enum class Taken { Stays, IsReplaced };

/// A file that has no name until it is complete. A process that is killed before leaves nothing of it, or a
/// `WorkFolder` where a file system has only files with names.
class NewFile {
public:
    /// Makes the file, empty, on the file system of the folder in which `target` will stand. Its permissions are those
    /// of the process's umask.
    std::error_code Make(const std::string& target);
    [[nodiscard]] int Descriptor() const noexcept { return m_file.Descriptor(); }

    /// Gives the file its name; EEXIST when that is taken and `Taken::Stays`.
    std::error_code Publish(Place target, Taken taken);

private:
    FileHandle m_file;
    WorkFolder m_work;  // made only for a file that needs a name; holds the file then
};

/// Puts the entry that a work folder holds in its place.
std::error_code PutInPlace(Place item, Place target, Taken taken);

// --- For good: complete also after a power cut

/// Publishes a file and waits until it and its name are on the disk. A file that is replaced passes on its permissions;
/// a link is followed, and a link that leads nowhere is ENOENT.
[[nodiscard]] std::error_code PublishForGood(NewFile& file, const std::string& target, Taken taken);

/// Puts an ordinary file in the place of another in the same way. Both have to be on one file system (else EXDEV).
[[nodiscard]] std::error_code ReplaceForGood(const std::string& temporary, const std::string& target);

}  // namespace rk::platform
