#pragma once

#include "rklog/IsoTime.h"

#include <RkUtilities/foundation/CString.h>
#include <RkUtilities/foundation/CTime.h>

#include <array>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace rklog {

/// How a locale writes short dates.
struct DateStyle {
    enum class Order { DayMonthYear, MonthDayYear, YearMonthDay };
    Order order = Order::DayMonthYear;
    /// Of another calendar than the Gregorian one: the days of a century, by the three numbers of their texts.
    std::map<std::array<int, 3>, Seconds> days;

    friend bool operator==(const DateStyle&, const DateStyle&) = default;
};

/// The short date of a time, as CrkDateUtilities::ShortDateString gives it in the user's locale.
using ShortDate = std::function<CString(const CTime&)>;

/// Finds out how dates are written, from the dates of a few days, or of a century where the calendar is not the
/// Gregorian one; its years are 2001 to 2100 then.
[[nodiscard]] DateStyle StyleOf(const ShortDate& shortDate);

/// "day/month/year"
[[nodiscard]] std::string_view NameOf(DateStyle::Order order);

/// Reads the date and time that the log writer writes, to the minute.
class DateReader {
public:
    explicit DateReader(DateStyle style) : m_style(std::move(style)) {}

    /// The time on the wall; nothing when the text has another form, or names no day. Years of two digits are those
    /// from 2000 on, years of four lie between 1970 and 2199.
    [[nodiscard]] std::optional<Seconds> Read(std::string_view text) const;

    [[nodiscard]] const DateStyle& Style() const { return m_style; }

private:
    [[nodiscard]] std::optional<Seconds> DayOf(const std::array<int, 3>& numbers, bool hasLongYear) const;

    DateStyle m_style;
};

}  // namespace rklog
