#pragma once

#include "RkUtilities/foundation/AtlThrow.h"
#include "RkUtilities/foundation/CElementTraits.h"
#include "RkUtilities/foundation/POSITION.h"
#include "RkUtilities/foundation/detail/NodePool.h"

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <iterator>
#include <type_traits>
#include <utility>

namespace rk {

/// What a map with keys of type K takes for a key when it looks up.
template <class Argument, class K, class KTraits>
concept KeyFor =
    std::convertible_to<const Argument&, typename KTraits::INARGTYPE> || std::convertible_to<const Argument&, const K&>;

}  // namespace rk

/// Values found by their keys: a hash map with chained buckets.
///
///     CAtlMap<CString, int> counts;
///     counts.SetAt(u"topics", 40);
///     if (const auto* entry = counts.Lookup(u"topics"))
///         use(entry->m_value);
///     for (const auto& [key, value] : counts) ...
///
/// Setting, looking up and removing take constant time on average, however many keys there are. A walk goes bucket by
/// bucket, from bucket 0 on; a key's bucket is KTraits::Hash modulo the bucket count. The keys of a bucket are walked
/// from the last key set to the first, until the table grows. There are 17 buckets or as many as InitHashTable says; a
/// key that would be the third per bucket on average makes the table grow fourfold or more, to a prime number. Setting
/// a new key during a walk may therefore repeat or skip entries; removing an entry that was passed is safe.
///
/// Entries never move: positions and pointers to entries last until their entry is removed. A null position throws
/// CAtlException with ATL::kInvalidArgument, a failed allocation throws it with ATL::kAllocationFailed. Whatever is
/// thrown, the map is as it was (the strong guarantee), except where SetAt assigns to the value of a key that was
/// there. An argument may be a part of the same map. An empty map holds no memory until the first key; RemoveAll frees
/// all. Copies are deep and walked alike; a moved-from map is empty. Looking up never allocates, unless the argument
/// must be converted to a key. Different threads may use different maps, and one map while no thread changes it.
template <class K, class V, class KTraits = CElementTraits<K>> class CAtlMap {
public:
    /// An entry: what walks and look-ups lead to. The key stays; the value may be changed.
    struct CPair {
        const K m_key;  ///< never changes
        V m_value;      ///< may be changed in place
    };

    using value_type = CPair;                                           ///< The entries' type.
    using size_type = std::size_t;                                      ///< The type of counts.
    using difference_type = std::ptrdiff_t;                             ///< The distance of two iterators.
    using reference = CPair&;                                           ///< An entry.
    using const_reference = const CPair&;                               ///< An entry, for reading.
    using iterator = rk::PositionIterator<CAtlMap, CPair>;              ///< Walks the entries and changes values.
    using const_iterator = rk::PositionIterator<CAtlMap, const CPair>;  ///< Walks the entries.

    CAtlMap() noexcept = default;
    /// Sets the pairs in their order, so that the last of equal keys stays.
    CAtlMap(std::initializer_list<CPair> pairs) : CAtlMap() {
        for (const CPair& pair : pairs)
            SetAt(pair.m_key, pair.m_value);
    }
    /// Copies the entries.
    CAtlMap(const CAtlMap& other) : CAtlMap() {
        rk::RaisingAllocationFailures([&] { CopyEntries(other); });
    }
    CAtlMap(CAtlMap&& other) noexcept : CAtlMap() { Swap(other); }  ///< Takes the entries; `other` is empty then.
    /// Copies or takes the other map's entries.
    CAtlMap& operator=(CAtlMap other) noexcept {
        Swap(other);
        return *this;
    }
    ~CAtlMap() { RemoveAll(); }

    /// Fixes the bucket count that an empty map starts with; allocates nothing yet.
    /// @return false, and nothing changes, when the map holds entries or the count is 0
    bool InitHashTable(unsigned int bucketCount) noexcept {
        if (m_count > 0 || bucketCount == 0)
            return false;
        RemoveAll();  // entries that were removed one by one have left a table
        m_firstBucketCount = bucketCount;
        return true;
    }

    /// The bucket count in use, or to start with.
    unsigned int GetHashTableSize() const noexcept {
        return m_buckets.count == 0 ? m_firstBucketCount : m_buckets.count;
    }

    std::size_t GetCount() const noexcept { return m_count; }  ///< The number of entries.
    bool IsEmpty() const noexcept { return m_count == 0; }     ///< Whether there are no entries.
    std::size_t size() const noexcept { return m_count; }      ///< `GetCount`.
    bool empty() const noexcept { return m_count == 0; }       ///< `IsEmpty`.

    /// Sets the value of the key. A key that was there stays in its place, and its value is assigned to; when that
    /// throws, the value is as the assignment leaves it. Returns the entry's position.
    POSITION SetAt(const K& key, const V& value) { return Set(key, value); }
    POSITION SetAt(const K& key, V&& value) { return Set(key, std::move(value)); }  ///< The same, moving the value in.
    POSITION SetAt(K&& key, V&& value) { return Set(std::move(key), std::move(value)); }  ///< The same, moving both in.

    /// The key's value. A key that is not there is set with a value-initialised value (0, false, "").
    V& operator[](const K& key) {
        if (CPair* const entry = Lookup(key))
            return entry->m_value;
        return EntryAt(rk::RaisingAllocationFailures([&] { return Set(key, V()); })).m_value;
    }

    /// The entry of the key, or null.
    /// A map of text keys takes views and literals as they are; for other maps the argument is converted to a key.
    template <rk::KeyFor<K, KTraits> Key = K> CPair* Lookup(const Key& key) {
        Node* const node = FindKey(key);
        return node ? &node->entry : nullptr;
    }
    /// The entry, for reading.
    template <rk::KeyFor<K, KTraits> Key = K> const CPair* Lookup(const Key& key) const {
        const Node* const node = FindKey(key);
        return node ? &node->entry : nullptr;
    }

    /// Copies the key's value; false, and `value` stays, when the map does not hold the key.
    template <rk::KeyFor<K, KTraits> Key = K> bool Lookup(const Key& key, V& value) const {
        const CPair* const entry = Lookup(key);
        if (entry)
            rk::RaisingAllocationFailures([&] { value = entry->m_value; });
        return entry != nullptr;
    }

    /// Removes the key and its value; false when the map does not hold the key.
    template <rk::KeyFor<K, KTraits> Key = K> bool RemoveKey(const Key& key) {
        Node* const node = FindKey(key);
        if (!node)
            return false;
        Node** link = &m_buckets.first[BucketOf(node->hash)];
        while (*link != node)
            link = &(*link)->next;
        *link = node->next;
        --m_count;
        m_pool.Destroy(node);
        return true;
    }

    /// Removes all entries and frees the memory.
    void RemoveAll() noexcept {
        const Buckets buckets = std::exchange(m_buckets, {});
        m_count = 0;
        if constexpr (!std::is_trivially_destructible_v<CPair>) {
            for (std::uint32_t bucket = 0; bucket < buckets.count; ++bucket) {
                while (Node* const node = buckets.first[bucket]) {
                    buckets.first[bucket] = node->next;
                    m_pool.Destroy(node);
                }
            }
        }
        m_pool.Release();
    }

    /// The position of the first entry; null in an empty map.
    POSITION GetStartPosition() const noexcept { return m_count > 0 ? FirstFromBucket(0) : nullptr; }

    /// The entry at the position, which moves on to the next entry, or to null behind the last entry. Never null.
    CPair* GetNext(POSITION& position) { return &EntryAt(std::exchange(position, Following(position))); }
    /// The same, for reading.
    const CPair* GetNext(POSITION& position) const { return &EntryAt(std::exchange(position, Following(position))); }

    /// The same as a copy of the key and the value; when copying throws, the position stays.
    void GetNextAssoc(POSITION& position, K& key, V& value) const {
        const POSITION following = Following(position);
        rk::RaisingAllocationFailures([&] {
            key = EntryAt(position).m_key;
            value = EntryAt(position).m_value;
        });
        position = following;
    }

    /// Forward iterators over the entries, in the order of the walk.
    iterator begin() noexcept { return {this, GetStartPosition()}; }
    iterator end() noexcept { return {this, nullptr}; }                           ///< Behind the last entry.
    const_iterator begin() const noexcept { return {this, GetStartPosition()}; }  ///< The first entry, for reading.
    const_iterator end() const noexcept { return {this, nullptr}; }               ///< Behind the last entry.

    /// The same keys with equal values, in whatever order.
    friend bool operator==(const CAtlMap& left, const CAtlMap& right) {
        if (left.m_count != right.m_count)
            return false;
        for (const CPair& pair : left) {
            const CPair* const other = right.Lookup(pair.m_key);
            if (!other || !(other->m_value == pair.m_value))
                return false;
        }
        return true;
    }

private:
    friend iterator;
    friend const_iterator;

    struct Node {
        template <class Key, class Value>
        Node(std::uint32_t keyHash, Key&& key, Value&& value)
            : hash(keyHash), entry{std::forward<Key>(key), std::forward<Value>(value)} {}

        Node* next = nullptr;
        std::uint32_t hash;
        CPair entry;
    };

    /// The first node of each bucket. No std::vector, whose layout changes with the checks of the standard library.
    struct Buckets {
        Buckets() = default;
        explicit Buckets(std::uint32_t bucketCount) : first(new Node* [bucketCount] {}), count(bucketCount) {}
        Buckets(Buckets&& other) noexcept : Buckets() { Swap(other); }
        Buckets& operator=(Buckets other) noexcept {
            Swap(other);
            return *this;
        }
        ~Buckets() { delete[] first; }

        void Swap(Buckets& other) noexcept {
            std::swap(first, other.first);
            std::swap(count, other.count);
        }
        std::uint32_t Of(std::uint32_t hash) const noexcept {
            const std::uint32_t mask = count - 1;
            return (count & mask) == 0 ? hash & mask : hash % count;  // a division costs as much as the hash of a name
        }
        void Link(Node* node) noexcept { node->next = std::exchange(first[Of(node->hash)], node); }

        Node** first = nullptr;
        std::uint32_t count = 0;
    };

    static constexpr bool kWalksBack = false;
    static POSITION PositionOf(const Node* node) noexcept {
        return reinterpret_cast<POSITION>(const_cast<Node*>(node));  // a position says nothing about const
    }
    static Node* NodeAt(POSITION position) noexcept { return reinterpret_cast<Node*>(position); }
    static CPair& EntryAt(POSITION position) noexcept { return NodeAt(position)->entry; }

    std::uint32_t BucketOf(std::uint32_t hash) const noexcept { return m_buckets.Of(hash); }

    POSITION FirstFromBucket(std::size_t bucket) const noexcept {
        while (bucket < m_buckets.count && !m_buckets.first[bucket])
            ++bucket;
        return bucket < m_buckets.count ? PositionOf(m_buckets.first[bucket]) : nullptr;
    }
    POSITION PositionAfter(POSITION position) const noexcept {
        const Node* const node = NodeAt(position);
        return node->next ? PositionOf(node->next) : FirstFromBucket(std::size_t{BucketOf(node->hash)} + 1);
    }
    POSITION Following(POSITION position) const {
        if (!position)
            ATL::AtlThrow(ATL::kInvalidArgument);
        return PositionAfter(position);
    }

    template <class Key> Node* FindKey(const Key& key) const {
        if (m_count == 0)
            return nullptr;
        // A text pointer may be null, which makes a key but no view.
        if constexpr (std::convertible_to<const Key&, typename KTraits::INARGTYPE> && !std::is_pointer_v<Key>) {
            typename KTraits::INARGTYPE argument = key;
            return Find(KTraits::Hash(argument), argument);
        } else {
            const K& argument = key;  // keeps what the conversion makes until the end
            return Find(KTraits::Hash(argument), argument);
        }
    }

    Node* Find(std::uint32_t hash, typename KTraits::INARGTYPE key) const {
        if (m_buckets.count == 0)
            return nullptr;
        for (Node* node = m_buckets.first[BucketOf(hash)]; node; node = node->next) {
            if (node->hash == hash && KTraits::CompareElements(node->entry.m_key, key))
                return node;
        }
        return nullptr;
    }

    template <class Key, class Value> POSITION Set(Key&& key, Value&& value) {
        return rk::RaisingAllocationFailures([&] {
            const std::uint32_t hash = KTraits::Hash(key);
            Node* node = Find(hash, key);
            if (node)
                node->entry.m_value = std::forward<Value>(value);
            else
                node = AddNode(hash, std::forward<Key>(key), std::forward<Value>(value));
            return PositionOf(node);
        });
    }

    template <class Key, class Value> Node* AddNode(std::uint32_t hash, Key&& key, Value&& value) {
        Node* const node = m_pool.Create(BlockNodeCount(), hash, std::forward<Key>(key), std::forward<Value>(value));
        try {
            MakeRoomForOneMore();
        } catch (...) {
            m_pool.Destroy(node);
            throw;
        }
        m_buckets.Link(node);
        ++m_count;
        return node;
    }

    /// Blocks grow with the map, up to a size from which an allocation hardly costs more for each node.
    std::size_t BlockNodeCount() const noexcept { return m_count < 10 ? 10 : m_count < 250 ? m_count : 250; }

    void MakeRoomForOneMore() {
        if (m_buckets.count == 0)
            m_buckets = Buckets(m_firstBucketCount);
        else if (m_count >= 2 * std::size_t{m_buckets.count})
            Grow();
    }

    void Grow() {
        // Each is the first prime number from twice its predecessor on.
        static constexpr std::uint32_t kBucketCounts[] = {
            17,       37,       79,       163,       331,       673,       1361,       2729,      5471,    10949,
            21911,    43853,    87719,    175447,    350899,    701819,    1403641,    2807303,   5614657, 11229331,
            22458671, 44917381, 89834777, 179669557, 359339171, 718678369, 1437356741, 2874713497};
        const auto* wider = std::begin(kBucketCounts);
        while (wider != std::end(kBucketCounts) && *wider < 2 * m_count)
            ++wider;
        if (wider == std::end(kBucketCounts))
            return;
        Buckets buckets(*wider);
        for (std::uint32_t bucket = 0; bucket < m_buckets.count; ++bucket) {
            for (Node* node = m_buckets.first[bucket]; node;)
                buckets.Link(std::exchange(node, node->next));
        }
        m_buckets.Swap(buckets);
    }

    void CopyEntries(const CAtlMap& other) {
        m_firstBucketCount = other.m_firstBucketCount;
        if (other.m_count == 0)
            return;
        m_buckets = Buckets(other.m_buckets.count);
        for (std::size_t bucket = 0; bucket < m_buckets.count; ++bucket) {
            Node** end = &m_buckets.first[bucket];
            for (const Node* node = other.m_buckets.first[bucket]; node; node = node->next) {
                *end = m_pool.Create(BlockNodeCount(), node->hash, node->entry.m_key, node->entry.m_value);
                end = &(*end)->next;
                ++m_count;
            }
        }
    }

    void Swap(CAtlMap& other) noexcept {
        m_pool.Swap(other.m_pool);
        m_buckets.Swap(other.m_buckets);
        std::swap(m_count, other.m_count);
        std::swap(m_firstBucketCount, other.m_firstBucketCount);
    }

    rk::NodePool<Node> m_pool;
    Buckets m_buckets;
    std::size_t m_count = 0;
    unsigned int m_firstBucketCount = 17;
};
