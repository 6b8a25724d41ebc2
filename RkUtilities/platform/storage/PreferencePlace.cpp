#include "RkUtilities/platform/storage/PreferencePlace.h"

#include "RkUtilities/platform/files/FileFacts.h"
#include "RkUtilities/platform/files/FileNames.h"
#include "RkUtilities/platform/files/Files.h"
#include "RkUtilities/platform/files/FolderList.h"
#include "RkUtilities/platform/files/FreeNames.h"
#include "RkUtilities/platform/files/UserFolders.h"
#include "RkUtilities/platform/process/ApplicationName.h"
#include "RkUtilities/platform/process/LocalTime.h"
#include "RkUtilities/platform/process/Machine.h"
#include "RkUtilities/platform/process/Patience.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <ctime>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <system_error>

namespace rk::platform {

namespace {

/// The id in /etc/machine-id; the host's name without that file or an id in it; "" when the file cannot be read.
std::string HostId() {
    std::error_code error;
    std::string id = ContentOfFile("/etc/machine-id", error);
    if (error && error != std::errc::no_such_file_or_directory)
        return {};
    id.resize(std::min(id.size(), id.find_first_of(" \n")));
    return id.empty() ? HostName() : id;
}

}  // namespace

StorageOutcome FindPreferencePlace(PreferencePlace& place) {
    const std::string preferences = PreferencesFolder();
    if (preferences.empty())
        return {StorageOutcome::Failed, "there is no folder for preferences"};
    std::string name = ApplicationName();
    if (name.empty())
        return {StorageOutcome::Failed, "the program's name cannot be read from /proc/self/exe"};
    std::replace(name.begin(), name.end(), '/', '_');
    PreferencePlace found;
    found.folder = preferences + '/' + (name == "." || name == ".." ? "_" : name);
    found.database = found.folder + "/preferences.sqlite";
    found.hostId = HostId();
    if (found.hostId.empty())
        return {StorageOutcome::Failed, "the machine's id cannot be read from /etc/machine-id"};
    static_cast<void>(MakeFolders(preferences));
    if (::mkdir(found.folder.c_str(), 0700) != 0 && KindOf(found.folder) != FileKind::Folder)
        return {StorageOutcome::Failed, "there is no folder for preferences"};
    place = std::move(found);
    return {};
}

StorageOutcome LockFolder(const std::string& folder, FileHandle& lock) {
    lock = OpenFolder(PlaceOf(folder), O_RDONLY);
    Patience patience(std::chrono::seconds(2));
    while (flock(lock.Descriptor(), LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK) {
        if (!patience.Sleep())
            return {StorageOutcome::Failed, "another process keeps the folder of preferences locked"};
    }
    return {};
}

std::string MoveAside(const std::string& database) {
    const std::string date = FormattedTime(LocalCalendar(std::time(nullptr)), "-damaged-%Y%m%d-%H%M%S");
    const std::size_t nameStart = database.rfind('/') + 1;
    const std::string folder = database.substr(0, nameStart);
    const NumberedName name{database.substr(nameStart) + date, ""};
    std::error_code error;
    std::string aside = folder + name.WithNumber(FirstFreeNumber(folder, name, TakenBy::Anything, error));
    if (error || RenameOver(database, aside))
        return {};
    for (const char* const suffix : {"-wal", "-shm", "-journal"})
        static_cast<void>(RenameOver(database + suffix, aside + suffix));
    return aside;
}

}  // namespace rk::platform
