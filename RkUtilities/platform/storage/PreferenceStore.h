#pragma once

#include "RkUtilities/platform/storage/PreferenceValues.h"

#include <functional>
#include <string>
#include <string_view>
#include <vector>

/// The application's preferences: values in memory, and a database file that they are synchronised with. Reads and
/// writes touch memory only, but for the first, which synchronises. A write is seen in the whole process at once. A
/// synchronisation stores the new values, in a transaction that survives a kill and a power cut, and takes in what
/// other processes have stored. Safe from any thread, and in a child after `fork`.
namespace rk::platform {

/// Calls `use` with the value for this host, else for any host; not at all without such a value. During the call no
/// preference may be read or written.
void FindPreference(std::u16string_view name, const std::function<void(const PreferenceValue& value)>& use);
/// The names that have a value for this host or any host, in the order of their units.
std::vector<std::u16string> PreferenceNames();
void SetPreference(PreferenceScope scope, std::u16string_view name, PreferenceValue value);
/// False when the database could not be written or read; the values wait for the next synchronisation.
bool SynchronizePreferences();

/// How the storage fares: the members of `rk::PreferenceState`. Waits for a synchronisation that is under way.
void DescribeStorage(std::string& database, std::string& lastFailure, std::string& damagedDatabase);

}  // namespace rk::platform
