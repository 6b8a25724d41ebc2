#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <variant>

/// The application's preferences: a map in memory, and a database file that it is synchronised with.
///
/// Reads and writes touch memory only and are seen in the whole process at once. A synchronisation stores what was
/// written since the last one, in one transaction that survives a kill and a power cut, and takes in what other
/// processes have stored. Safe from any thread; a child after `fork` opens the database anew.
namespace rk::platform {

enum class PreferenceScope { AnyHost, ThisHost };
using PreferenceValue = std::variant<bool, std::int64_t, std::u16string>;
/// A value whose text is the caller's, or the store's.
using PreferenceView = std::variant<bool, std::int64_t, std::u16string_view>;

/// Calls `use` with the value for this host, else for any; not at all when there is none. The view is valid during the
/// call, in which no preference may be read or written.
void FindPreference(std::u16string_view name, const std::function<void(const PreferenceView& value)>& use);
void SetPreference(PreferenceScope scope, std::u16string_view name, const PreferenceView& value);
/// False when the database could not be written or read; the values stay in memory and wait for the next
/// synchronisation.
bool SynchronizePreferences();

/// How the storage fares.
struct StorageState {
    std::string database;         ///< the database file; "" when there is no folder for one
    std::string lastFailure;      ///< why the last synchronisation failed; "" when it did not
    std::string damagedDatabase;  ///< where this process last put a damaged database aside; "" when it did not
};
StorageState GetStorageState();

/// Names the application whose preferences these are, before they are first used; "" names it after its executable.
void NameApplication(std::string_view name);

}  // namespace rk::platform
