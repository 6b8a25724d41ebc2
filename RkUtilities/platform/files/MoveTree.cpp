#include "RkUtilities/platform/files/MoveTree.h"

#include "RkUtilities/platform/files/CopyTree.h"
#include "RkUtilities/platform/files/FileNames.h"
#include "RkUtilities/platform/files/NewFile.h"
#include "RkUtilities/platform/files/RemoveTree.h"
#include "RkUtilities/platform/files/WorkFolder.h"

#include <fcntl.h>
#include <unistd.h>

namespace rk::platform {
std::error_code MoveTree(const std::string& from, const std::string& to) {
    std::error_code error = Rename(from, to);
    if (error != std::errc::cross_device_link)
        return error;
    // What may not leave its folder is not copied in the first place.
    const std::string folder = FolderPart(from);
    if (faccessat(AT_FDCWD, folder.empty() ? "." : folder.c_str(), W_OK | X_OK, AT_EACCESS) != 0)
        return LastError();
    const std::string source = WithoutClosingSlashes(from), target = WithoutClosingSlashes(to);
    const Place sourcePlace{AT_FDCWD, source.c_str()}, targetPlace{AT_FDCWD, target.c_str()};
    WorkFolder work;
    CopyOutcome outcome{};
    error = work.Make(targetPlace);
    if (!error)
        error = CopyTree(sourcePlace, work.Item(), {}, outcome);
    if (!error)
        error = Outcome(syncfs(work.Item().folder));
    if (!error)
        error = PutInPlace(work.Item(), targetPlace, Taken::Stays);
    return error ? error : RemoveTree(sourcePlace);
}

}  // namespace rk::platform
