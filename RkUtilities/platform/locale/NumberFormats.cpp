#include "RkUtilities/platform/locale/NumberFormats.h"

#include "RkUtilities/platform/locale/IcuMemory.h"
#include "RkUtilities/platform/locale/ReadInteger.h"
#include "RkUtilities/platform/process/KeptByName.h"
#include "RkUtilities/platform/process/PerThread.h"
#include "RkUtilities/platform/process/SameAsLast.h"
#include "RkUtilities/platform/process/Threads.h"

#include <algorithm>
#include <cmath>
#include <limits>
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

std::u16string Text(const icu::UnicodeString& text) {
    if (text.isBogus() != 0)
        throw std::bad_alloc();
    return {text.getBuffer(), static_cast<std::size_t>(text.length())};
}

/// The locale. Latin digits replace numerals that are no decimal digits (Roman, Hebrew).
icu::Locale WithDecimalDigits(const std::string& name) {
    icu::Locale locale(name.c_str());
    UErrorCode error = U_ZERO_ERROR;
    const std::unique_ptr<icu::NumberingSystem> system(icu::NumberingSystem::createInstance(locale, error));
    if (U_FAILURE(error) != 0 || system == nullptr || system->isAlgorithmic() != 0) {
        error = U_ZERO_ERROR;
        locale.setKeywordValue("numbers", "latn", error);
    }
    return locale;
}

std::unique_ptr<const icu::DecimalFormat> MakeFormat(const icu::Locale& locale, UNumberFormatStyle style) {
    return MadeWhole([&] {
        UErrorCode error = U_ZERO_ERROR;
        std::unique_ptr<icu::NumberFormat> format(icu::NumberFormat::createInstance(locale, style, error));
        const auto* const decimal = dynamic_cast<const icu::DecimalFormat*>(format.get());
        if (U_FAILURE(error) == 0 && decimal != nullptr)
            static_cast<void>(format.release());
        return std::unique_ptr<const icu::DecimalFormat>(U_FAILURE(error) == 0 ? decimal : nullptr);
    });
}

int FirstWeekdayOf(const icu::Locale& locale) {
    return MadeWhole([&] {
        UErrorCode error = U_ZERO_ERROR;
        const std::unique_ptr<const icu::Calendar> calendar(icu::Calendar::createInstance(locale, error));
        return U_SUCCESS(error) != 0 && calendar != nullptr ? static_cast<int>(calendar->getFirstDayOfWeek(error)) : 0;
    });
}

/// ICU's exact decimal text of a number ("-12.5", "1.8446744073709551616E+19") as a whole number.
WholeNumber WholePart(std::string_view decimal) {
    constexpr std::int64_t kZerosBeyond = std::numeric_limits<std::uint64_t>::digits10 + 1;
    const bool negative = decimal.starts_with('-');
    decimal.remove_prefix(negative ? 1 : 0);
    std::string digits(decimal.substr(0, decimal.find('E')));
    decimal.remove_prefix(std::min(decimal.find_first_not_of("E+", digits.size()), decimal.size()));
    const std::size_t pointAt = std::min(digits.find('.'), digits.size());
    digits.erase(pointAt, 1);
    const auto wholeDigits = static_cast<std::int64_t>(pointAt) + ReadInteger<std::int64_t>(decimal).value_or(0);
    digits.resize(static_cast<std::size_t>(std::clamp<std::int64_t>(wholeDigits, 0, std::ssize(digits) + kZerosBeyond)),
                  '0');
    return {negative, digits.empty() ? 0 : ReadInteger<std::uint64_t>(digits).value_or(kMostMagnitude)};
}

}  // namespace

struct NumberFormats::Parser {
    std::unique_ptr<const icu::DecimalFormat> format;

    /// Whether ICU takes all of the text for a number.
    [[nodiscard]] bool Takes(const icu::UnicodeString& text, icu::Formattable& number) const {
        icu::ParsePosition position;
        format->parse(text, number, position);
        return position.getErrorIndex() < 0 && position.getIndex() == text.length();
    }
};

NumberFormats::NumberFormats(const std::string& locale) {
    const icu::Locale icuLocale = MadeWhole([&] { return WithDecimalDigits(locale); });
    auto plain = MakeFormat(icuLocale, UNUM_DECIMAL);
    const Symbols& symbols = *plain->getDecimalFormatSymbols();
    decimalSeparator = Text(symbols.getSymbol(Symbols::kDecimalSeparatorSymbol));
    minusSign = Text(symbols.getSymbol(Symbols::kMinusSignSymbol));
    plusSign = Text(symbols.getSymbol(Symbols::kPlusSignSymbol));
    for (std::size_t digit = 0; digit < digits.size(); ++digit)
        digits[digit] =
            static_cast<char32_t>(symbols.getConstDigitSymbol(static_cast<std::int32_t>(digit)).char32At(0));

    const auto money = MakeFormat(icuLocale, UNUM_CURRENCY);
    const Symbols& moneySymbols = *money->getDecimalFormatSymbols();
    currencyDecimalSeparator = Text(moneySymbols.getSymbol(Symbols::kMonetarySeparatorSymbol));
    currencyGroupingSeparator = Text(moneySymbols.getSymbol(Symbols::kMonetaryGroupingSeparatorSymbol));
    currencySymbol = Text(moneySymbols.getSymbol(Symbols::kCurrencySymbol));
    currencyFractionDigits = money->getMinimumFractionDigits();
    firstWeekday = FirstWeekdayOf(icuLocale);

    // ICU makes the parser at its first use, without a lock.
    m_parser = std::make_unique<const Parser>(Parser{std::move(plain)});
    icu::Formattable number;
    if (!m_parser->Takes(symbols.getConstDigitSymbol(1), number))
        throw std::bad_alloc();
}

NumberFormats::~NumberFormats() = default;

std::optional<WholeNumber> NumberFormats::ReadWhole(std::u16string_view text) const {
    if (text.empty() || text.size() > kMostParsedUnits)
        return std::nullopt;
    const icu::UnicodeString all(false, text.data(), static_cast<std::int32_t>(text.size()));  // no copy
    icu::Formattable number;
    if (!m_parser->Takes(all, number))
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
    if (error == U_MEMORY_ALLOCATION_ERROR || decimal.empty())
        throw std::bad_alloc();
    if (U_FAILURE(error) != 0)
        return std::nullopt;
    return WholePart({decimal.data(), static_cast<std::size_t>(decimal.length())});
}

const NumberFormats& NumberFormats::Of(LocaleUse use) {
    using Shared = std::shared_ptr<const NumberFormats>;  // kept for the process, and by each thread that asked last
    constexpr std::size_t kMostLocales = 64;
    static constinit KeptByName<Shared, kMostLocales> kept;  // guarded by Lock::Locale
    struct LastFormats {
        std::array<SameAsLast<std::string, Shared>, static_cast<std::size_t>(LocaleUse::Order) + 1> byUse;
    };
    const std::string& name = UserLocaleName(use);
    return *PerThread<LastFormats>().byUse[static_cast<std::size_t>(use)].For(name, [&] {
        const std::lock_guard lock(MutexOf(Lock::Locale));
        return kept.Of(name, [&] { return std::make_shared<const NumberFormats>(name); });
    });
}

}  // namespace rk::platform
