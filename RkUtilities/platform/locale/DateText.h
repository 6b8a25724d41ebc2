#pragma once

#include <cstdint>
#include <string>
#include <string_view>

/// Date and time texts after CLDR's styles, from ICU, in the C library's local time.
namespace rk::platform {

/// CLDR's lengths of a date or a time.
enum class DateStyle { None, Short, Medium, Long, Full };

/// The text of a time, seconds since 1970 UTC in the years 1 to 9999, in a locale of `UserLocaleName`; "" with both
/// styles None. Valid until the thread's next text of the same styles.
///
/// Calendar fields are those of the C library's zone, Gregorian also before 1582; a locale with another calendar gets
/// that calendar's fields. The last text of each pair of styles is kept for its minute, or its second where seconds
/// show. Without memory `std::bad_alloc` is thrown, and the next call makes the text. Safe from any thread.
std::u16string_view LocalDateText(const std::string& locale, DateStyle date, DateStyle time, std::int64_t utcSeconds);

}  // namespace rk::platform
