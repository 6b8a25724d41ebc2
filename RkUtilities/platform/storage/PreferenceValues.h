#pragma once

#include "RkUtilities/platform/process/Random.h"
#include "RkUtilities/platform/process/Threads.h"

#include <array>
#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <variant>
#include <vector>

namespace rk::platform {

/// The scopes, in the order in which a name is looked up.
enum class PreferenceScope { ThisHost, AnyHost };
/// std::monostate is a deleted value, which is stored so that it stays deleted.
using PreferenceValue = std::variant<bool, std::int64_t, std::u16string, std::monostate>;

/// A value's scope as text and its name. The scope of this host is spelled without the host's id, which only the
/// database needs; the scope of another host is "host <id>".
using PreferenceKey = std::pair<std::string, std::u16string>;
using PreferenceMap = std::map<PreferenceKey, PreferenceValue>;
inline constexpr std::string_view kThisHostScope = "host";
inline constexpr std::array<std::string_view, 2> kScopeTexts = {kThisHostScope, "user"};  // by PreferenceScope

/// The values in memory: what the database held when it was last read, and over that what waits to be stored.
/// A call that throws `std::bad_alloc` changes nothing. Safe from any thread; one thread at a time stores and takes.
class PreferenceValues {
public:
    /// Calls `use` with the value for this host, else for any host; not at all without such a value. The lock is held.
    void Find(std::u16string_view name, const std::function<void(const PreferenceValue& value)>& use) const;
    /// The names that have a value for this host or any host.
    [[nodiscard]] std::vector<std::u16string> Names() const;
    /// Sets a value, which waits from now on.
    void Set(PreferenceScope scope, std::u16string_view name, PreferenceValue&& value);

    /// The values that wait. A value that is set from now on waits for the next storing.
    PreferenceMap BeginStoring();
    void EndStoring(bool areStored) noexcept;  ///< Unless they are stored, the values of `BeginStoring` wait again.
    /// Takes what the database holds. In another database than before, the known values that it lacks have to wait.
    void Take(PreferenceMap&& read, bool isAnotherDatabase);
    void BeginInChild() noexcept { ++m_forks; }  ///< What waits now is left to the parent.

private:
    enum class State : unsigned char { Stored, Storing, Waiting };
    struct Held {
        PreferenceValue value;
        State state = State::Stored;
        int forks = 0;  // m_forks when it was set
    };
    /// Whether this process has to store the value.
    [[nodiscard]] bool Waits(const Held& held) const { return held.state != State::Stored && held.forks == m_forks; }
    /// Not noexcept, so that the standard library's table keeps each name's hash instead of computing it again.
    struct Hash {
        using is_transparent = void;
        std::size_t operator()(std::u16string_view name) const { return SecretHash(name); }
    };
    using Scopes = std::vector<std::pair<std::string, Held>>;  // few, so that a search is fastest

    static Held& At(Scopes& scopes, std::string_view scope);

    int m_forks = 0;  // the number of forks between the first process and this process
    std::mutex& m_mutex = MutexOf(Lock::PreferenceValues);
    std::unordered_map<std::u16string, Scopes, Hash, std::equal_to<>> m_values;  // by name
};

}  // namespace rk::platform
