#include "RkUtilities/foundation/detail/SpelledNumber.h"

#include "RkUtilities/platform/locale/Unicode.h"
#include "RkUtilities/platform/locale/Utf.h"

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <iterator>
#include <optional>
#include <string>

namespace rk {

namespace {

constexpr int kNoDigit = -1;

/// Takes signs, digits and separators off the front of a text.
class Reader {
public:
    Reader(std::u16string_view text, const NumberSpelling& spelling) : m_rest(text), m_spelling(spelling) {
        while (!m_rest.empty() && platform::IsWhiteSpace(m_rest.front()))
            m_rest.remove_prefix(1);
    }

    [[nodiscard]] std::u16string_view Rest() const noexcept { return m_rest; }
    void GoBackTo(std::u16string_view rest) noexcept { m_rest = rest; }

    bool Take(std::u16string_view units) noexcept {
        const bool here = !units.empty() && m_rest.starts_with(units);
        m_rest.remove_prefix(here ? units.size() : 0);
        return here;
    }
    bool TakeDecimalSeparator() noexcept { return Take(m_spelling.decimalSeparator); }
    bool TakeExponentLetter() noexcept { return Take(u"e") || Take(u"E"); }
    /// Takes a sign if it is there; whether the sign is a minus.
    bool TakeMinus() noexcept {
        if (NextDigitIsAscii())
            return false;
        if (Take(u"-") || Take(m_spelling.minusSigns[0]) || Take(m_spelling.minusSigns[1]))
            return true;
        static_cast<void>(Take(u"+") || Take(m_spelling.plusSign));
        return false;
    }
    int TakeDigit() noexcept {
        if (NextDigitIsAscii()) {
            const int digit = m_rest.front() - u'0';
            m_rest.remove_prefix(1);
            return digit;
        }
        return m_rest.empty() || m_rest.front() < 0x80 || m_spelling.digits == nullptr ? kNoDigit : TakeLocalDigit();
    }

private:
    [[nodiscard]] bool NextDigitIsAscii() const noexcept {
        return !m_rest.empty() && platform::IsAsciiDigit(m_rest.front());
    }
    int TakeLocalDigit() noexcept {
        const char16_t* next = m_rest.data();
        const char32_t character = platform::TakeCodePoint(next, m_rest.data() + m_rest.size());
        const auto* const digit = std::find(m_spelling.digits->begin(), m_spelling.digits->end(), character);
        if (digit == m_spelling.digits->end())
            return kNoDigit;
        m_rest.remove_prefix(static_cast<std::size_t>(next - m_rest.data()));
        return static_cast<int>(digit - m_spelling.digits->begin());
    }

    std::u16string_view m_rest;
    const NumberSpelling& m_spelling;
};

/// Takes digits to the end of `digits`.
void TakeDigits(Reader& reader, std::string& digits) {
    for (int digit = reader.TakeDigit(); digit != kNoDigit; digit = reader.TakeDigit())
        digits += static_cast<char>('0' + digit);
}

/// The value of digits, perhaps with "e" and an exponent: correctly rounded; infinity or 0 beyond the range. strtod,
/// which does so in all locales, serves beyond the range, and where the standard library reads integers alone.
template <class Double> Double ValueOf(const std::string& text) {
    Double value = 0;
    if constexpr (requires { std::from_chars(text.data(), text.data(), value); }) {
        if (std::from_chars(text.data(), text.data() + text.size(), value).ec == std::errc())
            return value;
    }
    return std::strtod(text.c_str(), nullptr);
}

/// Takes an integer, `most` in place of a larger magnitude; nothing without a digit.
std::optional<std::int64_t> TakeInteger(Reader& reader, std::int64_t most) {
    const bool negative = reader.TakeMinus();
    int digit = reader.TakeDigit();
    if (digit == kNoDigit)
        return std::nullopt;
    std::int64_t magnitude = 0;
    for (; digit != kNoDigit; digit = reader.TakeDigit())
        magnitude = std::min(magnitude * 10 + digit, most);
    return negative ? -magnitude : magnitude;
}

/// Takes an exponent if all of it is there.
std::int64_t TakeExponent(Reader& reader) {
    constexpr std::int64_t kMostExponent = 1'000'000'000'000;  // outweighs the digits of any text
    const std::u16string_view before = reader.Rest();
    if (!reader.TakeExponentLetter())
        return 0;
    const std::optional<std::int64_t> exponent = TakeInteger(reader, kMostExponent);
    if (!exponent)
        reader.GoBackTo(before);
    return exponent.value_or(0);
}

}  // namespace

bool ReadSpelledDouble(std::u16string_view text, const NumberSpelling& spelling, double& value,
                       std::u16string_view* rest) {
    Reader reader(text, spelling);
    const bool negative = reader.TakeMinus();
    std::string digits;
    std::int64_t exponent = 0;
    TakeDigits(reader, digits);
    if (reader.TakeDecimalSeparator()) {
        exponent = std::ssize(digits);
        TakeDigits(reader, digits);
        exponent -= std::ssize(digits);
    }
    if (digits.empty())
        return false;
    exponent += TakeExponent(reader);
    if (exponent != 0)
        digits.append("e").append(std::to_string(exponent));
    value = ValueOf<double>(digits);
    value = negative ? -value : value;
    if (rest != nullptr)
        *rest = reader.Rest();
    return true;
}

bool ReadSpelledInteger(std::u16string_view text, const NumberSpelling& spelling, std::int64_t& value) {
    Reader reader(text, spelling);
    const std::optional<std::int64_t> integer = TakeInteger(reader, kMostSpelledInteger);
    value = integer.value_or(value);
    return integer.has_value();
}

}  // namespace rk
