#pragma once

#include "RkUtilities/platform/files/FileCalls.h"

#include <string>
#include <system_error>

namespace rk::platform {

/// A hidden folder for an incomplete file or tree, beside its later place. Only the user may look into the folder and
/// change it. The object's end removes the folder with all that it still holds. A killed process leaves its folder, and
/// the next process that works at the same place removes it; a lock (`flock`) on the folder tells whether its process
/// still lives. Where a file system has no such locks, the folder stays.
class WorkFolder {
public:
    WorkFolder() = default;
    ~WorkFolder();
    WorkFolder& operator=(WorkFolder&&) = default;  // for an object without a folder

    std::error_code Make(Place target);
    explicit operator bool() const noexcept { return static_cast<bool>(m_folder); }
    /// The name to make something under; the folder holds nothing else.
    [[nodiscard]] Place Item() const noexcept { return {m_folder.Descriptor(), "item"}; }

private:
    std::error_code Take(Place place);

    std::string m_name;  // from inside the folder: paths lead elsewhere after `chdir`, and a neighbour may stand there
    FileHandle m_folder;
};

}  // namespace rk::platform
