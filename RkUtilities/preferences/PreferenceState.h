#pragma once

#include "RkUtilities/RkExport.h"

#include <string>

namespace rk {

/// How the storage of the preferences fares; what `SECRegistry`'s results cannot tell.
struct PreferenceState {
    /// The database file; "" before its first use, and without a folder for it: values live with the process then.
    std::string database;
    /// Why the last synchronisation failed; "" when it did not. Values that were not stored wait for the next try.
    std::string lastFailure;
    /// Where this process last put a damaged database aside, under the date of that day; "" when it did not.
    std::string damagedDatabase;
};

/// The state after the last synchronisation. Safe from any thread.
RK_EXPORT PreferenceState GetPreferenceState();

}  // namespace rk

/// The names by which existing calling code knows them.
namespace rk::platform {
using rk::GetPreferenceState;
using rk::PreferenceState;
}  // namespace rk::platform
