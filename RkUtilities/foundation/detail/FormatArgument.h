#pragma once

#include "RkUtilities/RkExport.h"
#include "RkUtilities/foundation/TextView.h"

#include <concepts>
#include <cstddef>
#include <string>
#include <string_view>
#include <type_traits>

class CString;

namespace rk {

/// One argument of a format, with its kind. Built by `CString::Format`; texts and pointers are not copied.
class FormatArgument {
public:
    enum class Kind { Signed, Unsigned, Floating, LongFloating, Text, SizedText, Utf16Text, Pointer };

    template <std::integral T>
    explicit constexpr FormatArgument(T value) noexcept : m_byteCount(sizeof(T))
    {
        if constexpr (std::same_as<T, char>) {  // signed on every processor
            *this = FormatArgument(static_cast<signed char>(value));
        } else if constexpr (std::is_signed_v<T>) {
            m_kind = Kind::Signed;
            m_value.integer = static_cast<unsigned long long>(static_cast<long long>(value));
        } else {
            m_kind = Kind::Unsigned;
            m_value.integer = value;
        }
    }
    template <class T>
        requires(std::is_enum_v<T> && std::is_convertible_v<T, std::underlying_type_t<T>>)
    explicit constexpr FormatArgument(T value) noexcept : FormatArgument(static_cast<std::underlying_type_t<T>>(value))
    {}
    explicit constexpr FormatArgument(double value) noexcept : m_kind(Kind::Floating) { m_value.floating = value; }
    explicit constexpr FormatArgument(float value) noexcept : FormatArgument(static_cast<double>(value)) {}
    explicit constexpr FormatArgument(long double value) noexcept : m_kind(Kind::LongFloating)
    {
        m_value.longFloating = value;
    }
    /// A zero-terminated UTF-8 text.
    explicit constexpr FormatArgument(const char* utf8) noexcept : m_kind(Kind::Text) { m_value.text = utf8; }
    /// A UTF-8 text that may hold the code 0.
    explicit constexpr FormatArgument(std::string_view utf8) noexcept
        : m_kind(Kind::SizedText), m_byteCount(utf8.size())
    {
        m_value.text = utf8.data();
    }
    explicit FormatArgument(const std::string& utf8) noexcept : FormatArgument(std::string_view(utf8)) {}
    explicit constexpr FormatArgument(std::nullptr_t) noexcept : m_kind(Kind::Pointer) { m_value.pointer = nullptr; }
    explicit constexpr FormatArgument(const void* pointer) noexcept : m_kind(Kind::Pointer)
    {
        m_value.pointer = pointer;
    }
    /// A UTF-16 text; null is a null UTF-8 text.
    explicit FormatArgument(TextView text) noexcept : m_kind(Kind::Utf16Text), m_byteCount(text.size())
    {
        m_value.units = text.data();
    }
    explicit FormatArgument(const char16_t* text) noexcept
        : FormatArgument(text != nullptr ? FormatArgument(TextView(text))
                                         : FormatArgument(static_cast<const char*>(nullptr)))
    {}
    explicit FormatArgument(unsigned short const* text) noexcept : FormatArgument(AsChar16(text)) {}

    [[nodiscard]] constexpr Kind GetKind() const noexcept { return m_kind; }
    /// The bits of an integer, sign-extended when it is signed.
    [[nodiscard]] constexpr unsigned long long Integer() const noexcept { return m_value.integer; }
    /// The width of an integer's type; the length of a sized text, in its units.
    [[nodiscard]] constexpr std::size_t ByteCount() const noexcept { return m_byteCount; }
    [[nodiscard]] constexpr double Floating() const noexcept { return m_value.floating; }
    [[nodiscard]] constexpr long double LongFloating() const noexcept { return m_value.longFloating; }
    [[nodiscard]] constexpr const char* Text() const noexcept { return m_value.text; }
    [[nodiscard]] std::u16string_view Units() const noexcept { return {m_value.units, m_byteCount}; }
    [[nodiscard]] constexpr const void* Pointer() const noexcept { return m_value.pointer; }

private:
    Kind m_kind = Kind::Signed;
    std::size_t m_byteCount = 0;
    union {
        unsigned long long integer;
        double floating;
        long double longFloating;
        const char* text;
        const char16_t* units;
        const void* pointer;
    } m_value{};
};

/// The text that a format makes of its arguments, as `CString::Format` says. Throws `FormatError`.
RK_EXPORT CString FormattedText(std::u16string_view format, const FormatArgument* arguments, std::size_t count);

}  // namespace rk
