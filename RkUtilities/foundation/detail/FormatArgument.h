#pragma once

#include "RkUtilities/RkExport.h"
#include "RkUtilities/foundation/TextView.h"

#include <concepts>
#include <cstddef>
#include <new>
#include <string>
#include <string_view>
#include <type_traits>

class CString;

namespace rk {

/// One argument of a format, with its kind. Built by `CString::Format`; texts and pointers are not copied.
class FormatArgument {
public:
    template <std::integral T> explicit FormatArgument(T value) noexcept : m_byteCount(sizeof value) {
        Hold(static_cast<std::conditional_t<std::is_signed_v<T>, long long, unsigned long long>>(value));
    }
    /// A `char` is signed on every processor.
    explicit FormatArgument(char value) noexcept : FormatArgument(static_cast<signed char>(value)) {}
    template <class T>
        requires(std::is_enum_v<T> && std::is_convertible_v<T, std::underlying_type_t<T>>)
    explicit FormatArgument(T value) noexcept : FormatArgument(static_cast<std::underlying_type_t<T>>(value)) {}
    explicit FormatArgument(double value) noexcept { Hold(value); }
    explicit FormatArgument(float value) noexcept : FormatArgument(static_cast<double>(value)) {}
    explicit FormatArgument(long double value) noexcept { Hold(value); }
    explicit FormatArgument(const char* utf8) noexcept { Hold(utf8); }  ///< A zero-terminated UTF-8 text, or null.
    /// A UTF-8 text that may hold the code 0.
    explicit FormatArgument(std::string_view utf8) noexcept { Hold(utf8); }
    explicit FormatArgument(const std::string& utf8) noexcept : FormatArgument(std::string_view(utf8)) {}
    explicit FormatArgument(const void* pointer) noexcept { Hold(pointer); }
    explicit FormatArgument(std::nullptr_t) noexcept : FormatArgument(static_cast<const void*>(nullptr)) {}
    explicit FormatArgument(TextView text) noexcept { Hold(std::u16string_view(text)); }
    /// A zero-terminated UTF-16 text; null is a null UTF-8 text.
    explicit FormatArgument(const char16_t* text) noexcept
        : FormatArgument(text != nullptr ? FormatArgument(TextView(text))
                                         : FormatArgument(static_cast<const char*>(nullptr))) {}
    explicit FormatArgument(unsigned short const* text) noexcept : FormatArgument(AsChar16(text)) {}

    /// The value as one of the kinds: `long long` or `unsigned long long` for an integer, `double`, `long double`,
    /// `const char*`, `std::string_view`, `std::u16string_view`, `const void*`. Null for an argument of another kind.
    template <class Kind> [[nodiscard]] const Kind* As() const noexcept {
        return m_kind == NumberOf<Kind>() ? std::launder(reinterpret_cast<const Kind*>(m_value)) : nullptr;
    }
    [[nodiscard]] std::size_t ByteCount() const noexcept { return m_byteCount; }  ///< The size of an integer's type.

private:
    template <class Kind> static consteval int NumberOf() {
        int number = 0;
        for (const bool isKind :
             {std::same_as<Kind, long long>, std::same_as<Kind, unsigned long long>, std::same_as<Kind, double>,
              std::same_as<Kind, long double>, std::same_as<Kind, const char*>, std::same_as<Kind, std::string_view>,
              std::same_as<Kind, std::u16string_view>, std::same_as<Kind, const void*>}) {
            if (isKind)
                break;
            ++number;
        }
        return number;
    }
    template <class Kind> void Hold(Kind value) noexcept {
        static_assert(std::is_trivially_copyable_v<Kind> && sizeof value <= sizeof m_value);
        ::new (static_cast<void*>(m_value)) Kind(value);
        m_kind = NumberOf<Kind>();
    }

    // No std::variant, which would take each user of texts a third of the time that <string> takes.
    alignas(long double) std::byte m_value[sizeof(long double)]{};
    int m_kind = 0;
    std::size_t m_byteCount = 0;
};

/// The text that a format makes of its arguments, as `CString::Format` says. Throws `FormatError`.
RK_EXPORT CString FormattedText(std::u16string_view format, const FormatArgument* arguments, std::size_t count);

}  // namespace rk
