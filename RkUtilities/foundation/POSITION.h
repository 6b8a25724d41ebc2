#pragma once

#include "RkUtilities/RkExport.h"

#include <cstddef>
#include <iterator>
#include <type_traits>

/// A place in a CAtlList or a CAtlMap; null is no place, and the end of a walk.
/// A position stays valid until its element is removed or its container destroyed; moving or swapping a container takes
/// its positions along. A position of another container or of a removed element must not be used.
using POSITION = struct PositionTag*;

namespace rk {

/// The iterator of the containers with positions; valid as long as its position and its container's address.
template <class Container, class Entry> class PositionIterator {
public:
    /// Multi-pass, forwards or in both directions.
    using iterator_category =
        std::conditional_t<Container::kWalksBack, std::bidirectional_iterator_tag, std::forward_iterator_tag>;
    using value_type = std::remove_const_t<Entry>;  ///< What a position holds.
    using difference_type = std::ptrdiff_t;         ///< The distance of two iterators.
    using pointer = Entry*;                         ///< The result of `->`.
    using reference = Entry&;                       ///< The result of `*`.

    PositionIterator() = default;
    /// The iterator at a position of a container.
    PositionIterator(const Container* container, POSITION position) : m_container(container), m_position(position) {}

    /// The same position, for reading.
    operator PositionIterator<Container, const Entry>() const
        requires(!std::is_const_v<Entry>)
    {
        return {m_container, m_position};
    }

    Entry& operator*() const { return Container::EntryAt(m_position); }  ///< The element or entry at the position.
    Entry* operator->() const { return &**this; }                        ///< Its members.

    /// Goes on to the next position.
    PositionIterator& operator++() {
        m_position = m_container->PositionAfter(m_position);
        return *this;
    }
    /// Goes on to the next position and returns the iterator from before.
    PositionIterator operator++(int) {
        PositionIterator before = *this;
        ++*this;
        return before;
    }

    /// Goes back to the previous position; from the end to the last position.
    PositionIterator& operator--()
        requires(Container::kWalksBack)
    {
        m_position = m_container->PositionBefore(m_position);
        return *this;
    }
    /// Goes back and returns the iterator from before.
    PositionIterator operator--(int)
        requires(Container::kWalksBack)
    {
        PositionIterator before = *this;
        --*this;
        return before;
    }

    /// Whether both stand at the same position.
    friend bool operator==(const PositionIterator& left, const PositionIterator& right) {
        return left.m_position == right.m_position;
    }

private:
    const Container* m_container = nullptr;
    POSITION m_position = nullptr;
};

}  // namespace rk
