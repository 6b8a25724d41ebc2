#include "RkUtilities/foundation/detail/SpelledNumber.h"

#include "RkUtilities/platform/locale/Unicode.h"
#include "RkUtilities/platform/locale/Utf.h"

#include <algorithm>
#include <charconv>
#include <climits>
#include <cstdint>
#include <cstdlib>
#include <iterator>
#include <limits>

namespace rk {

namespace {

constexpr int kNoDigit = -1;

constexpr bool IsAsciiDigit(char16_t unit)
{
    return unit >= u'0' && unit <= u'9';
}

/// Takes signs, digits and separators off the front of a text.
class Reader {
public:
    Reader(std::u16string_view text, const NumberSpelling& spelling) : m_rest(text), m_spelling(spelling)
    {
        while (!m_rest.empty() && platform::IsWhiteSpace(m_rest.front()))
            m_rest.remove_prefix(1);
    }

    [[nodiscard]] std::u16string_view Rest() const noexcept { return m_rest; }
    void GoBackTo(std::u16string_view rest) noexcept { m_rest = rest; }

    bool Take(std::u16string_view units) noexcept
    {
        const bool here = !units.empty() && m_rest.starts_with(units);
        m_rest.remove_prefix(here ? units.size() : 0);
        return here;
    }
    bool TakeDecimalSeparator() noexcept { return Take(m_spelling.decimalSeparator); }
    bool TakeExponentLetter() noexcept { return Take(u"e") || Take(u"E"); }
    /// Takes a sign if there is one; whether it is a minus.
    bool TakeMinus() noexcept
    {
        if (NextDigitIsAscii())
            return false;
        if (Take(u"-") || Take(m_spelling.minusSigns[0]) || Take(m_spelling.minusSigns[1]))
            return true;
        static_cast<void>(Take(u"+") || Take(m_spelling.plusSign));
        return false;
    }
    int TakeDigit() noexcept
    {
        if (NextDigitIsAscii()) {
            const int digit = m_rest.front() - u'0';
            m_rest.remove_prefix(1);
            return digit;
        }
        return m_rest.empty() || m_rest.front() < 0x80 || m_spelling.digits == nullptr ? kNoDigit : TakeLocalDigit();
    }

private:
    [[nodiscard]] bool NextDigitIsAscii() const noexcept { return !m_rest.empty() && IsAsciiDigit(m_rest.front()); }
    int TakeLocalDigit() noexcept
    {
        const char16_t* next = m_rest.data();
        const char32_t character = platform::TakeCodePoint(next, m_rest.data() + m_rest.size());
        const auto* const known = std::find(m_spelling.digits->begin(), m_spelling.digits->end(), character);
        if (known == m_spelling.digits->end())
            return kNoDigit;
        m_rest.remove_prefix(static_cast<std::size_t>(next - m_rest.data()));
        return static_cast<int>(known - m_spelling.digits->begin());
    }

    std::u16string_view m_rest;
    const NumberSpelling& m_spelling;
};

/// Reads digits, "e" and an exponent, ended by a zero. A standard library that reads only integers by itself, as libc++ before
/// 20, leaves it to strtod, which treats such a text alike in all locales.
template <class Double>
std::errc ReadDouble(const char* text, const char* end, Double& value)
{
    if constexpr (requires { std::from_chars(text, end, value); })
        return std::from_chars(text, end, value).ec;
    value = std::strtod(text, nullptr);
    return {};
}

/// A decimal number of any length, kept as the digits that decide its `double`: digits times ten to an exponent.
class Decimal {
public:
    void AddWholeDigit(int digit) noexcept { m_exponent += Add(digit) ? 0 : 1; }
    void AddFractionDigit(int digit) noexcept { m_exponent -= Add(digit) ? 1 : 0; }
    void AddExponent(std::int64_t exponent) noexcept { m_exponent += exponent; }

    /// Correctly rounded; infinity and 0 beyond the range.
    [[nodiscard]] double Value() noexcept
    {
        if (m_length == 0)
            return 0;
        if (m_digitsLost) {
            m_text[m_length++] = '1';  // any digit after those kept tells which side of a tie the number is on
            --m_exponent;
        }
        const std::int64_t wholeDigits = m_length + m_exponent;
        if (wholeDigits > kMostWholeDigits)
            return std::numeric_limits<double>::infinity();
        if (wholeDigits < -kMostWholeDigits)
            return 0;
        m_text[m_length] = 'e';
        char* const end = std::to_chars(m_text + m_length + 1, std::end(m_text), m_exponent).ptr;
        *end = '\0';
        double value = 0;
        if (ReadDouble(m_text, end, value) == std::errc::result_out_of_range)
            value = wholeDigits > 0 ? std::numeric_limits<double>::infinity() : 0;
        return value;
    }

private:
    static constexpr std::int64_t kMostDigits = 770;       // a tie between two doubles has at most 767
    static constexpr std::int64_t kMostWholeDigits = 400;  // doubles have fewer than 310, and -323 at least

    /// Whether the digit shifts those before it: leading zeros do, digits that are not kept do not.
    bool Add(int digit) noexcept
    {
        if (m_length == kMostDigits) {
            m_digitsLost = m_digitsLost || digit != 0;
            return false;
        }
        if (m_length != 0 || digit != 0)
            m_text[m_length++] = static_cast<char>('0' + digit);
        return true;
    }

    char m_text[kMostDigits + 32];
    std::int64_t m_length = 0;
    std::int64_t m_exponent = 0;
    bool m_digitsLost = false;
};

/// Takes an exponent if all of it is there.
std::int64_t TakeExponent(Reader& reader)
{
    constexpr std::int64_t kMostExponent = 1'000'000'000'000;  // outweighs the digits of any text
    const std::u16string_view before = reader.Rest();
    if (!reader.TakeExponentLetter())
        return 0;
    const bool negative = reader.TakeMinus();
    int digit = reader.TakeDigit();
    if (digit == kNoDigit) {
        reader.GoBackTo(before);
        return 0;
    }
    std::int64_t exponent = 0;
    for (; digit != kNoDigit; digit = reader.TakeDigit())
        exponent = std::min(exponent * 10 + digit, kMostExponent);
    return negative ? -exponent : exponent;
}

}  // namespace

bool ReadSpelledDouble(std::u16string_view text, const NumberSpelling& spelling, double& value)
{
    Reader reader(text, spelling);
    const bool negative = reader.TakeMinus();
    Decimal decimal;
    bool anyDigit = false;
    for (int digit = reader.TakeDigit(); digit != kNoDigit; digit = reader.TakeDigit()) {
        decimal.AddWholeDigit(digit);
        anyDigit = true;
    }
    if (reader.TakeDecimalSeparator()) {
        for (int digit = reader.TakeDigit(); digit != kNoDigit; digit = reader.TakeDigit()) {
            decimal.AddFractionDigit(digit);
            anyDigit = true;
        }
    }
    if (!anyDigit)
        return false;
    decimal.AddExponent(TakeExponent(reader));
    value = negative ? -decimal.Value() : decimal.Value();
    return true;
}

bool ReadSpelledInteger(std::u16string_view text, const NumberSpelling& spelling, int& value)
{
    Reader reader(text, spelling);
    const bool negative = reader.TakeMinus();
    int digit = reader.TakeDigit();
    if (digit == kNoDigit)
        return false;
    const std::int64_t most = negative ? -std::int64_t{INT_MIN} : INT_MAX;
    std::int64_t magnitude = 0;
    for (; digit != kNoDigit; digit = reader.TakeDigit())
        magnitude = std::min(magnitude * 10 + digit, most);
    value = static_cast<int>(negative ? -magnitude : magnitude);
    return true;
}

}  // namespace rk
