#pragma once

#include "RkUtilities/RkExport.h"
#include "RkUtilities/foundation/CFUUIDBytes.h"
#include "RkUtilities/foundation/CString.h"
#include "RkUtilities/guid/detail/GuidText.h"

#include <compare>
#include <cstddef>
#include <string_view>
#include <type_traits>

/// A 128-bit identifier: one CFUUIDBytes and nothing else, copied by value.
/// The bytes have the memory layout of a GUID structure: a 32-bit and two 16-bit numbers, least significant byte first,
/// then eight bytes one by one. The text (RFC 4122, section 3) shows numbers, so the first three groups read backwards:
///
///     00112233-4455-6677-8899-AABBCCDDEEFF  <->  33 22 11 00  55 44  77 66  88 99  AA BB CC DD EE FF
///
/// The null GUID, 16 zero bytes, stands for the absence of a GUID. GUIDs are ordered by their bytes as they are stored,
/// which is not the order of their texts. Members throw nothing unless they say so, and are safe from any thread.
class RK_EXPORT CrkGuid {
public:
    static constexpr CFUUIDBytes c_nullGuid = {};  ///< 16 zero bytes: no GUID.

    CrkGuid() : m_bytes(CreateGuid()) {}  ///< A new GUID, as CreateGuid makes it; no GUID is `CrkGuid(c_nullGuid)`.
    /// As StringToGuid reads the text: the null GUID when it is malformed.
    explicit CrkGuid(const CString& text) noexcept : m_bytes(StringToGuid(text)) {}
    constexpr CrkGuid(const CFUUIDBytes& bytes) noexcept : m_bytes(bytes) {}  ///< The GUID of these bytes.

    constexpr bool IsNull() const noexcept { return IsNullGuid(m_bytes); }  ///< Whether this is the null GUID.
    /// The record, for the log and the static members.
    constexpr const CFUUIDBytes& Bytes() const noexcept RK_LIFETIMEBOUND { return m_bytes; }
    /// The text as GuidToString makes it. Throws std::bad_alloc without memory.
    operator CString() const { return GuidToString(m_bytes); }

    /// Whether all bytes are equal.
    friend constexpr bool operator==(const CrkGuid&, const CrkGuid&) noexcept = default;

    /// By the bytes as they are stored.
    friend constexpr auto operator<=>(const CrkGuid&, const CrkGuid&) noexcept = default;

    /// A new random GUID: RFC 4122 version 4, from 122 bits of the system's random generator, also across fork. The
    /// record is a UUID in network byte order, not in the layout above: byte6 begins with the digit 4, as a log entry,
    /// which prints the bytes in their order, shows it; GuidToString shows the 4 as the third digit of the third group.
    /// Never null. Throws std::system_error when the system gives no random bytes.
    static CFUUIDBytes CreateGuid();

    /// Reads the text form: 32 hexadecimal digits of either case in groups of 8, 4, 4, 4 and 12 joined by "-". When the
    /// text begins with "{" and has two units or more, the "{" and the last unit, any unit, are left out first. Every
    /// other text gives the null GUID: other lengths, separators, blanks, a closing "}" alone.
    ///
    ///     "00112233-4455-6677-8899-aabbccddeeff"    ->  33 22 11 00 55 44 ...
    ///     "{00112233-4455-6677-8899-aabbccddeeff]"  ->  the same
    ///     "00112233-4455-6677-8899-aabbccddeeff}"   ->  the null GUID
    ///     "00112233445566778899aabbccddeeff", "{"   ->  the null GUID
    static CFUUIDBytes StringToGuid(const CString& text) noexcept { return Parse(text); }
    /// The same for a view, also at compile time.
    static constexpr CFUUIDBytes Parse(std::u16string_view text) noexcept { return rk::guid::Read(text); }
    /// The GUID of a literal, made at compile time; a malformed text, and that of the null GUID, do not compile.
    template <std::size_t N> static consteval CrkGuid Literal(const char16_t (&text)[N]) {
        const CFUUIDBytes bytes = Parse({text, N - 1});
        return IsNullGuid(bytes) ? throw "no GUID" : CrkGuid(bytes);
    }

    /// The text of 36 units: upper-case digits, no braces. Throws std::bad_alloc without memory.
    static CString GuidToString(const CFUUIDBytes& bytes);
    static CString GuidToStringWithBraces(const CFUUIDBytes& bytes);  ///< The same between "{" and "}", 38 units.

    /// Whether all bytes are zero.
    static constexpr bool IsNullGuid(const CFUUIDBytes& bytes) noexcept { return bytes == c_nullGuid; }
    /// Whether all bytes are equal.
    static constexpr bool AreGuidsEqual(const CFUUIDBytes& left, const CFUUIDBytes& right) noexcept {
        return left == right;
    }

private:
    CFUUIDBytes m_bytes;
};
static_assert(sizeof(CrkGuid) == sizeof(CFUUIDBytes) && std::is_trivially_copyable_v<CrkGuid>);

/// By all 16 bytes.
template <> struct std::hash<CrkGuid> {
    /// By all 16 bytes.
    std::size_t operator()(const CrkGuid& guid) const noexcept { return std::hash<CFUUIDBytes>()(guid.Bytes()); }
};
