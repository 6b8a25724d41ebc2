#pragma once

#include "RkUtilities/foundation/detail/Utf8.h"

#include <algorithm>
#include <cstddef>
#include <memory>
#include <string_view>

namespace rk {

/// Builds the UTF-8 of an entry by appending pieces of it, which takes no memory from the heap for a short one.
///
/// Each piece is encoded by itself: no pair of surrogates may be split between two. Throws `std::bad_alloc`.
class EntryBytes {
public:
    [[nodiscard]] std::string_view View() const noexcept { return {m_bytes, m_byteCount}; }

    void Append(std::u16string_view units)
    {
        if (units.size() > (m_capacity - m_byteCount) / kMostBytesAUnit)
            MakeRoomFor(CountEncodedBytes(units));
        m_byteCount = static_cast<std::size_t>(EncodeUtf8(units, m_bytes + m_byteCount) - m_bytes);
    }
    void AppendAscii(std::string_view characters)
    {
        MakeRoomFor(characters.size());
        std::copy(characters.begin(), characters.end(), m_bytes + m_byteCount);
        m_byteCount += characters.size();
    }

private:
    static constexpr std::size_t kMostBytesAUnit = 3;  // a pair has four
    static constexpr std::size_t kShortByteCount = 2048;

    void MakeRoomFor(std::size_t byteCount)
    {
        if (byteCount > m_capacity - m_byteCount)
            Grow(m_byteCount + byteCount);
    }
    void Grow(std::size_t leastByteCount)
    {
        const std::size_t capacity = std::max(leastByteCount, m_capacity + m_capacity / 2);
        auto larger = std::make_unique_for_overwrite<char[]>(capacity);
        std::copy_n(m_bytes, m_byteCount, larger.get());
        m_long = std::move(larger);
        m_bytes = m_long.get();
        m_capacity = capacity;
    }

    char* m_bytes = m_short;
    std::size_t m_byteCount = 0;
    std::size_t m_capacity = kShortByteCount;
    std::unique_ptr<char[]> m_long;
    char m_short[kShortByteCount];
};

}  // namespace rk
