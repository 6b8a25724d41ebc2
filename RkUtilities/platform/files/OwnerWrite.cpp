#include "RkUtilities/platform/files/OwnerWrite.h"

#include "RkUtilities/platform/files/FileCalls.h"

#include <fcntl.h>
#include <sys/stat.h>

namespace rk::platform {
namespace {

constexpr mode_t kPermissions = S_ISUID | S_ISGID | S_ISVTX | S_IRWXU | S_IRWXG | S_IRWXO;

bool ChangeOwnerWriteOf(int descriptor, OwnerWrite wanted, std::error_code& error)
{
    struct stat facts {};
    const auto isAsWanted = [&facts, wanted] {
        return ((facts.st_mode & S_IWUSR) != 0) == (wanted == OwnerWrite::Allow);
    };
    if (fstat(descriptor, &facts) != 0 || S_ISLNK(facts.st_mode) || isAsWanted())
        return false;
    // fchmod refuses a descriptor that only names a file; the link to the same descriptor does not.
    const std::string sameFile = "/proc/self/fd/" + std::to_string(descriptor);
    if (chmod(sameFile.c_str(), (facts.st_mode & kPermissions) ^ S_IWUSR) != 0) {
        error = LastError();
        return false;
    }
    return fstat(descriptor, &facts) == 0 && isAsWanted();
}

}  // namespace

bool ChangeOwnerWrite(const std::string& path, OwnerWrite wanted, std::error_code& error)
{
    error.clear();
    // O_PATH needs no permission on the file itself, as asking for its status does not either.
    const FileHandle file(Uninterrupted([&] { return open(SystemPath(path), O_PATH | O_NOFOLLOW | O_CLOEXEC); }));
    return file && ChangeOwnerWriteOf(file.Descriptor(), wanted, error);
}

}  // namespace rk::platform
