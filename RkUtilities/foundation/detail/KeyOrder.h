#pragma once

#include "RkUtilities/platform/locale/Collation.h"

#include <algorithm>
#include <cstdint>

namespace rk {

/// The indexes of keys in the keys' order, byte by byte; `comesBefore` decides between the indexes of equal keys. Most
/// comparisons end within the first bytes, which are held as a number.
template <class ComesBefore>
std::vector<std::size_t> OrderedByKeys(const platform::TextRow<char>& keys, const ComesBefore& comesBefore) {
    struct Rank {
        std::uint64_t head;
        std::size_t index;
    };
    std::vector<Rank> ranks(keys.Count(), Rank{0, 0});
    for (std::size_t index = 0; index < ranks.size(); ++index) {
        ranks[index].index = index;
        const std::string_view key = keys[index];
        for (std::size_t i = 0; i < sizeof ranks[index].head; ++i)
            ranks[index].head = ranks[index].head << 8 | (i < key.size() ? static_cast<unsigned char>(key[i]) : 0U);
    }
    std::sort(ranks.begin(), ranks.end(), [&](const Rank& a, const Rank& b) {
        if (a.head != b.head)
            return a.head < b.head;
        const int order = keys[a.index].compare(keys[b.index]);
        return order != 0 ? order < 0 : comesBefore(a.index, b.index);
    });
    std::vector<std::size_t> indexes(ranks.size());
    std::transform(ranks.begin(), ranks.end(), indexes.begin(), [](const Rank& rank) { return rank.index; });
    return indexes;
}

}  // namespace rk
