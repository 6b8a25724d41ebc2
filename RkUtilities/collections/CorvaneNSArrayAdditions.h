#pragma once

#include "RkUtilities/RkExport.h"

#include <concepts>
#include <cstddef>
#include <ranges>
#include <set>
#include <type_traits>
#include <unordered_set>
#include <utility>

namespace rk {

/// A reference to an object: a pointer, a smart pointer (whose `get()` gives a pointer) or nullptr.
template <class T>
concept ObjectReference =
    std::same_as<T, std::nullptr_t> || (std::is_pointer_v<T> && !std::is_function_v<std::remove_pointer_t<T>>) ||
    requires(const T& reference) {
        { reference.get() } -> std::convertible_to<const void*>;
    };

/// The pointer to the object; null for a null reference.
template <ObjectReference Reference> constexpr auto AddressOf(const Reference& reference) {
    if constexpr (requires { reference.get(); })
        return reference.get();
    else
        return reference;
}

/// The type that walking the range gives.
template <class Range> using RangeReference = std::remove_cvref_t<std::ranges::range_reference_t<Range>>;

/// A range that can be walked once and gives references to objects.
template <class Range>
concept ReferenceRange = std::ranges::input_range<Range> && ObjectReference<RangeReference<Range>>;

/// A range that can be walked repeatedly and gives references to objects.
template <class Range>
concept ReferenceArray = std::ranges::forward_range<Range> && ReferenceRange<Range>;

/// The pointer type to which the pointers of two references convert.
template <class Left, class Right>
using CommonAddress = std::common_type_t<decltype(AddressOf(std::declval<const Left&>())),
                                         decltype(AddressOf(std::declval<const Right&>()))>;

/// Two references that may refer to the same object.
template <class Left, class Right>
concept IdentityComparable = requires { typename CommonAddress<Left, Right>; };

/// Two references whose objects have `==`.
template <class Left, class Right>
concept EqualityComparable = requires(const Left& left, const Right& right) {
    { *AddressOf(left) == *AddressOf(right) } -> std::convertible_to<bool>;
};

}  // namespace rk

/// Queries on arrays of references: does an array hold these very objects, and where are equal objects?
/// `array` is any range that can be walked more than once, `objects` any range, also a single-pass range or a view that
/// cannot be const. Their elements are pointers, raw or smart, to the same type, or to a type and a base of it.
/// Identity compares the addresses; equality compares the objects by `==`, the array's object on the left. A null
/// reference is identical and equal to null references only. The queries change, keep and own nothing; exceptions of
/// the ranges and of `==` pass through.
///
///     const std::vector<std::shared_ptr<Topic>> topics = ...;
///     const std::vector<Topic*> selection = ...;
///     if (CorvaneNSArrayAdditions::containsAnyObjectsIdenticalTo(topics, selection)) ...
class CorvaneNSArrayAdditions {
public:
    /// Whether the array holds that very object; a distinct but equal object does not count.
    template <rk::ReferenceArray Array, rk::ObjectReference Object>
        requires rk::IdentityComparable<rk::RangeReference<Array>, Object>
    static bool containsObjectIdenticalTo(Array&& array, const Object& object) {
        // NOLINTNEXTLINE(readability-use-anyofallof): <algorithm> would double the cost of this header
        for (auto&& element : array) {
            if (rk::AddressOf(element) == rk::AddressOf(object))
                return true;
        }
        return false;
    }

    /// Whether the array holds any of those very objects. The walk over `objects` ends at the first object found; time
    /// is linear in both ranges together. Throws std::bad_alloc without memory for the addresses.
    template <rk::ReferenceArray Array, rk::ReferenceRange Objects>
        requires rk::IdentityComparable<rk::RangeReference<Array>, rk::RangeReference<Objects>>
    static bool containsAnyObjectsIdenticalTo(Array&& array, Objects&& objects) {
        using Common = rk::CommonAddress<rk::RangeReference<Array>, rk::RangeReference<Objects>>;
        std::unordered_set<Common> addresses(static_cast<std::size_t>(std::ranges::distance(array)));
        for (auto&& element : array)
            addresses.insert(rk::AddressOf(element));
        for (auto&& object : objects) {
            if (addresses.contains(rk::AddressOf(object)))
                return true;
        }
        return false;
    }

    /// For each of `objects`, the lowest position, from 0, of an equal object in the array; a second equal object in
    /// the array is never named. An object that is not in the array adds no position.
    /// Time is the product of both lengths at most.
    template <rk::ReferenceArray Array, rk::ReferenceRange Objects>
        requires rk::EqualityComparable<rk::RangeReference<Array>, rk::RangeReference<Objects>>
    static std::set<std::size_t> indexesOfObjects(Array&& array, Objects&& objects) {
        std::set<std::size_t> positions;
        for (auto&& object : objects) {
            std::size_t position = 0;
            for (auto&& element : array) {
                if (AreEqual(rk::AddressOf(element), rk::AddressOf(object))) {
                    positions.insert(position);
                    break;
                }
                ++position;
            }
        }
        return positions;
    }

private:
    static bool AreEqual(const auto* left, const auto* right) {
        return left && right ? *left == *right : !left && !right;
    }
};
