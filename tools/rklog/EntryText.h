#pragma once

#include "rklog/Entry.h"

#include <string>
#include <string_view>

namespace rklog {

constexpr std::string_view kEntryStart = "<l:LogEntry><l:Timestamp>";
constexpr std::string_view kEntryEnd = "</l:Body></l:LogEntry>\n";

/// Takes the bytes of an entry apart, from its start tag to the end of its footer; without the footer it is torn, and
/// the last field that has begun holds the rest. Bytes that do not begin with the start tag are stray text. The file
/// and the offset of the entry stay as they are.
///
/// A field ends where the markup behind it stands as the log writer writes it, so "<" inside a field does no harm.
void TakeApart(std::string_view bytes, Entry& entry);

/// The text of a field: each "&amp;" is "&" again, which is all that the log writer escapes.
[[nodiscard]] std::string Unescaped(std::string_view field);

}  // namespace rklog
