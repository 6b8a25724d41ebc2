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
    if (const std::error_code error = Rename(from, to); error != std::errc::cross_device_link)
        return error;
    // A tree that may not leave its folder is not copied.
    if (faccessat(AT_FDCWD, FolderHolding(from).c_str(), W_OK | X_OK, AT_EACCESS) != 0)
        return LastError();
    const std::string source = WithoutClosingSlashes(from), target = WithoutClosingSlashes(to);
    const Place sourcePlace = PlaceOf(source), targetPlace = PlaceOf(target);
    WorkFolder work;
    CopyOutcome outcome{};
    return FirstFailure(
        [&] { return work.Make(targetPlace); }, [&] { return CopyTree(sourcePlace, work.Item(), {}, outcome); },
        [&] { return Outcome(syncfs(work.Item().folder)); },
        [&] { return PutInPlace(work.Item(), targetPlace, Taken::Stays); }, [&] { return RemoveTree(sourcePlace); });
}

}  // namespace rk::platform
