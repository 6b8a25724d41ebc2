#include "RkUtilities/foundation/detail/FormatOutput.h"

#include "RkUtilities/foundation/detail/Utf8.h"

#include <cstdint>
#include <cstring>

namespace rk {

namespace {

/// Widens the ASCII characters at the front of a short text; returns how many there are.
std::size_t WidenShortAscii(std::string_view bytes, char16_t* units) noexcept
{
    constexpr std::uint64_t kHighBits = 0x8080808080808080U;
    std::size_t i = 0;
    for (std::uint64_t eight = 0; i + sizeof eight <= bytes.size(); i += sizeof eight) {
        std::memcpy(&eight, bytes.data() + i, sizeof eight);
        if ((eight & kHighBits) != 0)
            break;
        for (std::size_t j = i; j < i + sizeof eight; ++j)
            units[j] = static_cast<unsigned char>(bytes[j]);
    }
    while (i < bytes.size() && static_cast<unsigned char>(bytes[i]) < 0x80) {
        units[i] = static_cast<unsigned char>(bytes[i]);
        ++i;
    }
    return i;
}

}  // namespace

void FormatOutput::AppendAscii(std::string_view characters) noexcept
{
    if (char16_t* const place = Take(characters.size())) {
        for (std::size_t i = 0; i < characters.size(); ++i)
            place[i] = static_cast<unsigned char>(characters[i]);
    }
}

void FormatOutput::AppendUtf8(std::string_view bytes) noexcept
{
    constexpr std::size_t kShortBytes = 64;  // longer ones are worth the decoder's call
    constexpr std::size_t kBytesAtOnce = 1024;
    if (bytes.size() <= kShortBytes && m_count + bytes.size() <= m_room.size()) {
        const std::size_t count = WidenShortAscii(bytes, m_room.data() + m_count);
        m_count += count;
        bytes.remove_prefix(count);
    }
    while (!bytes.empty()) {
        if (m_count + bytes.size() <= m_room.size()) {  // never more units than bytes
            m_count += DecodeUtf8(bytes, bytes.size(), m_room.data() + m_count);
        } else {
            char16_t units[kBytesAtOnce + 3];
            Append({units, DecodeUtf8(bytes, kBytesAtOnce, units)});
        }
    }
}

}  // namespace rk
