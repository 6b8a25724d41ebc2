// Truth values and integers to text, and texts that are a number as a whole.
#include "RkUtilities/numbers/CrkStringConversionUtilities.h"

#include "RkUtilities/platform/locale/NumberFormats.h"
#include "RkUtilities/platform/locale/Unicode.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>

namespace {

using rk::platform::LocaleUse;
using rk::platform::NumberFormats;
using rk::platform::WholeNumber;

constexpr CString kTrue = CString::Literal(u"true");
constexpr CString kFalse = CString::Literal(u"false");
constexpr unsigned short kCurrencySymbols[] = {u'$', u'\u20AC', u'\u00A3', u'\u00A5', u'\u20BD', 0};

/// A text of nothing but ASCII digits after an optional "-", which every locale reads alike.
std::optional<WholeNumber> ReadPlainDigits(std::u16string_view text) {
    constexpr std::uint64_t kMost = std::numeric_limits<std::uint64_t>::max();
    WholeNumber number;
    number.negative = !text.empty() && text.front() == u'-';
    text.remove_prefix(number.negative ? 1 : 0);
    if (text.empty())
        return std::nullopt;
    for (const char16_t unit : text) {
        if (!rk::platform::IsAsciiDigit(unit))
            return std::nullopt;
        const unsigned digit = unit - u'0';
        const bool fits = number.magnitude < kMost / 10 || number.magnitude <= (kMost - digit) / 10;
        number.magnitude = fits ? number.magnitude * 10 + digit : kMost;
    }
    return number;
}

/// Stores the number as the nearest value of the type.
template <class Integer> bool ReadWhole(std::u16string_view text, Integer& value) {
    std::optional<WholeNumber> number = ReadPlainDigits(text);
    if (!number)
        number = NumberFormats::Of(LocaleUse::Numbers).ReadWhole(text);
    if (!number)
        return false;
    using Limits = std::numeric_limits<Integer>;
    const std::uint64_t most = Limits::max();
    if (!number->negative)
        value = static_cast<Integer>(std::min(number->magnitude, most));
    else if (!Limits::is_signed)
        value = 0;
    else
        value =
            number->magnitude > most ? Limits::min() : static_cast<Integer>(-static_cast<Integer>(number->magnitude));
    return true;
}

}  // namespace

constinit unsigned short const* const CrkStringConversionUtilities::CurrencySymbols = kCurrencySymbols;

bool CrkStringConversionUtilities::StringToBool(const CString& text, bool& value) {
    if (text != kTrue && text != kFalse)
        return false;
    value = text == kTrue;
    return true;
}

CString CrkStringConversionUtilities::BoolToString(bool value, bool asWords) {
    if (asWords)
        return value ? kTrue : kFalse;
    return LongToString(value ? 1 : 0);
}

CString CrkStringConversionUtilities::LongToString(long value) { return std::to_string(value); }

CString CrkStringConversionUtilities::ULongToString(unsigned long value) { return std::to_string(value); }

bool CrkStringConversionUtilities::StringToUInteger(const CString& text, unsigned int& value) {
    return ReadWhole(text, value);
}

bool CrkStringConversionUtilities::StringToLong(const CString& text, long& value) { return ReadWhole(text, value); }

bool CrkStringConversionUtilities::StringToULong(const CString& text, int, unsigned long& value) {
    return ReadWhole(text, value);
}

bool CrkStringConversionUtilities::StringToULong(const CString& text, unsigned long& value) {
    return ReadWhole(text, value);
}

bool CrkStringConversionUtilities::IsStringULong(const CString& text) {
    unsigned long ignored = 0;
    return ReadWhole(text, ignored);
}
