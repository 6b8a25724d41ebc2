#pragma once

#include "RkUtilities/RkExport.h"
#include "RkUtilities/platform/ModuleStamp.h"
#include "RkUtilities/platform/PreferenceDatabase.h"

#include <memory>

/// All that the library takes from SQLite.
namespace rk::platform {

struct StorageServices {
    ModuleStamp stamp;
    /// A database that is not open yet.
    std::unique_ptr<PreferenceDatabase> (*database)();
};

}  // namespace rk::platform

extern "C" RK_EXPORT const rk::platform::StorageServices* RkUtilitiesStorage() noexcept;
