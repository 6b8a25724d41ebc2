#include "RkUtilities/foundation/detail/TextStorage.h"

#include "RkUtilities/foundation/detail/UnitBlock.h"

#include <stdexcept>

namespace rk {

TextStorage::TextStorage(std::u16string_view units) : TextStorage(units.size()) {
    CopyUnits(units.data(), units.size(), OwnUnits());
    OwnUnits()[units.size()] = 0;
}

TextStorage TextStorage::Adopting(const char16_t* units, std::size_t length) noexcept {
    TextStorage storage;
    storage.m_place.pointer = units;
    storage.m_kind = Kind::Shared;
    storage.SetLength(length);
    return storage;
}

char16_t* TextStorage::MakeOwn() {
    if (!IsOwn())
        *this = TextStorage(std::u16string_view(Units(), static_cast<std::size_t>(m_length)));
    return OwnUnits();
}

void TextStorage::Release() noexcept { SharedUnits::Release(m_place.pointer); }

void TextStorage::ThrowTooLong() { throw std::length_error("a text holds at most INT_MAX - 1 code units"); }

}  // namespace rk
