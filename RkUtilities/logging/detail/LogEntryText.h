#pragma once

#include "RkUtilities/foundation/CFUUIDBytes.h"
#include "RkUtilities/foundation/CString.h"
#include "RkUtilities/logging/ErkLogLevel.h"

#include <string>
#include <string_view>

namespace rk {

/// How every entry begins and ends in the file; what lies between varies.
inline constexpr std::string_view kEntryStart = "<l:LogEntry><l:Timestamp>";
inline constexpr std::string_view kEntryFooter = "</l:LogEntry>\n";

/// The levels' names in a settings file, indexed by level; an entry carries them without "Log".
inline constexpr std::string_view kLevelNames[] = {"LogEmergency", "LogCritical", "LogError", "LogWarning",
                                                   "LogNotice",    "LogInfo",     "LogDebug"};

/// A whole entry as the file holds it: header, body and footer, as `CrkLogWriter` describes them.
[[nodiscard]] std::string EntryUtf8(const CString& message, const CString& category, ErkLogLevel level,
                                    const CString& description, const CFUUIDBytes& id);

}  // namespace rk
