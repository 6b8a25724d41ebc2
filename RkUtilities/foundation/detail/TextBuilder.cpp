#include "RkUtilities/foundation/detail/TextBuilder.h"

#include "RkUtilities/foundation/detail/Utf8.h"

#include <climits>

namespace rk {

void TextBuilder::AppendAscii(std::string_view characters) {
    std::transform(characters.begin(), characters.end(), Extend(characters.size()),
                   [](char character) { return static_cast<char16_t>(static_cast<unsigned char>(character)); });
}

void TextBuilder::AppendUtf8(std::string_view bytes) {
    constexpr std::size_t kBytesAtOnce = 1024;
    constexpr std::size_t kMostOver = 3;  // units beyond the bytes asked for
    // More bytes than a text holds units may still fit as units.
    if (bytes.size() > m_capacity - m_length)
        Reserve(std::min<std::size_t>(m_length + bytes.size(), INT_MAX - 1));
    while (!bytes.empty()) {
        const std::size_t room = m_capacity - m_length;
        if (room >= std::min(bytes.size(), kBytesAtOnce + kMostOver)) {
            const std::size_t byteCount = room >= bytes.size() ? bytes.size() : room - kMostOver;
            m_length += DecodeUtf8(bytes, byteCount, m_units + m_length);
        } else {
            char16_t units[kBytesAtOnce + kMostOver];
            Append({units, DecodeUtf8(bytes, kBytesAtOnce, units)});
        }
    }
}

CString TextBuilder::Take() {
    const std::size_t length = std::exchange(m_length, 0);
    if (IsShort())
        return std::u16string_view(m_units, length);
    // A text with few ASCII characters leaves much of the room for its bytes unused.
    if (m_capacity - length > m_capacity / 4)
        return CString(std::u16string_view(m_units, length));
    m_capacity = kShortUnits;
    return CString(TextStorage::Adopting(std::exchange(m_units, m_short), length));
}

void TextBuilder::MoveToRoomFor(std::size_t unitCount) {
    TextStorage::CheckLength(unitCount);
    char16_t* const units = SharedUnits::Allocate(unitCount);
    std::copy_n(m_units, m_length, units);
    if (!IsShort())
        SharedUnits::Release(m_units);
    m_units = units;
    m_capacity = unitCount;
}

void TextBuilder::Grow(std::size_t leastUnitCount) {
    MoveToRoomFor(std::max(leastUnitCount, std::min<std::size_t>(m_capacity + m_capacity / 2, INT_MAX - 1)));
}

}  // namespace rk
