#pragma once

#include <algorithm>
#include <concepts>
#include <cstddef>
#include <memory>
#include <ranges>
#include <set>
#include <type_traits>
#include <unordered_set>
#include <utility>

namespace rk {

/// A reference to an object: a pointer, a smart pointer (whose `get()` gives one) or nullptr.
template <class T>
concept ObjectReference =
    std::same_as<T, std::nullptr_t> || (std::is_pointer_v<T> && !std::is_function_v<std::remove_pointer_t<T>>) ||
    requires(const T& reference) {
        { reference.get() } -> std::convertible_to<const void*>;
    };

/// The pointer to the object; null for none.
template <ObjectReference Reference>
constexpr auto AddressOf(const Reference& reference)
{
    if constexpr (requires { reference.get(); })
        return reference.get();
    else
        return reference;
}

template <class Range>
using RangeReference = std::remove_cvref_t<std::ranges::range_reference_t<Range>>;

/// What can be walked once and gives references to objects.
template <class Range>
concept ReferenceRange = std::ranges::input_range<Range> && ObjectReference<RangeReference<Range>>;

/// What can be walked again and again and gives references to objects.
template <class Range>
concept ReferenceArray = std::ranges::forward_range<Range> && ReferenceRange<Range>;

/// The pointer type in which both can be compared: one points to the other's type, or to a base of it.
template <class Left, class Right>
using CommonAddress = std::common_type_t<decltype(AddressOf(std::declval<const Left&>())),
                                         decltype(AddressOf(std::declval<const Right&>()))>;

/// Both may refer to the same object.
template <class Left, class Right>
concept IdentityComparable = requires { typename CommonAddress<Left, Right>; };

/// The objects that both refer to have `==`.
template <class Left, class Right>
concept EqualityComparable = requires(const Left& left, const Right& right) {
    { *AddressOf(left) == *AddressOf(right) } -> std::convertible_to<bool>;
};

}  // namespace rk

/// Queries on arrays of references to objects: does one hold these very objects, and where are equal ones?
///
/// `array` is any range that can be walked more than once, `objects` any range at all, single-pass ones and views that
/// only begin when they are not const included. Their elements are pointers, raw or smart, to the same type or one to a
/// base of the other's. Identity compares the addresses; equality compares the objects by `==`, the array's on the
/// left. A null reference is identical and equal to null ones only. Nothing is changed, kept or owned; what the ranges
/// and `==` throw passes through.
///
///     const std::vector<std::shared_ptr<Topic>> topics = ...;
///     const std::vector<Topic*> selection = ...;
///     if (CorvaneNSArrayAdditions::containsAnyObjectsIdenticalTo(topics, selection)) ...
class CorvaneNSArrayAdditions {
public:
    /// Whether the array holds that very object; a distinct but equal one does not count.
    template <rk::ReferenceArray Array, rk::ObjectReference Object>
        requires rk::IdentityComparable<rk::RangeReference<Array>, Object>
    static bool containsObjectIdenticalTo(Array&& array, const Object& object)
    {
        return std::ranges::any_of(
            array, [&](const auto& element) { return rk::AddressOf(element) == rk::AddressOf(object); });
    }

    /// Whether the array holds one of those very objects. The walk over `objects` ends at the first one; the time is
    /// linear in both ranges together. Throws std::bad_alloc without memory for a set of the array's addresses.
    template <rk::ReferenceArray Array, rk::ReferenceRange Objects>
        requires rk::IdentityComparable<rk::RangeReference<Array>, rk::RangeReference<Objects>>
    static bool containsAnyObjectsIdenticalTo(Array&& array, Objects&& objects)
    {
        using Common = rk::CommonAddress<rk::RangeReference<Array>, rk::RangeReference<Objects>>;
        std::unordered_set<Common> addresses(static_cast<std::size_t>(std::ranges::distance(array)));
        for (auto&& element : array)
            addresses.insert(rk::AddressOf(element));
        return std::ranges::any_of(objects,
                                   [&](const auto& object) { return addresses.contains(rk::AddressOf(object)); });
    }

    /// The positions, from 0, of objects that are equal to one of `objects`: for each of those the lowest position
    /// only, so a second equal object in the array is never named. What is not in the array adds nothing.
    ///
    /// The time is the product of both lengths at most: `==` is all that is asked of the objects.
    template <rk::ReferenceArray Array, rk::ReferenceRange Objects>
        requires rk::EqualityComparable<rk::RangeReference<Array>, rk::RangeReference<Objects>>
    static std::set<std::size_t> indexesOfObjects(Array&& array, Objects&& objects)
    {
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
    static bool AreEqual(const auto* left, const auto* right)
    {
        return left && right ? *left == *right : !left && !right;
    }
};
