#include "RkUtilities/platform/locale/IcuParts.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <memory>
#include <mutex>
#include <unicode/calendar.h>
#include <unicode/dcfmtsym.h>
#include <unicode/decimfmt.h>
#include <unicode/numsys.h>
#include <unicode/uchar.h>

namespace rk::platform {

namespace {

constexpr std::uint64_t kMostMagnitude = std::numeric_limits<std::uint64_t>::max();
constexpr std::size_t kMostParsedUnits = 10000;  // ICU's time grows with the square of the length

using Symbols = icu::DecimalFormatSymbols;

std::u16string Text(const icu::UnicodeString& text)
{
    return {text.getBuffer(), static_cast<std::size_t>(text.length())};
}

/// The locale; where its numerals are no decimal digits (Roman, Hebrew), with the Latin ones.
icu::Locale WithDecimalDigits(const std::string& name)
{
    icu::Locale locale = icu::Locale::createCanonical(name.c_str());
    UErrorCode error = U_ZERO_ERROR;
    const std::unique_ptr<icu::NumberingSystem> system(icu::NumberingSystem::createInstance(locale, error));
    if (U_FAILURE(error) != 0 || system == nullptr || system->isAlgorithmic() != 0) {
        error = U_ZERO_ERROR;
        locale.setKeywordValue("numbers", "latn", error);
    }
    return locale;
}

std::unique_ptr<const icu::DecimalFormat> MakeFormat(const icu::Locale& locale, UNumberFormatStyle style)
{
    UErrorCode error = U_ZERO_ERROR;
    std::unique_ptr<const icu::NumberFormat> format(icu::NumberFormat::createInstance(locale, style, error));
    const auto* const decimal = dynamic_cast<const icu::DecimalFormat*>(format.get());
    if (U_FAILURE(error) != 0 || decimal == nullptr)
        return nullptr;
    static_cast<void>(format.release());
    return std::unique_ptr<const icu::DecimalFormat>(decimal);
}

/// ICU's exact decimal text of a number ("-12.5", "1.8446744073709551616E+19") as a whole number.
WholeNumber WholePart(std::string_view decimal)
{
    WholeNumber number;
    number.negative = decimal.substr(0, 1) == "-";
    decimal.remove_prefix(number.negative ? 1 : 0);
    const std::size_t exponentAt = std::min(decimal.find('E'), decimal.size());
    const std::string exponent(decimal.substr(std::min(exponentAt + 1, decimal.size())));
    decimal = decimal.substr(0, exponentAt);
    const std::size_t pointAt = std::min(decimal.find('.'), decimal.size());
    const std::int64_t wholeDigits =
        static_cast<std::int64_t>(pointAt) + (exponent.empty() ? 0 : std::strtoll(exponent.c_str(), nullptr, 10));
    std::int64_t position = 0;
    for (const char digit : decimal) {
        if (digit == '.')
            continue;
        if (position++ >= wholeDigits)
            return number;
        const auto value = static_cast<unsigned>(digit - '0');
        const bool fits = number.magnitude <= (kMostMagnitude - value) / 10;
        number.magnitude = fits ? number.magnitude * 10 + value : kMostMagnitude;
    }
    for (; position < wholeDigits && number.magnitude != 0 && number.magnitude != kMostMagnitude; ++position)
        number.magnitude = number.magnitude <= kMostMagnitude / 10 ? number.magnitude * 10 : kMostMagnitude;
    return number;
}

class IcuNumberFormats final : public NumberFormats {
public:
    explicit IcuNumberFormats(const std::string& name)
    {
        locale = name;
        const icu::Locale icuLocale = WithDecimalDigits(name);
        m_format = MakeFormat(icuLocale, UNUM_DECIMAL);
        if (m_format != nullptr)
            TakeNumbers(*m_format->getDecimalFormatSymbols());
        if (const auto currency = MakeFormat(icuLocale, UNUM_CURRENCY))
            TakeMoney(*currency);
        UErrorCode error = U_ZERO_ERROR;
        const std::unique_ptr<const icu::Calendar> calendar(icu::Calendar::createInstance(icuLocale, error));
        if (U_SUCCESS(error) != 0 && calendar != nullptr)
            firstWeekday = calendar->getFirstDayOfWeek(error);
    }

    std::optional<WholeNumber> ReadWhole(std::u16string_view text) const override
    {
        if (m_format == nullptr || text.empty() || text.size() > kMostParsedUnits)
            return std::nullopt;
        const icu::UnicodeString all(false, text.data(), static_cast<std::int32_t>(text.size()));  // no copy
        icu::Formattable number;
        icu::ParsePosition position;
        {
            static std::mutex parsing;  // ICU makes its parser on first use, with no lock that outsiders can see
            const std::lock_guard lock(parsing);
            m_format->parse(all, number, position);
        }
        if (position.getErrorIndex() >= 0 || position.getIndex() != all.length())
            return std::nullopt;
        UErrorCode error = U_ZERO_ERROR;
        const double value = number.getDouble(error);
        if (!std::isfinite(value)) {
            // An exponent beyond ICU's bounds also reads as infinity; the words for infinity have no digit.
            if (std::isnan(value) || std::none_of(text.begin(), text.end(), [](char16_t c) { return u_isdigit(c); }))
                return std::nullopt;
            return WholeNumber{std::signbit(value), kMostMagnitude};
        }
        const icu::StringPiece decimal = number.getDecimalNumber(error);
        if (U_FAILURE(error) != 0)
            return std::nullopt;
        return WholePart({decimal.data(), static_cast<std::size_t>(decimal.length())});
    }

private:
    void TakeNumbers(const Symbols& symbols)
    {
        decimalSeparator = Text(symbols.getSymbol(Symbols::kDecimalSeparatorSymbol));
        minusSign = Text(symbols.getSymbol(Symbols::kMinusSignSymbol));
        plusSign = Text(symbols.getSymbol(Symbols::kPlusSignSymbol));
        for (std::size_t digit = 0; digit < digits.size(); ++digit) {
            const int symbol =
                digit == 0 ? Symbols::kZeroDigitSymbol : Symbols::kOneDigitSymbol + static_cast<int>(digit) - 1;
            digits[digit] =
                static_cast<char32_t>(symbols.getSymbol(static_cast<Symbols::ENumberFormatSymbol>(symbol)).char32At(0));
        }
    }

    void TakeMoney(const icu::DecimalFormat& format)
    {
        const Symbols& symbols = *format.getDecimalFormatSymbols();
        currencyDecimalSeparator = Text(symbols.getSymbol(Symbols::kMonetarySeparatorSymbol));
        currencyGroupingSeparator = Text(symbols.getSymbol(Symbols::kMonetaryGroupingSeparatorSymbol));
        currencySymbol = Text(symbols.getSymbol(Symbols::kCurrencySymbol));
        currencyFractionDigits = format.getMinimumFractionDigits();
    }

    std::unique_ptr<const icu::DecimalFormat> m_format;  // parsing through const is safe from any thread
};

}  // namespace

std::unique_ptr<const NumberFormats> MakeNumberFormats(const std::string& locale)
{
    return std::make_unique<IcuNumberFormats>(locale);
}

}  // namespace rk::platform
