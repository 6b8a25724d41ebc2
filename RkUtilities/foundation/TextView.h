#pragma once

#include "RkUtilities/RkExport.h"

#include <concepts>
#include <cstddef>
#include <string_view>

namespace rk {

/// Looks at units of one type through the other. The barrier tells the optimiser that both name the same memory.
inline unsigned short const* AsUnsignedShort(const char16_t* units) noexcept {
    asm volatile("" : : "rm"(units) : "memory");
    return reinterpret_cast<unsigned short const*>(units);
}
/// The same units as `char16_t`.
inline const char16_t* AsChar16(unsigned short const* units) noexcept {
    asm volatile("" : : "rm"(units) : "memory");
    return reinterpret_cast<const char16_t*>(units);
}

/// A UTF-16 text as a parameter, which a function only looks at during the call. It takes a `u"..."` literal, a
/// `CString`, a view, a `std::u16string` and a zero-terminated text of either unit type. A null pointer is the empty
/// text. A view is taken whole, a unit 0 inside it too; a pointer's text ends at the first 0.
class TextView : public std::u16string_view {
public:
    constexpr TextView(std::nullptr_t) noexcept {}  ///< Null is the empty text.
    /// A zero-terminated text; null is the empty text.
    constexpr TextView(const char16_t* text) noexcept
        : std::u16string_view(text != nullptr ? std::u16string_view(text) : std::u16string_view()) {}
    /// A zero-terminated text; null is the empty text.
    TextView(unsigned short const* text) noexcept : TextView(AsChar16(text)) {}
    TextView(const char* text) = delete;  ///< UTF-8 would need a text of its own: write `u"..."` or `CString(bytes)`.
    /// Everything that converts to a view: literals, `CString`, `std::u16string`.
    template <class T>
        requires(std::convertible_to<const T&, std::u16string_view> && !std::convertible_to<const T&, const char16_t*>)
    constexpr TextView(const T& text) noexcept : std::u16string_view(text) {}
};

}  // namespace rk
