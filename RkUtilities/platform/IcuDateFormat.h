#pragma once

#include "RkUtilities/platform/DatePattern.h"

#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <unicode/smpdtfmt.h>

namespace rk::platform {

/// A date format of ICU for a locale, with the days before 1582 Gregorian too. Formats from any thread, one at a time:
/// ICU's formats make parts of themselves when they are first used.
class IcuDateFormat {
public:
    /// Null when ICU has no such format.
    static std::unique_ptr<IcuDateFormat> Make(const std::string& locale, icu::DateFormat::EStyle date,
                                               icu::DateFormat::EStyle time);

    /// The text in a zone that is so many seconds ahead of UTC at that time; the zone is one of that offset.
    [[nodiscard]] std::u16string Text(std::int64_t utcSeconds, int utcOffset) const;
    /// The text in the zone of the C library, which is so many seconds ahead of UTC at that time, under its name.
    [[nodiscard]] std::u16string TextWithZone(std::int64_t utcSeconds, int utcOffset) const;

    /// The format without ICU, where it can do without.
    [[nodiscard]] std::optional<DatePattern> Pattern() const;

private:
    explicit IcuDateFormat(std::unique_ptr<icu::SimpleDateFormat> format);
    [[nodiscard]] std::u16string Text(std::int64_t seconds, std::unique_ptr<icu::TimeZone> zone) const;
    [[nodiscard]] bool Agrees(const DatePattern& pattern) const;

    mutable std::mutex m_mutex;
    std::unique_ptr<const icu::SimpleDateFormat> m_format;
};

}  // namespace rk::platform
