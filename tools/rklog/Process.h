#pragma once

#include "rklog/Entry.h"
#include "rklog/IsoTime.h"

#include <optional>
#include <string>

namespace rklog {

/// What `CrkLogWriter::LogStart` tells of the process that called it.
struct Process {
    Seconds loadedUtc = 0;   ///< when its library was loaded: the seconds of its entries count from there
    Seconds zoneOffset = 0;  ///< of its zone from UTC, at its start
    std::string zone;        ///< "CET"
    std::string id;          ///< "4711"
    std::string host;
    std::string program;
    std::string library;  ///< the version of the library
    std::string system;

    /// "mindmap[4711]", behind "host:" when that is known.
    [[nodiscard]] std::string Name() const;
};

/// Reads an entry of `LogStart`; nothing for any other entry, or when the start is not told.
[[nodiscard]] std::optional<Process> ReadLogStart(const Entry& entry);

}  // namespace rklog
