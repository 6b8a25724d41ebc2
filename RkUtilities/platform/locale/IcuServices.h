#pragma once

#include "RkUtilities/platform/locale/DatePattern.h"
#include "RkUtilities/platform/locale/DateText.h"
#include "RkUtilities/platform/locale/NumberFormats.h"

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

/// All that the library takes from ICU. Locales are names that `canonicalLocale` gave. Everything is safe from any thread
/// and throws `std::bad_alloc` only.
namespace rk::platform {

using AsciiPlaces = std::array<std::uint8_t, 128>;

/// A locale's order of names.
class NameOrder {
public:
    virtual ~NameOrder() = default;
    /// Appends the key of a text: keys compare byte by byte as the texts compare. Lone surrogates have a place too.
    virtual void AppendKey(std::u16string_view text, std::string& keys) const = 0;
    /// Where ASCII texts compare as the sequences of their characters' places do: the place of each character, 0 for
    /// one that does not count. Null in orders that are not so simple.
    [[nodiscard]] virtual const AsciiPlaces* PlacesOfAscii() const noexcept = 0;
};

/// A date format for a locale, with the days before 1582 Gregorian too.
class DateFormat {
public:
    virtual ~DateFormat() = default;
    /// The text in a zone that is so many seconds ahead of UTC at that time; the zone is one of that offset.
    [[nodiscard]] virtual std::u16string Text(std::int64_t utcSeconds, int utcOffset) const = 0;
    /// The text in the zone of that name, which is so many seconds ahead of UTC at that time.
    [[nodiscard]] virtual std::u16string TextWithZone(std::int64_t utcSeconds, int utcOffset,
                                                      const std::string& zoneName) const = 0;
    /// The format as a pattern for the Gregorian calendar; "" where it has another one.
    [[nodiscard]] virtual std::u16string Pattern() const = 0;
    /// The words and digits of that pattern, valid as long as the format; null where numbers are not written with ten
    /// digits of one unit each.
    [[nodiscard]] virtual const DateWords* Words() const = 0;
};

struct IcuServices {
    /// The name of a locale that ICU accepts; "root" for what it refuses.
    std::string (*canonicalLocale)(const std::string& name);
    std::unique_ptr<const NameOrder> (*nameOrder)(const std::string& locale);
    std::unique_ptr<const NumberFormats> (*numberFormats)(const std::string& locale);
    /// Null when ICU has no such format.
    std::unique_ptr<const DateFormat> (*dateFormat)(const std::string& locale, DateStyle date, DateStyle time);
    /// The text for `key` in the compiled resource files of a folder; "" without one.
    std::u16string (*tableText)(const std::string& folder, const std::string& locale, const char* key);
    /// Canonical caseless matching with full case folding.
    bool (*isSameFolded)(std::u16string_view first, std::u16string_view second);

    /// Simple case mappings of code points.
    std::int32_t (*upperCase)(std::int32_t codePoint);
    std::int32_t (*lowerCase)(std::int32_t codePoint);
    std::int32_t (*foldedCase)(std::int32_t codePoint);
    bool (*isAlphaNumeric)(char16_t unit);
    bool (*isWhiteSpace)(char16_t unit);
};

const IcuServices& Icu();

}  // namespace rk::platform
