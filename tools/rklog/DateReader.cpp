#include "rklog/DateReader.h"

#include "rklog/DateFields.h"

namespace rklog {

namespace {

/// Where each of year, month and day stands, by order.
constexpr std::array<std::array<std::size_t, 3>, 3> kPlaces = {{{2, 1, 0}, {2, 0, 1}, {0, 1, 2}}};

constexpr int kNoon = 12;

constexpr std::array<std::string_view, 3> kOrderNames = {"day/month/year", "month/day/year", "year/month/day"};

const std::array<std::size_t, 3>& PlacesOf(DateStyle::Order order) { return kPlaces[static_cast<std::size_t>(order)]; }

std::array<int, 3> NumbersOf(const CString& shortDate) {
    const DateFields fields = ReadDateFields(shortDate.ToUtf8()).value_or(DateFields());
    return {fields.numbers[0], fields.numbers[1], fields.numbers[2]};
}

std::map<std::array<int, 3>, Seconds> DaysOfCentury(const ShortDate& shortDate) {
    std::map<std::array<int, 3>, Seconds> days;
    Seconds wall = *WallOfDay(2001, 1, 1);
    for (int day = 1; wall < *WallOfDay(2101, 1, 1); ++day, wall += kSecondsOfDay)
        days.emplace(NumbersOf(shortDate(CTime(2001, 1, day, kNoon, 0, 0))), wall);
    return days;
}

std::optional<int> HourOf(const DateFields& fields) {
    const int hour = fields.numbers[3];
    if (fields.halfDay == DateFields::HalfDay::None || hour > 12)
        return hour < 24 ? std::optional(hour) : std::nullopt;
    return hour % 12 + (fields.halfDay == DateFields::HalfDay::AfterNoon ? 12 : 0);
}

}  // namespace

std::string_view NameOf(DateStyle::Order order) { return kOrderNames[static_cast<std::size_t>(order)]; }

DateStyle StyleOf(const ShortDate& shortDate) {
    const std::array<int, 3> numbers = NumbersOf(shortDate(CTime(2033, 11, 25, kNoon, 0, 0)));
    for (std::size_t order = 0; order < kPlaces.size(); ++order) {
        const auto [year, month, day] = kPlaces[order];
        if (numbers[year] % 100 == 33 && numbers[month] == 11 && numbers[day] == 25 &&
            (numbers[year] < 100 || numbers[year] == 2033))
            return {.order = static_cast<DateStyle::Order>(order), .days = {}};
    }
    return {.order = {}, .days = DaysOfCentury(shortDate)};
}

std::optional<Seconds> DateReader::DayOf(const std::array<int, 3>& numbers, bool hasLongYear) const {
    if (!m_style.days.empty()) {
        const auto found = m_style.days.find(numbers);
        return found == m_style.days.end() ? std::nullopt : std::optional(found->second);
    }
    const auto [yearAt, monthAt, dayAt] = PlacesOf(m_style.order);
    int year = numbers[yearAt];
    if (hasLongYear != (year >= 1000) || (hasLongYear && (year < 1970 || year > 2199)) || (!hasLongYear && year > 99))
        return {};
    year += hasLongYear ? 0 : 2000;
    return WallOfDay(year, numbers[monthAt], numbers[dayAt]);
}

std::optional<Seconds> DateReader::Read(std::string_view text) const {
    const std::optional<DateFields> fields = ReadDateFields(text);
    if (!fields || fields->count != fields->numbers.size())
        return {};
    const auto& numbers = fields->numbers;
    const std::optional<Seconds> day = DayOf({numbers[0], numbers[1], numbers[2]}, fields->hasLongYear);
    const std::optional<int> hour = HourOf(*fields);
    if (!day || !hour || numbers[4] > 59)
        return {};
    return *day + *hour * kSecondsOfHour + numbers[4] * kSecondsOfMinute;
}

}  // namespace rklog
