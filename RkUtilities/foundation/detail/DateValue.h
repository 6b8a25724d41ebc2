#pragma once

#include <cstdint>

namespace rk {

/// Seconds since 1 January 1970, 00:00:00 in no zone, of a date value to the nearest second; those of the value 0 when
/// it is no number or lies outside the years 1 to 9999.
std::int64_t SecondsOfDateValue(double dateValue) noexcept;

}  // namespace rk
