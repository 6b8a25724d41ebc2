#pragma once

#include "RkUtilities/RkExport.h"
#include "RkUtilities/foundation/CObject.h"
#include "RkUtilities/foundation/CString.h"
#include "RkUtilities/foundation/TextView.h"

#include <cstdint>

template <class T> class CAtlArray;

/// Preferences read in one call; `SECRegistry` states the rules. Each call synchronises, so it sees what other
/// processes have stored. Safe from any thread.
class RK_EXPORT CrkRegistry : public CObject {
public:
    CrkRegistry() = default;
    ~CrkRegistry() override;

    /// The string stored under the name; "" without a value or with another type. Root key and path do not matter.
    static CString GetRegKeyString(std::uint32_t rootKey, rk::TextView keyPath, rk::TextView name);
    /// The same; with `found`, also whether it is a string that is not empty.
    static CString GetUserOrMachineRegKeyString(rk::TextView keyPath, rk::TextView name, bool* found);
    /// `SECRegistry::DeleteValue`, stored at once; whether a value was there.
    static bool DeleteRegValue(rk::TextView name);
    static CAtlArray<CString> GetRegValueNames();  ///< `SECRegistry::GetValueNames`; needs CAtlArray.h.
};
