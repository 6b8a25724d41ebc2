#include "RkUtilities/preferences/CrkRegistry.h"

#include "RkUtilities/foundation/CAtlArray.h"
#include "RkUtilities/preferences/SECRegistry.h"

namespace {

constexpr auto kRead = static_cast<SECRegistry::CreatePermissions>(0x20019);

}  // namespace

CrkRegistry::~CrkRegistry() = default;

CString CrkRegistry::GetRegKeyString(std::uint32_t /*rootKey*/, rk::TextView keyPath, rk::TextView name) {
    SECRegistry registry;
    registry.Open(keyPath, kRead);
    CString value;
    registry.GetStringValue(name, value);
    return value;
}

CString CrkRegistry::GetUserOrMachineRegKeyString(rk::TextView keyPath, rk::TextView name, bool* found) {
    CString value = GetRegKeyString(0, keyPath, name);
    if (found != nullptr)
        *found = !value.IsEmpty();
    return value;  // a second reading would find the same
}

bool CrkRegistry::DeleteRegValue(rk::TextView name) {
    SECRegistry registry;
    registry.Open(nullptr, kRead);
    return registry.DeleteValue(name) && registry.Close();
}

CAtlArray<CString> CrkRegistry::GetRegValueNames() {
    SECRegistry registry;
    registry.Open(nullptr, kRead);
    return registry.GetValueNames();
}
