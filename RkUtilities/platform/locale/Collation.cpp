#include "RkUtilities/platform/locale/Collation.h"

#include "RkUtilities/platform/locale/IcuMemory.h"
#include "RkUtilities/platform/locale/UserLocale.h"
#include "RkUtilities/platform/process/KeptByName.h"
#include "RkUtilities/platform/process/Threads.h"

#include <algorithm>
#include <array>
#include <climits>
#include <cstdint>
#include <memory>
#include <mutex>
#include <new>
#include <optional>
#include <set>
#include <tuple>
#include <unicode/coll.h>
#include <utility>

namespace rk::platform {

namespace {

std::unique_ptr<const icu::Collator> MakeCollator(const std::string& locale) {
    // "C" orders by code units, upper case first. Without regard to case that order is the root locale's.
    const icu::Locale order = locale == "en_US_POSIX" ? icu::Locale::getRoot() : icu::Locale(locale.c_str());
    return MadeWhole([&] {
        UErrorCode error = U_ZERO_ERROR;
        std::unique_ptr<icu::Collator> collator(icu::Collator::createInstance(order, error));
        if (U_FAILURE(error) != 0 && error != U_MEMORY_ALLOCATION_ERROR) {
            error = U_ZERO_ERROR;
            collator.reset(icu::Collator::createInstance(icu::Locale::getRoot(), error));
        }
        if (collator == nullptr || U_FAILURE(error) != 0)
            throw std::bad_alloc();
        collator->setStrength(icu::Collator::SECONDARY);
        return std::unique_ptr<const icu::Collator>(std::move(collator));
    });
}

void AppendKeyOf(const icu::Collator& collator, std::u16string_view text, std::string& keys) {
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

bool Has(const icu::Collator& collator, UColAttribute attribute, UColAttributeValue value) {
    UErrorCode error = U_ZERO_ERROR;
    return collator.getAttribute(attribute, error) == value && U_SUCCESS(error) != 0;
}

/// In the root's order each ASCII character has a place: no group ("ch") counts as a character, and no character as
/// two. A locale's keywords may change that.
bool IsRootOrder(const icu::Collator& collator) {
    UErrorCode error = U_ZERO_ERROR;
    return *collator.getLocale(ULOC_ACTUAL_LOCALE, error).getLanguage() == '\0' && U_SUCCESS(error) != 0 &&
           Has(collator, UCOL_NUMERIC_COLLATION, UCOL_OFF) && Has(collator, UCOL_CASE_LEVEL, UCOL_OFF);
}

/// The place of each ASCII character in an order, 0 for a character that does not count. ASCII texts compare as the
/// sequences of their characters' places compare.
using AsciiPlaces = std::array<std::uint8_t, 128>;

AsciiPlaces PlacesOf(const icu::Collator& collator) {
    AsciiPlaces places{};
    std::array<std::string, std::tuple_size_v<AsciiPlaces>> keys;
    for (std::size_t character = 0; character < keys.size(); ++character) {
        const auto unit = static_cast<char16_t>(character);
        AppendKeyOf(collator, {&unit, 1}, keys[character]);
    }
    std::set<std::string> ascending(keys.begin(), keys.end());
    std::string keyOfNothing;
    AppendKeyOf(collator, u"", keyOfNothing);
    ascending.insert(keyOfNothing);  // the least of all
    std::transform(keys.begin(), keys.end(), places.begin(), [&](const std::string& key) {
        return static_cast<std::uint8_t>(std::distance(ascending.begin(), ascending.find(key)));
    });
    return places;
}

/// A locale's order of names. It has places where it is the root's order.
struct NameOrder {
    std::unique_ptr<const icu::Collator> collator;
    std::optional<AsciiPlaces> places;

    explicit NameOrder(const std::string& locale) : collator(MakeCollator(locale)) {
        std::string ignored;
        AppendKeyOf(*collator, u"e\u0301", ignored);  // with what ICU makes at the first use, while the lock is held
        if (IsRootOrder(*collator))
            places = PlacesOf(*collator);
    }
};

std::shared_ptr<const NameOrder> OrderOf(const std::string& locale) {
    constexpr std::size_t kMostOrders = 16;
    static constinit KeptByName<std::shared_ptr<const NameOrder>, kMostOrders> orders;
    const std::lock_guard lock(MutexOf(Lock::Locale));
    return orders.Of(locale, [&] { return std::make_shared<const NameOrder>(locale); });
}

bool IsAscii(std::u16string_view text) noexcept {
    return std::all_of(text.begin(), text.end(), [](char16_t unit) { return unit < 0x80; });
}

void AppendPlaces(const AsciiPlaces& places, std::u16string_view text, std::string& keys) {
    for (const char16_t unit : text) {
        if (const std::uint8_t place = places[unit]; place != 0)
            keys += static_cast<char>(place);
    }
}

}  // namespace

TextRow<char> CollationKeysOf(const TextRow<char16_t>& texts) {
    const std::shared_ptr<const NameOrder> order = OrderOf(UserLocaleName(LocaleUse::Order));
    const bool placesDecide = order->places && IsAscii(texts.units);
    TextRow<char> keys;
    keys.ends.reserve(texts.Count());
    for (std::size_t i = 0; i < texts.Count(); ++i) {
        if (placesDecide)
            AppendPlaces(*order->places, texts[i], keys.units);
        else
            AppendKeyOf(*order->collator, texts[i], keys.units);
        keys.ends.push_back(keys.units.size());
    }
    return keys;
}

}  // namespace rk::platform
