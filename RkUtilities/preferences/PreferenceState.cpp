#include "RkUtilities/preferences/PreferenceState.h"

#include "RkUtilities/platform/storage/PreferenceStore.h"

#include <utility>

namespace rk {

PreferenceState GetPreferenceState()
{
    platform::StorageState state = platform::GetStorageState();
    return {.database = std::move(state.database),
            .lastFailure = std::move(state.lastFailure),
            .damagedDatabase = std::move(state.damagedDatabase)};
}

}  // namespace rk
