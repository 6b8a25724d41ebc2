#pragma once

#include "RkUtilities/platform/process/LocalTime.h"

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace rk::platform {

/// The words and digits of a locale, as date patterns name them by letter and width.
struct DateWords {
    virtual ~DateWords() = default;
    /// The words for 'M' and 'L' (from January on), 'E' (from Sunday on) and 'a' (before and after noon), of a width that
    /// the pattern asks for; empty when there are none.
    [[nodiscard]] virtual std::vector<std::u16string> Words(char16_t letter, std::size_t width) const = 0;
    std::array<char16_t, 10> digits{};
};

/// A pattern of CLDR (Unicode Technical Standard #35, "Date Format Patterns") for the Gregorian calendar, taken apart once:
/// a text is made from calendar fields in one pass, without ICU. Immutable.
class DatePattern {
public:
    /// Empty when the pattern asks for more than numbers and words of a fixed list (a zone, an era, a part of the day).
    static std::optional<DatePattern> Parse(std::u16string_view pattern, const DateWords& words);

    void AppendTo(std::u16string& text, const CalendarTime& fields) const;

private:
    /// What is written of the fields: a number of at least so many digits, or a word from `firstWord` on.
    struct Step {
        char16_t letter = 0;  // 0: the word itself
        std::size_t digitCount = 0;
        std::size_t firstWord = 0;
    };

    bool Append(char16_t letter, std::size_t width, const DateWords& words);
    void AppendLiteral(std::u16string_view literal);

    std::vector<Step> m_steps;
    std::vector<std::u16string> m_words;
    std::array<char16_t, 10> m_digits{};
};

}  // namespace rk::platform
