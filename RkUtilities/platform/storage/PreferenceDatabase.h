#pragma once

#include "RkUtilities/platform/storage/PreferenceStore.h"

#include <map>
#include <optional>
#include <string>
#include <utility>

namespace rk::platform {

/// A value's place: its scope as text ("user" or "host <machine>") and its name.
using PreferenceKey = std::pair<std::string, std::u16string>;
using PreferenceMap = std::map<PreferenceKey, PreferenceValue>;

/// One open database file with the table `preferences` (scope, name, type, value). Not safe from two threads at once.
class PreferenceDatabase {
public:
    enum class Result {
        Done,
        Failed,
        Damaged,  ///< the file is no sound database
    };

    virtual ~PreferenceDatabase() = default;

    /// Opens or makes the file (mode 0600).
    virtual Result Open(const std::string& path) = 0;
    /// Closes the file and is as new.
    virtual void Close() = 0;
    [[nodiscard]] virtual bool IsOpen() const noexcept = 0;
    /// Whether the path still leads to the open file.
    [[nodiscard]] virtual bool IsInPlace() const = 0;
    /// Looks at every page of the file.
    virtual Result Check() = 0;
    /// Forgets the file without touching it: a connection must not be carried across `fork`.
    virtual void Abandon() = 0;

    /// Stores all values or none.
    virtual Result Store(const PreferenceMap& values) = 0;
    /// Reads all values if another process has stored some since the last reading, else none.
    virtual Result ReadIfChanged(std::optional<PreferenceMap>& values) = 0;
    /// Reads all values of a file that may not be written, in a folder that may not be written.
    virtual Result ReadUnwritable(const std::string& path, std::optional<PreferenceMap>& values) = 0;
    /// Why the last call failed.
    [[nodiscard]] virtual const std::string& Failure() const noexcept = 0;
};

}  // namespace rk::platform
