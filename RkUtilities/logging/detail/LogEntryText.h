#pragma once

#include "RkUtilities/foundation/CFDateFormatterStyle.h"
#include "RkUtilities/foundation/CFUUIDBytes.h"
#include "RkUtilities/foundation/CString.h"
#include "RkUtilities/logging/ErkLogLevel.h"
#include "RkUtilities/logging/detail/EntryBytes.h"

#include <chrono>
#include <string_view>

namespace rk {

/// How every entry begins and ends, in ASCII; what lies between varies.
inline constexpr std::string_view kEntryStart = "<l:LogEntry><l:Timestamp>";
inline constexpr std::string_view kEntryFooter = "</l:LogEntry>\n";

/// Appends a whole entry: its header, body and footer, as `CrkLogWriter` describes them.
void AppendEntry(EntryBytes& entry, const CString& message, const CString& category, ErkLogLevel level,
                 const CString& description, const CFUUIDBytes& id);

/// `CrkLogWriter::CurrentTimeString` of another time than now. Valid until the thread's next text of a date or a time.
std::u16string_view LocalTimeText(std::chrono::system_clock::time_point time, CFDateFormatterStyle style);

}  // namespace rk
