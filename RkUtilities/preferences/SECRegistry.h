#pragma once

#include "RkUtilities/RkExport.h"
#include "RkUtilities/foundation/CString.h"
#include "RkUtilities/foundation/TextView.h"

#include <concepts>
#include <cstdint>
#include <optional>
#include <variant>

template <class T> class CAtlArray;

namespace rk {

/// Integers that the 32 bits of a stored number hold, characters aside.
template <class T>
concept StoredNumber =
    std::integral<T> && sizeof(T) <= sizeof(std::int32_t) && !std::same_as<T, bool> && !std::same_as<T, char> &&
    !std::same_as<T, wchar_t> && !std::same_as<T, char8_t> && !std::same_as<T, char16_t> && !std::same_as<T, char32_t>;

}  // namespace rk

/// The application's preferences behind the interface of a registry: named booleans, 32-bit numbers and strings.
///
/// - The store is flat: a value is stored under its name alone. The key path is recorded and never looked at, so two
///   paths cannot hold different values under one name. Names are zero-terminated UTF-16, compared exactly; null is the
///   empty name.
/// - The root key decides where a write goes: 1 is the user's preferences on this machine, which are stored at once;
///   any other key is the user's preferences on any machine, which are stored by the next `Open` or `Close` of any
///   object and at normal exit; the destructors of static objects store at once. A read finds the value of this machine
///   before the value of any machine, whatever the root key.
/// - A write is seen in the whole process at once. What other processes have stored is seen after the next `Open` or
///   `Close`.
/// - The values live in `$XDG_CONFIG_HOME/<application>/preferences.sqlite` (without that variable in `~/.config`),
///   mode 0600, in a table with scope, name, type and value; see ApplicationName.h. Stored values survive a kill and a
///   power cut, also where several machines share the home folder, if its file system keeps their locks.
/// - Nothing is lost while the storage fails (full disk, read-only folder, no home, no descriptor or no memory left, a
///   folder or database that another process keeps locked for more than two seconds): values stay readable in the
///   process and the next synchronisation tries again. Stored values are read also from a full disk and from a folder
///   that may not be written; those that could not be read yet count as not set. `rk::GetPreferenceState` tells how the
///   storage fares.
/// - A file that cannot be used as a database of preferences (damaged, of a later version, made to run without end) is
///   put aside under a dated name, and a new file is begun with the values that the process knows. A new file also
///   takes the place of a database that is moved or deleted meanwhile.
/// - Any text is kept exactly: empty, lone surrogates, U+0000 inside a value, up to 1 GB. A larger value stays in the
///   process, and so do all later values, until a smaller value replaces it.
/// - Different objects may be used from different threads at once, and in a child after `fork`. A fork waits up to two
///   seconds for a synchronisation that is under way, and closes the database until the next; a child forked inside a
///   longer synchronisation keeps its values to itself, as where storage fails. A value that waits is stored by the
///   process that wrote it alone: after its next `Open` or `Close` a child reads what is stored under the name, if any.
/// - The first read or write in a process opens or makes the database and takes in its values; it may wait a few
///   seconds for other processes. After it a read costs no file access. Memory exhausted is `std::bad_alloc`, or
///   `ATL::CAtlException` where an array is filled; nothing else is thrown. Nothing is changed then, or with root key 1
///   the value is known and waits. Values that memory or storage cannot take at the process's end are lost.
class RK_EXPORT SECRegistry {
public:
    /// Recorded, not enforced; 0x20019 asks for reading.
    enum CreatePermissions : std::uint32_t {};
    /// Ignored.
    enum CreateOptions : std::uint32_t {};
    /// Never written.
    enum CreationDisposition : std::uint32_t {};

    /// The types of stored values.
    enum ErkValueType { Boolean, Number, String };
    using Value = std::variant<bool, std::int32_t, CString>;  ///< A stored value.

    SECRegistry() = default;
    virtual ~SECRegistry();

    /// Sets the root key; true. The text and the flag are ignored.
    bool Connect(std::uint32_t rootKey, rk::TextView /*machine*/, bool /*flag*/) {
        m_rootKey = rootKey;
        return true;
    }
    /// Records key path and permissions and synchronises; true, also when the storage fails.
    bool Open(rk::TextView keyPath, CreatePermissions permissions);
    /// Records key path and permissions; true. The rest is ignored.
    bool Create(rk::TextView keyPath, rk::TextView className, CreateOptions options, CreatePermissions permissions,
                CreationDisposition* disposition);
    bool Close();  ///< Synchronises; true, also when the storage fails.
    /// False: there is no key at any index. The name is not changed.
    bool EnumerateKeys(std::uint32_t /*index*/, CString& /*name*/) const { return false; }

    /// Reads a value; false and the output untouched when there is no value or its type is another. A number reads as a
    /// boolean (not 0); nothing else is converted. A number is stored as a signed number and read with the same bits.
    bool GetValue(rk::TextView name, bool& value) const;
    /// Reads a number.
    bool GetValue(rk::TextView name, std::uint32_t& value) const { return GetDoubleWordValue(name, value); }
    bool GetValue(rk::TextView name, std::int32_t& value) const;  ///< Reads a number with its sign.
    bool GetValue(rk::TextView name, CString& value) const { return GetStringValue(name, value); }  ///< Reads a text.
    bool GetValue(rk::TextView name, double& value) const;              ///< Reads a number, also a stored `double`.
    bool GetValue(rk::TextView name, CAtlArray<CString>& texts) const;  ///< Reads a list of texts.
    bool GetDoubleWordValue(rk::TextView name, std::uint32_t& value) const;  ///< Reads a number.
    bool GetStringValue(rk::TextView name, CString& value) const;            ///< Reads a text.

    /// Writes a value; true. With root key 1, when it cannot be stored at once, it is also set for any machine. A
    /// `bool` is stored as a boolean, an integer of at most 32 bits as a number, what becomes a `CString` (a `char`)
    /// as a string, a floating-point number and a list of texts as strings for `GetValue`. Nothing else compiles.
    template <std::same_as<bool> T> bool SetValue(rk::TextView name, T value) {
        WriteValueToSystem(name, value);
        return true;
    }
    /// Writes a number.
    template <rk::StoredNumber T> bool SetValue(rk::TextView name, T value) {
        return SetDoubleWordValue(name, static_cast<std::uint32_t>(value));
    }
    bool SetValue(rk::TextView name, CString const& value) { return SetStringValue(name, value); }  ///< Writes a text.
    /// Writes a number as the shortest text that reads as the same number: "0.1", "1e+300", "nan".
    template <std::floating_point T>
        requires(sizeof(T) <= sizeof(double))
    bool SetValue(rk::TextView name, T value) {
        return SetDouble(name, static_cast<double>(value));
    }
    /// Writes a list of texts as one string: each text ends with a line feed. Inside a text a "\\" is written twice,
    /// and a line feed as a "\\" and an "n".
    bool SetValue(rk::TextView name, const CAtlArray<CString>& texts);
    bool SetDoubleWordValue(rk::TextView name, std::uint32_t value);  ///< Writes a number.
    bool SetStringValue(rk::TextView name, CString const& value);     ///< Writes a text.

    /// The stored value as the wanted type; nullopt when there is no value or its type is another.
    [[nodiscard]] std::optional<Value> GetValueFromSystem(rk::TextView name, ErkValueType type) const;
    void WriteValueToSystem(rk::TextView name, const Value& value);  ///< Writes a value of any type.
    /// Deletes the values of the name, of this machine and of any machine, as `SetValue` writes; whether a value was
    /// there. Where `std::bad_alloc` is thrown, the value of this machine is as before, or with root key 1 its deletion
    /// waits.
    bool DeleteValue(rk::TextView name);
    /// The names of all values that can be read, in the order of their code units. Needs CAtlArray.h.
    [[nodiscard]] CAtlArray<CString> GetValueNames() const;
    [[nodiscard]] CString GetFullKey(rk::TextView name) const { return name; }  ///< The name itself.

private:
    bool SetDouble(rk::TextView name, double value);

    std::uint32_t m_rootKey = 0;
    CString m_keyName;
    CreatePermissions m_permissions{};
};
