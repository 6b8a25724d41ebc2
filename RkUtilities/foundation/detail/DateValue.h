#pragma once

#include <cstdint>

namespace rk {

/// Whether a date value is a number and lies in the years 1 to 9999, to the nearest second.
bool IsDateValue(double dateValue) noexcept;

/// Seconds since 1 January 1970, 00:00:00 in no zone, of a date value to the nearest second; the seconds of the
/// value 0 for any other value.
std::int64_t SecondsOfDateValue(double dateValue) noexcept;

}  // namespace rk
