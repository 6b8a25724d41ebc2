#include "rklog/Record.h"

#include "rklog/EntryText.h"
#include "rklog/Levels.h"

#include <RkUtilities/foundation/CString.h>

#include <algorithm>

namespace rklog {

namespace {

constexpr std::string_view kNullId = "00000000-0000-0000-0000-000000000000";

bool IsAscii(std::string_view text) {
    return std::all_of(text.begin(), text.end(), [](char c) { return static_cast<signed char>(c) >= 0; });
}

/// Bytes that are no UTF-8 become U+FFFD.
std::string WellFormed(std::string text) { return IsAscii(text) ? text : CString(text).ToUtf8(); }

std::string DamageOf(Wholeness wholeness) {
    return wholeness == Wholeness::Whole ? "" : wholeness == Wholeness::Torn ? "torn" : "stray";
}

}  // namespace

Record RecordOf(const Entry& entry, const EntryTime& time) {
    const std::optional<Seconds> sinceLoad = ReadTimestamp(entry.timestamp).sinceLoad;
    return {
        .time = time.time ? IsoText(*time.time) : "",
        .level = std::string(NameOf(entry.level)),
        .process = time.process ? WellFormed(time.process->Name()) : "",
        .category = WellFormed(Unescaped(entry.category)),
        .message = WellFormed(Unescaped(entry.message)),
        .description = WellFormed(Unescaped(entry.description)),
        .id = entry.id == kNullId ? "" : WellFormed(std::string(entry.id)),
        .thread = WellFormed(std::string(entry.thread)),
        .timestamp = WellFormed(std::string(entry.timestamp)),
        .seconds = sinceLoad ? std::to_string(*sinceLoad) : "",
        .damage = DamageOf(entry.wholeness),
        .file = WellFormed(std::string(entry.file)),
        .offset = std::to_string(entry.offset),
    };
}

}  // namespace rklog
