#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <variant>

namespace rk::platform {

/// In the order in which a name is looked up.
enum class PreferenceScope { ThisHost, AnyHost };
using PreferenceValue = std::variant<bool, std::int64_t, std::u16string>;
/// A value whose text is the caller's, or the store's.
using PreferenceView = std::variant<bool, std::int64_t, std::u16string_view>;

/// A value's scope as text and its name. The scope of this host is spelled without the host's id, which only the
/// database needs; the scope of another host is "host <id>".
using PreferenceKey = std::pair<std::string, std::u16string>;
using PreferenceMap = std::map<PreferenceKey, PreferenceValue>;
inline constexpr const char* kThisHostScope = "host";
inline constexpr std::array<const char*, 2> kScopeTexts = {kThisHostScope, "user"};  // by PreferenceScope

/// The values in memory: what the database held when it was last read, and over that what waits to be stored.
///
/// A call that throws `std::bad_alloc` changes nothing. Safe from any thread; one thread at a time stores and takes.
class PreferenceValues {
public:
    /// Calls `use` with the value for this host, else for any; not at all when there is none. The mutex is held.
    void Find(std::u16string_view name, const std::function<void(const PreferenceView& value)>& use);
    /// Sets a value, which waits from now on.
    void Set(PreferenceScope scope, std::u16string_view name, const PreferenceView& value);

    /// The values that wait; they stay readable, and what is set from now on waits for the next time.
    const PreferenceMap& BeginStoring() noexcept;
    /// Unless they are stored, the values of `BeginStoring` wait again, but for those that were set meanwhile.
    void EndStoring(bool areStored) noexcept;
    /// Takes what the database holds. In another database than before, the known values that it lacks have to wait.
    void Take(PreferenceMap read, bool isAnotherDatabase);

    /// Guards all values.
    std::mutex& Mutex() noexcept { return m_mutex; }

private:
    struct Place {
        PreferenceValue* value = nullptr;  // the newest one, in one of the maps
        std::uint64_t round = 0;           // equals m_round when the value is in m_waiting
    };
    struct Hash {
        using is_transparent = void;
        std::size_t operator()(std::u16string_view name) const noexcept
        {
            return std::hash<std::u16string_view>()(name);
        }
    };
    using Index = std::unordered_map<std::u16string, std::array<Place, kScopeTexts.size()>, Hash, std::equal_to<>>;

    static void Add(Index& index, PreferenceMap& values, std::uint64_t round);

    std::mutex m_mutex;
    PreferenceMap m_stored;     // in the database, when it was last read or written
    PreferenceMap m_storing;    // between BeginStoring and EndStoring
    PreferenceMap m_waiting;    // newer than what is being stored
    std::uint64_t m_round = 1;  // counts how often m_waiting was taken away
    Index m_index;
};

}  // namespace rk::platform
