#include "RkUtilities/platform/files/FileCalls.h"
#include "RkUtilities/platform/files/FileTrees.h"

#include <fcntl.h>
#include <unistd.h>

namespace rk::platform {

std::error_code MoveTree(const std::string& from, const std::string& to)
{
    const std::error_code error = Rename(from, to);
    if (error != std::errc::cross_device_link)
        return error;
    // What may not leave its folder is not copied in the first place.
    const std::string folder = FolderPart(from);
    if (faccessat(AT_FDCWD, folder.empty() ? "." : folder.c_str(), W_OK | X_OK, AT_EACCESS) != 0)
        return LastError();
    const std::string copy = TemporaryNeighbour(to);
    CopyOutcome outcome{};
    std::error_code failure = CopyTree(from, copy, {}, outcome);
    if (!failure)
        failure = Rename(copy, WithoutClosingSlashes(to));
    if (failure) {
        (void)RemoveTree(copy);
        return failure;
    }
    return RemoveTree(from);
}

}  // namespace rk::platform
