#pragma once

#include "RkUtilities/foundation/AtlThrow.h"
#include "RkUtilities/foundation/POSITION.h"
#include "RkUtilities/foundation/detail/NodePool.h"

#include <concepts>
#include <cstddef>
#include <initializer_list>
#include <type_traits>
#include <utility>

/// Elements in a row that never move, each found by its position: a doubly linked list.
///
///     for (POSITION position = list.GetHeadPosition(); position;)
///         use(list.GetNext(position));
///     for (const CString& name : list)    // the same walk
///         use(name);
///
/// Every member but copying, comparing and RemoveAll takes constant time. A null position throws CAtlException with
/// ATL::kInvalidArgument; a failed allocation throws it with ATL::kAllocationFailed. Whatever is thrown, the list is as
/// it was (the strong guarantee). An argument may be an element of the same list. Memory comes in blocks of some
/// elements; an empty list holds no memory until the first element, the place of a removed element serves a later one,
/// RemoveAll frees all. Copies are deep; a moved-from list is empty. Different threads may use different lists, and one
/// list while no thread changes it.
template <class T> class CAtlList {
public:
    using value_type = T;                                            ///< The elements' type.
    using size_type = std::size_t;                                   ///< The type of counts.
    using difference_type = std::ptrdiff_t;                          ///< The distance of two iterators.
    using reference = T&;                                            ///< An element.
    using const_reference = const T&;                                ///< An element, for reading.
    using iterator = rk::PositionIterator<CAtlList, T>;              ///< Walks and changes the elements.
    using const_iterator = rk::PositionIterator<CAtlList, const T>;  ///< Walks the elements.

    /// @param blockElementCount  how many elements are allocated at a time; 0 counts as 1
    explicit CAtlList(unsigned int blockElementCount) noexcept : m_blockElementCount(blockElementCount) {}
    CAtlList() noexcept : CAtlList(10u) {}
    CAtlList(std::initializer_list<T> elements) : CAtlList() { AddEach(elements); }            ///< The listed elements.
    CAtlList(const CAtlList& other) : CAtlList(other.m_blockElementCount) { AddEach(other); }  ///< Copies the elements.
    /// Takes the elements; `other` is empty then.
    CAtlList(CAtlList&& other) noexcept : CAtlList(other.m_blockElementCount) { Swap(other); }
    /// Copies or takes the other list's elements.
    CAtlList& operator=(CAtlList other) noexcept {
        Swap(other);
        return *this;
    }
    ~CAtlList() { RemoveAll(); }

    std::size_t GetCount() const noexcept { return m_count; }  ///< The number of elements.
    bool IsEmpty() const noexcept { return m_count == 0; }     ///< Whether there are no elements.
    std::size_t size() const noexcept { return m_count; }      ///< `GetCount`.
    bool empty() const noexcept { return m_count == 0; }       ///< `IsEmpty`.

    /// Adds an element before the first element; returns its position.
    POSITION AddHead(const T& element) { return LinkBefore(m_head, Create(element)); }
    /// Moves an element in at the head.
    POSITION AddHead(T&& element) { return LinkBefore(m_head, Create(std::move(element))); }
    /// Adds an element at the tail; returns its position.
    POSITION AddTail(const T& element) { return LinkBefore(nullptr, Create(element)); }
    /// Moves an element in at the tail.
    POSITION AddTail(T&& element) { return LinkBefore(nullptr, Create(std::move(element))); }

    /// The position of the first element; null in an empty list.
    POSITION GetHeadPosition() const noexcept { return PositionOf(m_head); }

    /// The element at the position, which moves on to the next element, or to null behind the last element.
    T& GetNext(POSITION& position) { return NodeAt(std::exchange(position, Following(position)))->element; }
    /// The same, for reading.
    const T& GetNext(POSITION& position) const { return NodeAt(std::exchange(position, Following(position)))->element; }

    /// The position of the last element; null in an empty list.
    POSITION GetTailPosition() const noexcept { return PositionOf(m_tail); }
    /// The element at the position, which moves back to the previous element, or to null before the first element.
    T& GetPrev(POSITION& position) { return NodeAt(std::exchange(position, Preceding(position)))->element; }
    /// The same, for reading.
    const T& GetPrev(POSITION& position) const { return NodeAt(std::exchange(position, Preceding(position)))->element; }
    T& GetHead() { return GetAt(GetHeadPosition()); }              ///< The first element; an empty list throws.
    const T& GetHead() const { return GetAt(GetHeadPosition()); }  ///< The first element, for reading.
    T& GetTail() { return GetAt(GetTailPosition()); }              ///< The last element; an empty list throws.
    const T& GetTail() const { return GetAt(GetTailPosition()); }  ///< The last element, for reading.

    /// Adds an element before a position; returns its position.
    template <std::convertible_to<T> Element = T> POSITION InsertBefore(POSITION position, Element&& element) {
        Node* const next = Checked(position);
        return LinkBefore(next, Create(std::forward<Element>(element)));
    }
    /// Adds an element behind a position; returns its position.
    template <std::convertible_to<T> Element = T> POSITION InsertAfter(POSITION position, Element&& element) {
        Node* const previous = Checked(position);
        return LinkBefore(previous->next, Create(std::forward<Element>(element)));
    }

    T& GetAt(POSITION position) { return Checked(position)->element; }              ///< The element at a position.
    const T& GetAt(POSITION position) const { return Checked(position)->element; }  ///< The element, for reading.

    /// Removes the element; the positions of all others stay valid.
    void RemoveAt(POSITION position) {
        Node* const node = Checked(position);
        (node->previous ? node->previous->next : m_head) = node->next;
        (node->next ? node->next->previous : m_tail) = node->previous;
        --m_count;
        m_pool.Destroy(node);
    }

    /// Removes all elements and frees the memory.
    void RemoveAll() noexcept {
        Node* node = std::exchange(m_head, nullptr);
        m_tail = nullptr;
        m_count = 0;
        if constexpr (!std::is_trivially_destructible_v<T>) {
            while (node)
                m_pool.Destroy(std::exchange(node, node->next));
        }
        m_pool.Release();
    }

    iterator begin() noexcept { return {this, GetHeadPosition()}; }  ///< Iterators in both directions, head to tail.
    iterator end() noexcept { return {this, nullptr}; }              ///< Behind the last element.
    const_iterator begin() const noexcept { return {this, GetHeadPosition()}; }  ///< The first element, for reading.
    const_iterator end() const noexcept { return {this, nullptr}; }              ///< Behind the last element.

    /// The same number of elements, equal in their order.
    friend bool operator==(const CAtlList& left, const CAtlList& right) {
        if (left.m_count != right.m_count)
            return false;
        for (auto a = left.begin(), b = right.begin(); a != left.end(); ++a, ++b) {
            if (!(*a == *b))
                return false;
        }
        return true;
    }

private:
    friend iterator;
    friend const_iterator;

    struct Node {
        template <class Element>
        explicit Node(Element&& value)  // NOLINT(bugprone-forwarding-reference-overload): nodes are never copied
            : element(std::forward<Element>(value)) {}

        Node* previous = nullptr;
        Node* next = nullptr;
        T element;
    };

    static POSITION PositionOf(Node* node) noexcept { return reinterpret_cast<POSITION>(node); }
    static Node* NodeAt(POSITION position) noexcept { return reinterpret_cast<Node*>(position); }
    static T& EntryAt(POSITION position) noexcept { return NodeAt(position)->element; }
    static constexpr bool kWalksBack = true;
    static POSITION PositionAfter(POSITION position) noexcept { return PositionOf(NodeAt(position)->next); }
    POSITION PositionBefore(POSITION position) const noexcept {
        return PositionOf(position ? NodeAt(position)->previous : m_tail);
    }

    static Node* Checked(POSITION position) {
        if (!position)
            ATL::AtlThrow(ATL::kInvalidArgument);
        return NodeAt(position);
    }
    static POSITION Following(POSITION position) { return PositionOf(Checked(position)->next); }
    static POSITION Preceding(POSITION position) { return PositionOf(Checked(position)->previous); }

    template <class Element> Node* Create(Element&& element) {
        return rk::RaisingAllocationFailures(
            [&] { return m_pool.Create(m_blockElementCount, std::forward<Element>(element)); });
    }

    /// Puts a node before another node, or at the tail before null.
    POSITION LinkBefore(Node* next, Node* node) noexcept {
        Node* const previous = next ? next->previous : m_tail;
        node->previous = previous;
        node->next = next;
        (previous ? previous->next : m_head) = node;
        (next ? next->previous : m_tail) = node;
        ++m_count;
        return PositionOf(node);
    }

    template <class Elements> void AddEach(const Elements& elements) {
        for (const T& element : elements)
            AddTail(element);
    }

    void Swap(CAtlList& other) noexcept {
        m_pool.Swap(other.m_pool);
        std::swap(m_head, other.m_head);
        std::swap(m_tail, other.m_tail);
        std::swap(m_count, other.m_count);
        std::swap(m_blockElementCount, other.m_blockElementCount);
    }

    rk::NodePool<Node> m_pool;
    Node* m_head = nullptr;
    Node* m_tail = nullptr;
    std::size_t m_count = 0;
    unsigned int m_blockElementCount;
};
