#pragma once

#include "RkUtilities/platform/storage/PreferenceDatabase.h"

#include <memory>

/// All that the library takes from SQLite.
namespace rk::platform {

struct StorageServices {
    /// A database that is not open yet.
    std::unique_ptr<PreferenceDatabase> (*database)();
};

const StorageServices& Storage();

}  // namespace rk::platform
