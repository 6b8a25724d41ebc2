#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

/// Date and time texts after CLDR's styles, from ICU, in the C library's local time.
namespace rk::platform {

/// CLDR's lengths of a date or a time.
enum class DateStyle { None, Short, Medium, Long, Full };

/// One locale's format for a pair of styles. Immutable and kept per locale name: asking again costs no new ICU
/// formatter.
class DateTextFormat {
public:
    /// Null when ICU has no such format (both styles None, a name it refuses).
    static std::shared_ptr<const DateTextFormat> For(const std::string& locale, DateStyle date, DateStyle time);
    /// To be called before a lock, or the guard of a local static, is held under which formats are asked for.
    static void Prepare();
    virtual ~DateTextFormat() = default;

    /// The text of a time, seconds since 1970 UTC in the years 1 to 9999. Valid until the thread's next text.
    ///
    /// Calendar fields are those of the C library's zone, Gregorian also before 1582; locales whose calendar is another
    /// one get theirs. A text of the same minute, or of the same day where only the day shows, is not made again.
    [[nodiscard]] virtual std::u16string_view Text(std::int64_t utcSeconds) const = 0;
};

}  // namespace rk::platform
