#include "RkUtilities/platform/icu/IcuParts.h"

#include <climits>
#include <new>
#include <unicode/coll.h>

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

class IcuNameOrder final : public NameOrder {
public:
    explicit IcuNameOrder(const std::string& locale) : m_collator(MakeCollator(locale)) {}

    std::string Key(std::u16string_view text) const override
    {
        if (text.size() > INT_MAX)
            throw std::bad_alloc();
        const auto length = static_cast<std::int32_t>(text.size());
        std::string key(64, '\0');
        for (;;) {
            const auto room = static_cast<std::int32_t>(key.size());
            const std::int32_t size =
                m_collator->getSortKey(text.data(), length, reinterpret_cast<std::uint8_t*>(key.data()), room);
            if (size <= 0)
                throw std::bad_alloc();
            key.resize(static_cast<std::size_t>(size));
            if (size <= room)
                return key;
        }
    }

private:
    std::unique_ptr<const icu::Collator> m_collator;
};

}  // namespace

std::unique_ptr<const NameOrder> MakeNameOrder(const std::string& locale)
{
    return std::make_unique<IcuNameOrder>(locale);
}

}  // namespace rk::platform
