#pragma once

#include <algorithm>
#include <cstddef>
#include <span>
#include <string_view>

namespace rk {

/// Takes the units of a result one after the other: writes them as long as its room suffices, and counts all of them.
/// So a short result is made at once, and a longer one knows its length before it takes memory and is made again.
class FormatOutput {
public:
    explicit FormatOutput(std::span<char16_t> room) noexcept : m_room(room) {}

    [[nodiscard]] std::size_t UnitCount() const noexcept { return m_count; }
    [[nodiscard]] bool Fits() const noexcept { return m_count <= m_room.size(); }

    void Append(std::u16string_view units) noexcept
    {
        if (char16_t* const place = Take(units.size()))
            std::copy(units.begin(), units.end(), place);
    }
    void Append(char16_t unit) noexcept
    {
        if (char16_t* const place = Take(1))
            *place = unit;
    }
    void Append(std::size_t count, char16_t unit) noexcept
    {
        if (char16_t* const place = Take(count))
            std::fill_n(place, count, unit);
    }
    void AppendAscii(std::string_view characters) noexcept;
    void AppendUtf8(std::string_view bytes) noexcept;

private:
    /// Where the next units stand; null once they do not fit.
    char16_t* Take(std::size_t count) noexcept
    {
        m_count += count;
        return Fits() ? m_room.data() + (m_count - count) : nullptr;
    }

    std::span<char16_t> m_room;
    std::size_t m_count = 0;
};

}  // namespace rk
