#pragma once

#include "RkUtilities/foundation/CFUUIDBytes.h"
#include "RkUtilities/foundation/CString.h"
#include "RkUtilities/logging/ErkLogLevel.h"

#include <string_view>

namespace rk {

/// How every entry begins and ends, in ASCII; what lies between varies.
inline constexpr std::string_view kEntryStart = "<l:LogEntry><l:Timestamp>";
inline constexpr std::string_view kEntryFooter = "</l:LogEntry>\n";

/// The whole text of an entry: its header, body and footer, as `CrkLogWriter` describes them.
CString LogEntryText(const CString& message, const CString& category, ErkLogLevel level, const CString& description,
                     const CFUUIDBytes& id);

}  // namespace rk
