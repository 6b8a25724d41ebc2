#pragma once

#include "RkUtilities/foundation/CString.h"

#include <cstddef>
#include <string_view>

namespace rk {

/// Builds a text by appending, in one piece of memory that the text then takes over.
///
/// Throws `std::length_error` where the text would grow beyond what `CString` holds, `std::bad_alloc` without memory.
class TextBuilder {
public:
    /// Room for `unitCount` units without another allocation; up to 11 need none.
    explicit TextBuilder(std::size_t unitCount = 0) { Reserve(unitCount); }
    TextBuilder(const TextBuilder&) = delete;
    TextBuilder& operator=(const TextBuilder&) = delete;

    [[nodiscard]] std::size_t Length() const noexcept { return static_cast<std::size_t>(m_text.m_length); }
    [[nodiscard]] std::u16string_view View() const noexcept { return m_text.View(); }
    void Append(std::u16string_view units);
    void Append(char16_t unit) { *Extend(1) = unit; }
    void Append(std::size_t count, char16_t unit);
    void AppendAscii(std::string_view characters);
    void AppendUtf8(std::string_view bytes);
    /// The text; the builder is empty afterwards.
    [[nodiscard]] CString Take() noexcept;

private:
    void Reserve(std::size_t unitCount);
    /// Makes the text longer by `count` units, to be written at once.
    char16_t* Extend(std::size_t count);

    CString m_text;
    std::size_t m_capacity = CString::kInlineUnits;
};

}  // namespace rk
