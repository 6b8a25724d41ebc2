#pragma once

#include "rklog/IsoTime.h"

#include <optional>
#include <string_view>

namespace rklog {

/// A stretch of time as a person names it, in UTC: both seconds belong to it.
struct Stretch {
    Seconds first = 0;
    Seconds last = 0;
};

/// Reads "2026-11-16" (the whole day), "2026-11-16T21:52" (the minute), with seconds and a zone if wanted; "21:52" of
/// today; "90s", "30m", "2h" and "7d" before now.
[[nodiscard]] std::optional<Stretch> ReadPointInTime(std::string_view text, Seconds nowUtc);

}  // namespace rklog
