#pragma once

#include <cstddef>
#include <new>
#include <utility>

namespace rk {

/// Makes and keeps the nodes of one container: memory comes in blocks, a destroyed node's place is used again.
/// Nodes never move. The owner destroys every node before the pool goes. An empty pool holds no memory; failures are
/// std::bad_alloc and what the node's constructor throws, and leave the pool as it was, save that it may hold a block
/// more.
template <class Node> class NodePool {
public:
    NodePool() = default;
    NodePool(NodePool&& other) noexcept { Swap(other); }
    NodePool& operator=(NodePool&&) = delete;
    ~NodePool() { Release(); }

    /// @param blockNodeCount  how many nodes a new block has room for, if one is needed; 0 counts as 1
    template <class... Arguments> Node* Create(std::size_t blockNodeCount, Arguments&&... arguments) {
        Slot* const slot = Take(blockNodeCount);
        try {
            return ::new (static_cast<void*>(slot)) Node(std::forward<Arguments>(arguments)...);
        } catch (...) {
            GiveBack(slot);
            throw;
        }
    }

    void Destroy(Node* node) noexcept {
        node->~Node();
        GiveBack(node);
    }

    /// Frees all memory; no node may be left.
    void Release() noexcept {
        while (m_blocks) {
            Slot* const block = m_blocks;
            m_blocks = block->nextBlock;
            delete[] block;
        }
        m_free = m_unused = m_unusedEnd = nullptr;
    }

    void Swap(NodePool& other) noexcept {
        std::swap(m_blocks, other.m_blocks);
        std::swap(m_free, other.m_free);
        std::swap(m_unused, other.m_unused);
        std::swap(m_unusedEnd, other.m_unusedEnd);
    }

private:
    /// The first slot of a block leads to the next block; each other slot holds a node or leads to the next free slot.
    union Slot {
        Slot* nextBlock;
        Slot* nextFree;
        alignas(Node) std::byte node[sizeof(Node)];
    };

    Slot* Take(std::size_t blockNodeCount) {
        if (m_free)
            return std::exchange(m_free, m_free->nextFree);
        if (m_unused == m_unusedEnd)
            AddBlock(blockNodeCount > 0 ? blockNodeCount : 1);
        return m_unused++;
    }

    void GiveBack(void* place) noexcept { m_free = ::new (place) Slot{.nextFree = m_free}; }

    void AddBlock(std::size_t nodeCount) {
        const std::size_t slotCount = nodeCount + 1;
        Slot* const block = new Slot[slotCount];
        block->nextBlock = m_blocks;
        m_blocks = block;
        m_unused = block + 1;
        m_unusedEnd = block + slotCount;
    }

    Slot* m_blocks = nullptr;
    Slot* m_free = nullptr;
    Slot* m_unused = nullptr;
    Slot* m_unusedEnd = nullptr;
};

}  // namespace rk
