#pragma once

#include "RkUtilities/RkExport.h"
#include "RkUtilities/foundation/detail/SharedUnits.h"

#include <climits>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <utility>

namespace rk {

/// The zero-terminated units of a text: a few in the object itself, a literal, or memory that copies share.
class RK_EXPORT TextStorage {
public:
    static constexpr std::size_t kInlineUnits = 11;

    constexpr TextStorage() noexcept = default;
    /// Room for exactly `unitCount` units, all of them and the terminator to be written at once. Throws
    /// `std::length_error`, `std::bad_alloc`.
    explicit TextStorage(std::size_t unitCount) {
        CheckLength(unitCount);
        if (unitCount > kInlineUnits) {
            m_place.pointer = SharedUnits::Allocate(unitCount);
            m_kind = Kind::Shared;
        }
        m_length = static_cast<int>(unitCount);
    }
    explicit TextStorage(std::u16string_view units);  ///< A copy of the units. Throws likewise.
    /// The storage of a literal.
    consteval TextStorage(const char16_t* literal, std::size_t unitCount) : m_length(static_cast<int>(unitCount)) {
        if (unitCount <= kInlineUnits) {
            for (std::size_t i = 0; i < unitCount; ++i)
                m_place.units[i] = literal[i];
        } else {
            m_place = {.pointer = literal};
            m_kind = Kind::Static;
        }
    }
    constexpr TextStorage(const TextStorage& other) noexcept
        : m_place(other.m_place), m_length(other.m_length), m_kind(other.m_kind) {
        if (m_kind == Kind::Shared)
            SharedUnits::Retain(m_place.pointer);
    }
    constexpr TextStorage(TextStorage&& other) noexcept
        : m_place(other.m_place), m_length(other.m_length), m_kind(other.m_kind) {
        other.Forget();
    }
    constexpr ~TextStorage() {
        if (m_kind == Kind::Shared)
            Release();
    }
    TextStorage& operator=(const TextStorage& other) noexcept { return *this = TextStorage(other); }
    TextStorage& operator=(TextStorage&& other) noexcept {
        if (this == &other)
            return *this;
        if (m_kind == Kind::Shared)
            Release();
        m_place = other.m_place;
        m_length = other.m_length;
        m_kind = other.m_kind;
        other.Forget();
        return *this;
    }

    /// Takes over memory of `SharedUnits`.
    static TextStorage Adopting(const char16_t* units, std::size_t length) noexcept;

    [[nodiscard]] int Length() const noexcept { return m_length; }
    [[nodiscard]] const char16_t* Units() const noexcept {
        return m_kind == Kind::Inline ? m_place.units : m_place.pointer;
    }
    /// Whether the units are this text's alone and may be written to.
    [[nodiscard]] bool IsOwn() const noexcept {
        return m_kind == Kind::Inline || (m_kind == Kind::Shared && SharedUnits::IsUnique(m_place.pointer));
    }
    [[nodiscard]] std::size_t Capacity() const noexcept {
        return m_kind == Kind::Shared ? SharedUnits::Capacity(m_place.pointer) : kInlineUnits;
    }
    char16_t* OwnUnits() noexcept { return const_cast<char16_t*>(Units()); }  ///< Own units, to be written to.
    char16_t* MakeOwn();  ///< The units, this text's own from now on. Throws `std::bad_alloc`.
    /// Ends own units after `length`.
    void SetLength(std::size_t length) noexcept {
        OwnUnits()[length] = 0;
        m_length = static_cast<int>(length);
    }

    /// Throws `std::length_error` for more units than a text holds.
    static void CheckLength(std::size_t unitCount) {
        if (unitCount >= INT_MAX) [[unlikely]]
            ThrowTooLong();
    }

private:
    enum class Kind : std::uint32_t { Inline, Static, Shared };
    union Place {
        char16_t units[kInlineUnits + 1];
        const char16_t* pointer;  // Static: a literal; Shared: units of SharedUnits
    };

    [[noreturn]] static void ThrowTooLong();
    void Release() noexcept;
    constexpr void Forget() noexcept {
        m_place = {.units = {}};
        m_length = 0;
        m_kind = Kind::Inline;
    }

    Place m_place{.units = {}};
    int m_length = 0;
    Kind m_kind = Kind::Inline;
};

}  // namespace rk
