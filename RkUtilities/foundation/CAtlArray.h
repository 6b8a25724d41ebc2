#pragma once

#include "RkUtilities/foundation/AtlThrow.h"
#include "RkUtilities/foundation/detail/ElementMemory.h"

#include <concepts>
#include <cstddef>
#include <initializer_list>
#include <type_traits>
#include <utility>

/// Elements side by side in memory, found by index from 0.
///
///     CAtlArray<bool> days;
///     days.SetCount(7);                   // all false
///     days[1] = true;
///     for (const bool day : days) ...
///
/// An index that names no element throws CAtlException with ATL::kInvalidArgument, whatever the member. A failed
/// allocation, or a count that no memory can hold, throws it with ATL::kAllocationFailed. Whatever is thrown, the array
/// is as it was (the strong guarantee) unless the member says otherwise; when the elements can only be moved and their
/// move throws, the array keeps its count, but elements may be left moved-from. An argument may be an element of the
/// same array. Adding and SetCount may move the elements: references and iterators end. An empty array holds no memory
/// until the first element. Copies are deep; a moved-from array is empty. Different threads may use different arrays,
/// and one array while no thread changes it.
template <class T> class CAtlArray {
public:
    using value_type = T;                    ///< The elements' type.
    using size_type = std::size_t;           ///< The type of counts.
    using difference_type = std::ptrdiff_t;  ///< The distance of two iterators.
    using reference = T&;                    ///< An element.
    using const_reference = const T&;        ///< An element, for reading.
    using iterator = T*;                     ///< Walks and changes the elements.
    using const_iterator = const T*;         ///< Walks the elements.

    CAtlArray() noexcept = default;
    /// The listed elements.
    CAtlArray(std::initializer_list<T> elements) : CAtlArray(elements.begin(), elements.size()) {}
    CAtlArray(const CAtlArray& other) : CAtlArray(other.begin(), other.GetCount()) {}  ///< Copies the elements.
    CAtlArray(CAtlArray&& other) noexcept { Swap(other); }  ///< Takes the elements; `other` is empty then.
    /// Copies or takes the other array's elements.
    CAtlArray& operator=(CAtlArray other) noexcept {
        Swap(other);
        return *this;
    }
    ~CAtlArray() { Memory::DestroyEach(m_storage.m_elements, m_count); }

    std::size_t GetCount() const noexcept { return m_count; }        ///< The number of elements.
    bool IsEmpty() const noexcept { return m_count == 0; }           ///< Whether there are no elements.
    std::size_t size() const noexcept { return m_count; }            ///< `GetCount`.
    bool empty() const noexcept { return m_count == 0; }             ///< `IsEmpty`.
    T* data() noexcept { return m_storage.m_elements; }              ///< The first element; anything in an empty array.
    const T* data() const noexcept { return m_storage.m_elements; }  ///< The same, for reading.

    /// The element at `index`, for reading.
    const T& GetAt(std::size_t index) const { return m_storage.m_elements[Checked(index)]; }
    T& GetAt(std::size_t index) { return m_storage.m_elements[Checked(index)]; }  ///< The element at `index`.
    const T& operator[](std::size_t index) const { return GetAt(index); }         ///< `GetAt`, for reading.
    T& operator[](std::size_t index) { return GetAt(index); }                     ///< `GetAt`.

    /// Replaces an element; when its assignment throws, the element is as the assignment leaves it.
    void SetAt(std::size_t index, const T& element) {
        rk::RaisingAllocationFailures([&] { GetAt(index) = element; });
    }
    /// Moves an element in.
    void SetAt(std::size_t index, T&& element) {
        rk::RaisingAllocationFailures([&] { GetAt(index) = std::move(element); });
    }

    /// Adds an element at the end, in constant time on average; returns its index.
    std::size_t Add(const T& element) { return Append(element); }
    /// Moves an element in at the end; returns its index.
    std::size_t Add(T&& element) { return Append(std::move(element)); }

    /// Inserts an element before that at `index`; `GetCount()` inserts at the end. When a swap throws, the order is
    /// unspecified.
    template <std::convertible_to<T> Element = T> void InsertAt(std::size_t index, Element&& element) {
        if (index > m_count)
            ATL::AtlThrow(ATL::kInvalidArgument);
        Append(std::forward<Element>(element));
        rk::RaisingAllocationFailures([&] {
            using std::swap;
            for (T* place = end() - 1; place != begin() + index; --place)
                swap(place[-1], *place);
        });
    }
    /// Removes `count` elements from `index` on; 0 also at `GetCount()`. When a move throws, the rest is unspecified.
    void RemoveAt(std::size_t index, std::size_t count = 1) {
        if (index > m_count || count > m_count - index)
            ATL::AtlThrow(ATL::kInvalidArgument);
        if (count == 0)  // an element must not be moved onto itself
            return;
        rk::RaisingAllocationFailures([&] {
            for (T* place = begin() + index; place + count != end(); ++place)
                *place = std::move(place[count]);
        });
        Memory::DestroyEach(end() - count, count);
        m_count -= count;
    }

    /// Cuts the array to its first `count` elements, or lengthens it with value-initialised elements (0, false, "").
    /// @return true; failures throw
    bool SetCount(std::size_t count) {
        rk::RaisingAllocationFailures([&] {
            if (count <= m_count) {
                Memory::DestroyEach(m_storage.m_elements + count, m_count - count);
                m_count = count;
            } else {
                AddBehind(count - m_count, [](T* place, std::size_t addedCount) {
                    Memory::MakeEach(place, addedCount, [](T* each, std::size_t) { Memory::Make(each); });
                });
            }
        });
        return true;
    }

    void RemoveAll() noexcept { CAtlArray().Swap(*this); }  ///< Removes all elements and frees the memory.

    /// Pointers, so the array is a contiguous range: std::span and std::ranges take it.
    T* begin() noexcept { return m_storage.m_elements; }
    T* end() noexcept { return m_storage.m_elements + m_count; }              ///< Behind the last element.
    const T* begin() const noexcept { return m_storage.m_elements; }          ///< The first element, for reading.
    const T* end() const noexcept { return m_storage.m_elements + m_count; }  ///< Behind the last element.

    /// The same number of elements, equal in their order.
    friend bool operator==(const CAtlArray& left, const CAtlArray& right) {
        if (left.m_count != right.m_count)
            return false;
        for (std::size_t i = 0; i < left.m_count; ++i) {
            if (!(left.m_storage.m_elements[i] == right.m_storage.m_elements[i]))
                return false;
        }
        return true;
    }

private:
    using Memory = rk::ElementMemory<T>;

    /// Memory without elements; what stands in it is the array's matter.
    struct Storage {
        Storage() = default;
        explicit Storage(std::size_t capacity) : m_elements(Memory::Allocate(capacity)), m_capacity(capacity) {}
        Storage& operator=(Storage&&) = delete;
        ~Storage() { Memory::Free(m_elements); }

        T* m_elements = nullptr;
        std::size_t m_capacity = 0;
    };

    CAtlArray(const T* elements, std::size_t count) : CAtlArray() {
        rk::RaisingAllocationFailures([&] {
            if (count > 0)
                AddBehind(count, [&](T* place, std::size_t) { Memory::CopyEach(elements, count, place); });
        });
    }

    std::size_t Checked(std::size_t index) const {
        if (index >= m_count)
            ATL::AtlThrow(ATL::kInvalidArgument);
        return index;
    }

    template <class Element> std::size_t Append(Element&& element) {
        rk::RaisingAllocationFailures(
            [&] { AddBehind(1, [&](T* place, std::size_t) { Memory::Make(place, std::forward<Element>(element)); }); });
        return m_count - 1;
    }

    /// Lets `construct` make `addedCount` elements at the end, in new memory if need be.
    template <class Construct> void AddBehind(std::size_t addedCount, const Construct& construct) {
        const std::size_t count = m_count + addedCount;
        if (count <= m_storage.m_capacity) {
            construct(m_storage.m_elements + m_count, addedCount);
        } else {
            Storage wider(count > 2 * m_storage.m_capacity ? count : 2 * m_storage.m_capacity);
            construct(wider.m_elements + m_count, addedCount);  // it may copy an element that is moved next
            MoveElementsTo(wider, addedCount);
        }
        m_count = count;
    }

    void MoveElementsTo(Storage& wider, std::size_t addedCount) {
        if constexpr (std::is_nothrow_move_constructible_v<T>) {
            // Each is destroyed at once, so that no moved-from element is stored.
            for (std::size_t i = 0; i < m_count; ++i) {
                Memory::Make(wider.m_elements + i, std::move(m_storage.m_elements[i]));
                m_storage.m_elements[i].~T();
            }
        } else {
            CopyOrMoveElementsTo(wider, addedCount);
            Memory::DestroyEach(m_storage.m_elements, m_count);
        }
        SwapStorage(wider);
    }

    void CopyOrMoveElementsTo(Storage& wider, std::size_t addedCount) {
        try {
            if constexpr (std::is_copy_constructible_v<T>)
                Memory::CopyEach(m_storage.m_elements, m_count, wider.m_elements);
            else
                Memory::MakeEach(wider.m_elements, m_count, [this](T* each, std::size_t index) {
                    Memory::Make(each, std::move(m_storage.m_elements[index]));
                });
        } catch (...) {
            Memory::DestroyEach(wider.m_elements + m_count, addedCount);
            throw;
        }
    }

    void SwapStorage(Storage& other) noexcept {
        std::swap(m_storage.m_elements, other.m_elements);
        std::swap(m_storage.m_capacity, other.m_capacity);
    }

    void Swap(CAtlArray& other) noexcept {
        SwapStorage(other.m_storage);
        std::swap(m_count, other.m_count);
    }

    Storage m_storage;
    std::size_t m_count = 0;
};
