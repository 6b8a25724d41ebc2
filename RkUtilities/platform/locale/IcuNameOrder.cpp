#include "RkUtilities/platform/locale/IcuParts.h"

#include <algorithm>
#include <climits>
#include <map>
#include <new>
#include <optional>
#include <unicode/coll.h>
#include <utility>
#include <vector>

namespace rk::platform {

namespace {

std::unique_ptr<const icu::Collator> MakeCollator(const std::string& locale)
{
    UErrorCode error = U_ZERO_ERROR;
    // The order of "C" is that of code units, upper case first; without regard to case only the root's is left.
    const icu::Locale order =
        locale == "en_US_POSIX" ? icu::Locale::getRoot() : icu::Locale::createCanonical(locale.c_str());
    std::unique_ptr<icu::Collator> collator(icu::Collator::createInstance(order, error));
    if (U_FAILURE(error) != 0) {
        error = U_ZERO_ERROR;
        collator.reset(icu::Collator::createInstance(icu::Locale::getRoot(), error));
    }
    if (collator == nullptr || U_FAILURE(error) != 0)
        throw std::bad_alloc();
    collator->setStrength(icu::Collator::SECONDARY);
    return collator;
}

void AppendKeyOf(const icu::Collator& collator, std::u16string_view text, std::string& keys)
{
    if (text.size() > INT_MAX)
        throw std::bad_alloc();
    constexpr std::int32_t kRoomOfMost = 64;
    const std::size_t start = keys.size();
    for (std::int32_t room = 0, size = kRoomOfMost; size > room;) {
        room = size;
        keys.resize(start + static_cast<std::size_t>(room));
        size = collator.getSortKey(text.data(), static_cast<std::int32_t>(text.size()),
                                   reinterpret_cast<std::uint8_t*>(keys.data() + start), room);
        if (size <= 0)
            throw std::bad_alloc();
        keys.resize(start + static_cast<std::size_t>(std::min(size, room)));
    }
}

bool Has(const icu::Collator& collator, UColAttribute attribute, UColAttributeValue value)
{
    UErrorCode error = U_ZERO_ERROR;
    return collator.getAttribute(attribute, error) == value && U_SUCCESS(error) != 0;
}

/// The root's order knows no groups of ASCII characters ("ch") and none that stands for two; where nothing is changed
/// but the order of the characters, each of them has one place.
bool IsRootOrder(const icu::Collator& collator)
{
    UErrorCode error = U_ZERO_ERROR;
    return *collator.getLocale(ULOC_ACTUAL_LOCALE, error).getLanguage() == '\0' && U_SUCCESS(error) != 0 &&
           Has(collator, UCOL_NUMERIC_COLLATION, UCOL_OFF) && Has(collator, UCOL_CASE_LEVEL, UCOL_OFF);
}

AsciiPlaces PlacesOf(const icu::Collator& collator)
{
    const auto keyOf = [&](std::u16string_view text) {
        std::string key;
        AppendKeyOf(collator, text, key);
        return key;
    };
    const std::string keyOfNothing = keyOf(u"");
    AsciiPlaces places{};
    std::map<std::string, std::vector<std::size_t>> characters;
    for (std::size_t character = 0; character < places.size(); ++character) {
        const auto unit = static_cast<char16_t>(character);
        if (std::string key = keyOf({&unit, 1}); key != keyOfNothing)
            characters[std::move(key)].push_back(character);
    }
    std::uint8_t place = 0;
    for (const auto& [key, alike] : characters) {
        ++place;
        for (const std::size_t character : alike)
            places[character] = place;
    }
    return places;
}

class IcuNameOrder final : public NameOrder {
public:
    explicit IcuNameOrder(const std::string& locale) : m_collator(MakeCollator(locale))
    {
        if (IsRootOrder(*m_collator))
            m_places = PlacesOf(*m_collator);
    }

    void AppendKey(std::u16string_view text, std::string& keys) const override { AppendKeyOf(*m_collator, text, keys); }
    const AsciiPlaces* PlacesOfAscii() const noexcept override { return m_places ? &*m_places : nullptr; }

private:
    std::unique_ptr<const icu::Collator> m_collator;
    std::optional<AsciiPlaces> m_places;
};

}  // namespace

std::unique_ptr<const NameOrder> MakeNameOrder(const std::string& locale)
{
    return std::make_unique<IcuNameOrder>(locale);
}

}  // namespace rk::platform
