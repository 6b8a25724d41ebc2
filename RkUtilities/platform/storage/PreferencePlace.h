#pragma once

#include "RkUtilities/platform/files/FileCalls.h"
#include "RkUtilities/platform/storage/StorageOutcome.h"

#include <string>

namespace rk::platform {

/// Where the preferences of this application are.
struct PreferencePlace {
    std::string folder;
    std::string database;  ///< the file's path
    std::string hostId;    ///< keeps machines apart that share the folder
};

/// Finds the place and makes the folder where it is missing. Without the machine's id and the program's name there is
/// no place: values under a substitute would be missing in the next run.
StorageOutcome FindPreferencePlace(PreferencePlace& place);

/// Keeps other processes from opening the database in the folder, or putting it aside, for as long as `lock` lives.
/// `Failed` when another process keeps the folder for two seconds. A folder that cannot be locked counts as locked.
StorageOutcome LockFolder(const std::string& folder, FileHandle& lock);

/// Moves a database and SQLite's files beside it to a free name with the date. Returns the new path; "" when the
/// database cannot be moved.
std::string MoveAside(const std::string& database);

}  // namespace rk::platform
