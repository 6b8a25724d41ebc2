#pragma once

#include "RkUtilities/RkExport.h"

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <type_traits>

/// How CAtlMap hashes and compares its keys.
/// A traits class has the type INARGTYPE, in which a key is handed in, and two static members: Hash, which must give
/// equal keys the same value, and CompareElements, which is true for equal keys. A class of UTF-16 texts (CString,
/// std::u16string) is handed in as a view, so that looking up a literal or a part of a text builds no text.
template <class T> struct CElementTraits {
    /// Whether `T` is a text class.
    static constexpr bool kIsText = std::is_class_v<T> && std::convertible_to<const T&, std::u16string_view>;
    using INARGTYPE = std::conditional_t<kIsText, std::u16string_view, const T&>;  ///< How an element is handed in.

    /// std::hash, its upper half folded into its lower half; for texts it covers every code unit.
    static std::uint32_t Hash(INARGTYPE element) {
        const std::uint64_t hash = std::hash<std::remove_cvref_t<INARGTYPE>>{}(element);
        return static_cast<std::uint32_t>(hash ^ (hash >> 32));
    }

    /// `==`; texts are equal when they have the same code units.
    static bool CompareElements(INARGTYPE left, INARGTYPE right) {
        if constexpr (
            kIsText)  // as bytes, where the view's own comparison goes unit by unit; an empty view may have no memory
            return left.size() == right.size() &&
                   (left.empty() || std::memcmp(left.data(), right.data(), left.size() * sizeof(char16_t)) == 0);
        else
            return left == right;
    }
};

/// Numbers are hashed so that a map of whole numbers is walked in their order modulo the bucket count.
template <> struct CElementTraits<double> {
    using INARGTYPE = double;  ///< How a number is handed in.

    /// The low 32 bits of the number, cut towards zero, as an unsigned 64-bit integer. A negative number counts from
    /// 2^64 downwards (-1.5 gives 0xFFFFFFFF); NaN, infinities and what lies below -2^63 or from 2^64 on give 0.
    static constexpr std::uint32_t Hash(double element) noexcept {
        constexpr double kTwoTo63 = 9223372036854775808.0;
        if (element >= -kTwoTo63 && element < kTwoTo63)
            return static_cast<std::uint32_t>(static_cast<std::int64_t>(element));
        if (element >= kTwoTo63 && element < 2 * kTwoTo63)
            return static_cast<std::uint32_t>(static_cast<std::uint64_t>(element));
        return 0;
    }

    /// `==`: 0.0 and -0.0 are the same key; a NaN is never found, so each NaN that is set is an entry more.
    static constexpr bool CompareElements(double left, double right) noexcept { return left == right; }
};

namespace rk {

/// A hash from a secret that the process draws once: an author of texts cannot choose texts whose hashes are alike. Two
/// texts of up to n units have the same hash with a probability of n in 2^31.
[[nodiscard]] RK_EXPORT std::uint32_t SecretHash(std::u16string_view text) noexcept;

}  // namespace rk

/// The traits of text keys that come from elsewhere, such as a link: the text decides, exactly and case-sensitively.
/// The order in which a map with these traits is walked differs from process to process.
template <class T> struct CStringElementTraits : CElementTraits<T> {
    static_assert(CElementTraits<T>::kIsText,
                  "CStringElementTraits is for classes that convert to std::u16string_view");

    /// `rk::SecretHash`.
    static std::uint32_t Hash(std::u16string_view element) noexcept { return rk::SecretHash(element); }
};
