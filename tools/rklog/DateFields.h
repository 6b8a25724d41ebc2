#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string_view>

namespace rklog {

/// The numbers of a date, a time or both as a locale writes them, in their order.
struct DateFields {
    enum class HalfDay { None, BeforeNoon, AfterNoon };

    std::array<int, 5> numbers{};
    std::size_t count = 0;
    HalfDay halfDay = HalfDay::None;
    bool hasLongYear = false;  ///< one of the numbers has four digits
};

/// Finds the numbers, in the digits of any script that CLDR's locales write dates in, and the word for the half of the
/// day ("PM", "下午", "μ.μ."); whatever else the text holds is passed over. A time in front of its date is put behind it.
///
/// @return nothing for a text without a number, with more than five numbers, or with a number of more than four digits
[[nodiscard]] std::optional<DateFields> ReadDateFields(std::string_view text);

}  // namespace rklog
