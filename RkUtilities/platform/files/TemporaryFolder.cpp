#include "RkUtilities/platform/files/TemporaryFolder.h"

#include "RkUtilities/platform/files/FileCalls.h"
#include "RkUtilities/platform/files/FileNames.h"
#include "RkUtilities/platform/files/FolderList.h"
#include "RkUtilities/platform/files/UserFolders.h"
#include "RkUtilities/platform/process/Environment.h"

#include <cstdlib>
#include <fcntl.h>
#include <optional>
#include <sys/stat.h>
#include <unistd.h>

namespace rk::platform {
namespace {

enum class Missing { StaysMissing, IsMade };

const char* const kSystemFolder = "/tmp";

constexpr mode_t kOthersMayWrite = S_IWGRP | S_IWOTH;
constexpr mode_t kAnybodyMayAnything = S_IRWXU | S_IRWXG | S_IRWXO;

std::optional<struct stat> FolderFacts(const std::string& path) {
    struct stat facts{};
    if (path.empty() || stat(path.c_str(), &facts) != 0 || !S_ISDIR(facts.st_mode))
        return std::nullopt;
    return facts;
}

/// $TMPDIR without trailing "/"; "" unless it is an absolute path.
std::string FolderOfEnvironment() {
    const std::string folder = EnvironmentVariable("TMPDIR").value_or("");
    return folder.starts_with('/') ? WithoutClosingSlashes(folder) : std::string();
}

bool BelongsToUserAlone(const std::string& folder) {
    const std::optional<struct stat> facts = FolderFacts(folder);
    return facts && facts->st_uid == geteuid() && (facts->st_mode & kOthersMayWrite) == 0 &&
           access(folder.c_str(), W_OK | X_OK) == 0;
}

/// Whether no other user can rename or remove what the user makes in the folder.
bool KeepsWhatIsMadeInIt(const std::string& folder) {
    const std::optional<struct stat> facts = FolderFacts(folder);
    return facts && (facts->st_uid == 0 || facts->st_uid == geteuid()) &&
           ((facts->st_mode & kOthersMayWrite) == 0 || (facts->st_mode & S_ISVTX) != 0);
}

/// Whether `folder` is, or was made, a real folder of the user that is closed to all others.
bool IsPrivateFolder(const std::string& folder, Missing missing) {
    if (missing == Missing::IsMade && mkdir(folder.c_str(), S_IRWXU) != 0 && errno != EEXIST)
        return false;
    const FileHandle handle = OpenFolder(PlaceOf(folder), O_RDONLY | O_NOFOLLOW);
    struct stat facts{};
    if (!handle || fstat(handle.Descriptor(), &facts) != 0 || facts.st_uid != geteuid())
        return false;
    return (facts.st_mode & kAnybodyMayAnything) == S_IRWXU || fchmod(handle.Descriptor(), S_IRWXU) == 0;
}

std::string PrivateFolder(Missing missing) {
    const std::string name = "/RkUtilities-" + std::to_string(geteuid());
    for (const std::string& parent : {FolderOfEnvironment(), std::string(kSystemFolder)}) {
        if (KeepsWhatIsMadeInIt(parent) && IsPrivateFolder(parent + name, missing))
            return parent + name;
    }
    const std::string caches = BaseFolder("XDG_CACHE_HOME", ".cache");
    const std::string parent = caches + "/RkUtilities";
    if (caches.empty() || (missing == Missing::IsMade && MakeFolders(parent) && !FolderFacts(parent)))
        return {};
    const std::string folder = parent + "/temporary";
    return KeepsWhatIsMadeInIt(parent) && IsPrivateFolder(folder, missing) ? folder : std::string();
}

std::string TemporaryFolder(Missing missing) {
    const std::string folder = FolderOfEnvironment();
    return BelongsToUserAlone(folder) ? folder : PrivateFolder(missing);
}

}  // namespace

std::string FindTemporaryFolder() { return TemporaryFolder(Missing::StaysMissing); }

std::string MakeTemporaryFolder() {
    const std::string folder = TemporaryFolder(Missing::IsMade);
    return folder.empty() ? kSystemFolder : folder;
}

std::string MakeTemporaryFile(const std::string& path, std::error_code& error) {
    std::string name = path + "XXXXXXXX";
    error = *SystemPath(name) == '\0' ? ErrorOf(ENOENT) : std::error_code();
    const FileHandle file(error ? -1 : mkostemp(name.data(), O_CLOEXEC));
    if (!error && !file)
        error = LastError();
    return error ? std::string() : name;
}

}  // namespace rk::platform
