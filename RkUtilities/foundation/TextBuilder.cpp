#include "RkUtilities/foundation/TextBuilder.h"

#include "RkUtilities/foundation/SharedUnits.h"
#include "RkUtilities/foundation/Utf8.h"

#include <algorithm>
#include <stdexcept>

namespace rk {

void TextBuilder::Append(std::u16string_view units)
{
    std::copy(units.begin(), units.end(), Extend(units.size()));
}

void TextBuilder::Append(std::size_t count, char16_t unit)
{
    std::fill_n(Extend(count), count, unit);
}

void TextBuilder::AppendAscii(std::string_view characters)
{
    std::transform(characters.begin(), characters.end(), Extend(characters.size()),
                   [](char character) { return static_cast<char16_t>(static_cast<unsigned char>(character)); });
}

void TextBuilder::AppendUtf8(std::string_view bytes)
{
    constexpr std::size_t kBytesAtOnce = 1024;
    Reserve(Length() + GuessDecodedUnits(bytes));
    while (!bytes.empty()) {
        char16_t units[kBytesAtOnce + 3];
        const std::size_t free = m_capacity - Length();
        if (free >= std::min(bytes.size(), kBytesAtOnce) + 3) {
            char16_t* const end = Extend(0);
            static_cast<void>(Extend(DecodeUtf8(bytes, kBytesAtOnce, end)));
        } else {
            Append({units, DecodeUtf8(bytes, kBytesAtOnce, units)});
        }
    }
}

CString TextBuilder::Take() noexcept
{
    m_text.MutableUnits()[Length()] = 0;
    m_capacity = CString::kInlineUnits;
    return std::move(m_text);
}

void TextBuilder::Reserve(std::size_t unitCount)
{
    if (unitCount <= m_capacity)
        return;
    if (unitCount >= INT_MAX)
        throw std::length_error("a text holds at most INT_MAX - 1 code units");
    char16_t* const units = SharedUnits::Allocate(unitCount);
    std::copy(m_text.begin(), m_text.end(), units);
    m_text.Adopt(units, m_text.m_length);
    m_capacity = unitCount;
}

char16_t* TextBuilder::Extend(std::size_t count)
{
    const std::size_t length = Length();
    if (count > m_capacity - length)
        Reserve(std::max(length + count, std::min<std::size_t>(m_capacity + m_capacity / 2, INT_MAX - 1)));
    m_text.m_length = static_cast<int>(length + count);
    return m_text.MutableUnits() + length;
}

}  // namespace rk
