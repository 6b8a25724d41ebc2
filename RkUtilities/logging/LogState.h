#pragma once

#include "RkUtilities/RkExport.h"

#include <cstdint>
#include <string>

namespace rk {

/// How the log fares; what `CrkLogWriter`'s results cannot tell. Texts are UTF-8.
struct LogState {
    /// Whether entries are written, and why not.
    enum class Mode {
        Off,          ///< before `Init` and after `Uninitialize`
        BadSettings,  ///< off: the settings file cannot be used; `settingsFault` says why
        Disabled,     ///< off: the settings do not enable logging
        On,
    };
    Mode mode = Mode::Off;     ///< how it is now
    std::string settingsFile;  ///< as given to `Init`
    /// "No such file or directory", "line 3: mismatched tag"; "" for a file that was applied.
    std::string settingsFault;
    /// What failed last since `Init`, and why: "open the file: Too many open files"; "" when nothing did. Entries are
    /// lost only where `droppedEntries` or an exception says so.
    std::string lastFailure;
    std::uint64_t droppedEntries = 0;  ///< since `Init`, without an exception
};

}  // namespace rk
