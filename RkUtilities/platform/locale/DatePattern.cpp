#include "RkUtilities/platform/locale/DatePattern.h"

namespace rk::platform {

namespace {

constexpr char16_t kQuote = u'\'';

bool IsPatternLetter(char16_t unit)
{
    return (unit >= u'a' && unit <= u'z') || (unit >= u'A' && unit <= u'Z');
}

/// The length of the run of equal units at the front.
std::size_t RunLength(std::u16string_view text)
{
    const std::size_t end = text.find_first_not_of(text.front());
    return end == std::u16string_view::npos ? text.size() : end;
}

/// Takes a quoted literal off the front of the pattern; '' is a quote, inside and outside of quotes.
std::u16string TakeQuoted(std::u16string_view& pattern)
{
    pattern.remove_prefix(1);
    if (pattern.starts_with(kQuote)) {
        pattern.remove_prefix(1);
        return {kQuote};
    }
    std::u16string literal;
    while (!pattern.empty()) {
        const char16_t unit = pattern.front();
        pattern.remove_prefix(1);
        if (unit == kQuote && !pattern.starts_with(kQuote))
            break;
        if (unit == kQuote)
            pattern.remove_prefix(1);
        literal += unit;
    }
    return literal;
}

bool IsWord(char16_t letter, std::size_t width)
{
    return letter == u'E' || letter == u'a' || ((letter == u'M' || letter == u'L') && width >= 3);
}

/// The number that a letter stands for; for words it counts from 0.
int ValueOf(char16_t letter, bool isWord, const CalendarTime& fields)
{
    switch (letter) {
    case u'y':
        return fields.year > 0 ? fields.year : 1 - fields.year;  // of its era
    case u'M':
    case u'L':
        return isWord ? fields.month - 1 : fields.month;
    case u'd':
        return fields.day;
    case u'E':
        return fields.dayOfWeek;
    case u'H':
        return fields.hour;
    case u'h':
        return (fields.hour + 11) % 12 + 1;
    case u'K':
        return fields.hour % 12;
    case u'k':
        return (fields.hour + 23) % 24 + 1;
    case u'm':
        return fields.minute;
    case u's':
        return fields.second;
    case u'a':
        return fields.hour / 12;
    default:
        return 0;
    }
}

}  // namespace

std::optional<DatePattern> DatePattern::Parse(std::u16string_view pattern, const DateWords& words)
{
    DatePattern parsed;
    parsed.m_digits = words.digits;
    while (!pattern.empty()) {
        const char16_t unit = pattern.front();
        if (unit == kQuote) {
            parsed.AppendLiteral(TakeQuoted(pattern));
            continue;
        }
        const std::size_t width = RunLength(pattern);
        if (!IsPatternLetter(unit))
            parsed.AppendLiteral(pattern.substr(0, width));
        else if (!parsed.Append(unit, width, words))
            return std::nullopt;
        pattern.remove_prefix(width);
    }
    return parsed;
}

void DatePattern::AppendLiteral(std::u16string_view literal)
{
    if (!m_steps.empty() && m_steps.back().letter == 0) {
        m_words.back() += literal;
        return;
    }
    m_steps.push_back({.firstWord = m_words.size()});
    m_words.emplace_back(literal);
}

bool DatePattern::Append(char16_t letter, std::size_t width, const DateWords& words)
{
    constexpr std::u16string_view kNumbers = u"yMLdHhKkms";
    constexpr std::size_t kMostDigits = 9;
    if (!IsWord(letter, width)) {
        m_steps.push_back({.letter = letter, .digitCount = width});
        return kNumbers.find(letter) != std::u16string_view::npos && width <= kMostDigits;
    }
    const std::vector<std::u16string> list = words.Words(letter, width);
    m_steps.push_back({.letter = letter, .firstWord = m_words.size()});
    m_words.insert(m_words.end(), list.begin(), list.end());
    return list.size() == (letter == u'a' ? 2U : letter == u'E' ? 7U : 12U);
}

void DatePattern::AppendTo(std::u16string& text, const CalendarTime& fields) const
{
    for (const Step& step : m_steps) {
        const bool isWord = step.digitCount == 0;
        auto value = static_cast<unsigned int>(ValueOf(step.letter, isWord, fields));
        if (isWord) {
            text += m_words[step.firstWord + value];
            continue;
        }
        if (step.letter == u'y' && step.digitCount == 2)
            value %= 100;  // "yy" alone leaves digits out
        std::array<char16_t, 10> digits{};
        auto first = digits.end();
        while (value > 0 || static_cast<std::size_t>(digits.end() - first) < step.digitCount) {
            *--first = m_digits[value % 10];
            value /= 10;
        }
        text.append(first, digits.end());
    }
}

}  // namespace rk::platform
