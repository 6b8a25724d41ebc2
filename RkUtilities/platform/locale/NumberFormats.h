#pragma once

#include "RkUtilities/platform/locale/UserLocale.h"

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace rk::platform {

/// A whole number between -UINT64_MAX and UINT64_MAX.
struct WholeNumber {
    bool negative = false;
    std::uint64_t magnitude = 0;
};

/// What a locale says about numbers, money and the week: CLDR's data as ICU gives them. Immutable.
/// A locale's data are made once and kept by its name; a name that ICU does not know gets the data of ICU's fallback.
/// Without memory for them `std::bad_alloc` is thrown, and the next call makes them.
class NumberFormats {
public:
    /// The formats of the user's locale for that use, at this moment. Valid until the thread's next call for the same
    /// use. Costs neither an ICU object nor an allocation while the locale stays.
    static const NumberFormats& Of(LocaleUse use);

    explicit NumberFormats(const std::string& locale);
    ~NumberFormats();
    NumberFormats& operator=(NumberFormats&&) = delete;

    /// The number that all of `text` is in the locale's plain decimal format. A fraction is cut off, and a number
    /// beyond a `WholeNumber` becomes the largest of its sign; infinity and "not a number" are no numbers here.
    [[nodiscard]] std::optional<WholeNumber> ReadWhole(std::u16string_view text) const;

    std::u16string decimalSeparator;
    std::u16string minusSign;
    std::u16string plusSign;
    std::array<char32_t, 10> digits{};
    std::u16string currencyDecimalSeparator;
    std::u16string currencyGroupingSeparator;
    std::u16string currencySymbol;
    int currencyFractionDigits = 0;
    int firstWeekday = 0;  // 1 is Sunday, 7 Saturday

private:
    struct Parser;  // ICU's
    std::unique_ptr<const Parser> m_parser;
};

}  // namespace rk::platform
