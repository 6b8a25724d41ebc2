#pragma once

#include "RkUtilities/foundation/CString.h"
#include "RkUtilities/foundation/detail/TextStorage.h"

#include <algorithm>
#include <cstddef>
#include <string_view>
#include <utility>

namespace rk {

/// Builds a text by appending. A short text grows in the builder itself and is copied out at its final size; a longer
/// text grows in one piece of memory that the text then takes over.
/// Throws `std::length_error` where the text would grow beyond what `CString` holds, `std::bad_alloc` without memory.
class TextBuilder {
public:
    /// Room for `unitCount` units without another allocation.
    explicit TextBuilder(std::size_t unitCount = 0) { Reserve(unitCount); }
    TextBuilder& operator=(TextBuilder&&) = delete;
    ~TextBuilder() {
        if (!IsShort())
            SharedUnits::Release(m_units);
    }

    [[nodiscard]] std::size_t Length() const noexcept { return m_length; }
    [[nodiscard]] std::u16string_view View() const noexcept { return {m_units, m_length}; }
    void Append(std::u16string_view units) { std::copy(units.begin(), units.end(), Extend(units.size())); }
    void Append(char16_t unit) { *Extend(1) = unit; }
    void Append(std::size_t count, char16_t unit) { std::fill_n(Extend(count), count, unit); }
    void AppendAscii(std::string_view characters);
    void AppendUtf8(std::string_view bytes);
    /// Makes the text longer by `count` units, to be written at once.
    char16_t* Extend(std::size_t count) {
        if (count > m_capacity - m_length)
            Grow(m_length + count);
        char16_t* const end = m_units + m_length;
        m_length += count;
        return end;
    }
    [[nodiscard]] CString Take();  ///< The text; the builder is empty afterwards.

    /// A text of exactly `unitCount` units, all of which `write` writes to the place that it is given.
    template <class Write> [[nodiscard]] static CString Written(std::size_t unitCount, const Write& write) {
        CString text(std::in_place, unitCount);
        char16_t* const units = text.m_text.OwnUnits();
        write(units);
        units[unitCount] = 0;
        return text;
    }

private:
    static constexpr std::size_t kShortUnits = 64;

    [[nodiscard]] bool IsShort() const noexcept { return m_units == m_short; }
    void Reserve(std::size_t unitCount) {
        if (unitCount > m_capacity)
            MoveToRoomFor(unitCount);
    }
    void MoveToRoomFor(std::size_t unitCount);
    void Grow(std::size_t leastUnitCount);

    char16_t* m_units = m_short;  // otherwise memory of SharedUnits with one owner
    std::size_t m_length = 0;
    std::size_t m_capacity = kShortUnits;
    char16_t m_short[kShortUnits];
};

}  // namespace rk
