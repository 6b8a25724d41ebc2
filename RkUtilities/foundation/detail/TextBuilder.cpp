#include "RkUtilities/foundation/detail/TextBuilder.h"

#include "RkUtilities/foundation/detail/Utf8.h"

#include <stdexcept>
#include <utility>

namespace rk {

void TextBuilder::AppendAscii(std::string_view characters)
{
    std::transform(characters.begin(), characters.end(), Extend(characters.size()),
                   [](char character) { return static_cast<char16_t>(static_cast<unsigned char>(character)); });
}

void TextBuilder::AppendUtf8(std::string_view bytes)
{
    constexpr std::size_t kBytesAtOnce = 1024;
    constexpr std::size_t kMostOver = 3;  // units beyond the bytes asked for
    if (bytes.size() >
        m_capacity - m_length)  // where more bytes come than a text holds units, their units may still fit
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

CString TextBuilder::Take()
{
    if (IsShort())
        return {CString::Utf16, {m_units, std::exchange(m_length, 0)}};
    if (m_capacity - m_length > m_capacity / 4)
        MoveToRoomFor(m_length);  // as texts of few ASCII characters leave much of the room for their bytes
    m_units[m_length] = 0;
    m_capacity = kShortUnits;
    CString text;
    text.Adopt(std::exchange(m_units, m_short), static_cast<int>(std::exchange(m_length, 0)));
    return text;
}

void TextBuilder::MoveToRoomFor(std::size_t unitCount)
{
    CheckLength(unitCount);
    char16_t* const units = SharedUnits::Allocate(unitCount);
    std::copy_n(m_units, m_length, units);
    if (!IsShort())
        SharedUnits::Release(m_units);
    m_units = units;
    m_capacity = unitCount;
}

void TextBuilder::ThrowTooLong()
{
    throw std::length_error("a text holds at most INT_MAX - 1 code units");
}

void TextBuilder::Grow(std::size_t leastUnitCount)
{
    MoveToRoomFor(std::max(leastUnitCount, std::min<std::size_t>(m_capacity + m_capacity / 2, INT_MAX - 1)));
}

}  // namespace rk
