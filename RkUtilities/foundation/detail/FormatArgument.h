#pragma once

#include "RkUtilities/RkExport.h"
#include "RkUtilities/foundation/TextView.h"

#include <concepts>
#include <cstddef>
#include <string>
#include <string_view>
#include <type_traits>
#include <variant>

class CString;

namespace rk {

/// One argument of a format, with its kind. Built by `CString::Format`; texts and pointers are not copied.
class FormatArgument {
public:
    template <std::integral T>
    explicit constexpr FormatArgument(T value) noexcept
        : m_value(static_cast<std::conditional_t<std::is_signed_v<T>, long long, unsigned long long>>(value)),
          m_byteCount(sizeof value)
    {}
    /// A `char` is signed on every processor.
    explicit constexpr FormatArgument(char value) noexcept : FormatArgument(static_cast<signed char>(value)) {}
    template <class T>
        requires(std::is_enum_v<T> && std::is_convertible_v<T, std::underlying_type_t<T>>)
    explicit constexpr FormatArgument(T value) noexcept : FormatArgument(static_cast<std::underlying_type_t<T>>(value))
    {}
    explicit constexpr FormatArgument(double value) noexcept : m_value(value) {}
    explicit constexpr FormatArgument(float value) noexcept : FormatArgument(static_cast<double>(value)) {}
    explicit constexpr FormatArgument(long double value) noexcept : m_value(value) {}
    /// A zero-terminated UTF-8 text, or null.
    explicit constexpr FormatArgument(const char* utf8) noexcept : m_value(utf8) {}
    /// A UTF-8 text that may hold the code 0.
    explicit constexpr FormatArgument(std::string_view utf8) noexcept : m_value(utf8) {}
    explicit FormatArgument(const std::string& utf8) noexcept : FormatArgument(std::string_view(utf8)) {}
    explicit constexpr FormatArgument(const void* pointer) noexcept : m_value(pointer) {}
    explicit constexpr FormatArgument(std::nullptr_t) noexcept : FormatArgument(static_cast<const void*>(nullptr)) {}
    explicit FormatArgument(TextView text) noexcept : m_value(std::u16string_view(text)) {}
    /// A zero-terminated UTF-16 text; null is a null UTF-8 text.
    explicit FormatArgument(const char16_t* text) noexcept
        : FormatArgument(text != nullptr ? FormatArgument(TextView(text))
                                         : FormatArgument(static_cast<const char*>(nullptr)))
    {}
    explicit FormatArgument(unsigned short const* text) noexcept : FormatArgument(AsChar16(text)) {}

    /// The value as one of the kinds: `long long` or `unsigned long long` for an integer, `double`, `long double`,
    /// `const char*`, `std::string_view`, `std::u16string_view`, `const void*`. Null when the argument is of another kind.
    template <class Kind>
    [[nodiscard]] const Kind* As() const noexcept
    {
        return std::get_if<Kind>(&m_value);
    }
    /// The size of an integer's type.
    [[nodiscard]] constexpr std::size_t ByteCount() const noexcept { return m_byteCount; }

private:
    std::variant<long long, unsigned long long, double, long double, const char*, std::string_view, std::u16string_view,
                 const void*>
        m_value;
    std::size_t m_byteCount = 0;
};

/// The text that a format makes of its arguments, as `CString::Format` says. Throws `FormatError`.
RK_EXPORT CString FormattedText(std::u16string_view format, const FormatArgument* arguments, std::size_t count);

}  // namespace rk
