#include "RkUtilities/preferences/PreferenceState.h"

#include "RkUtilities/platform/storage/PreferenceStore.h"

namespace rk {

PreferenceState GetPreferenceState() {
    PreferenceState state;
    platform::DescribeStorage(state.database, state.lastFailure, state.damagedDatabase);
    return state;
}

}  // namespace rk
