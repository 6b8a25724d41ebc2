#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace rk::platform {

/// Texts one behind the other in one piece of memory.
template <class Unit> struct TextRow {
    std::basic_string<Unit> units;
    std::vector<std::size_t> ends;

    [[nodiscard]] std::size_t Count() const { return ends.size(); }
    [[nodiscard]] std::basic_string_view<Unit> operator[](std::size_t text) const {
        const std::size_t start = text == 0 ? 0 : ends[text - 1];
        return std::basic_string_view<Unit>(units).substr(start, ends[text] - start);
    }
    void Add(std::basic_string_view<Unit> text) {
        units += text;
        ends.push_back(units.size());
    }
};

/// The keys of texts in the user's order of names, without regard to case (CLDR's collation at its second level): keys
/// compare byte by byte as the texts compare, with keys of the same call only. The order is that of the user's locale
/// of the moment (LC_COLLATE). Lone surrogates have a place too. Safe from any thread.
TextRow<char> CollationKeysOf(const TextRow<char16_t>& texts);

}  // namespace rk::platform
