#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace rk::platform {

/// The keys of some texts, in the order of the texts.
struct CollationKeys {
    std::string bytes;
    std::vector<std::size_t> ends;

    [[nodiscard]] std::string_view Of(std::size_t text) const
    {
        const std::size_t start = text == 0 ? 0 : ends[text - 1];
        return std::string_view(bytes).substr(start, ends[text] - start);
    }
};

/// The keys of texts in the user's order of names, without regard to case (CLDR's collation at its second level): keys
/// compare byte by byte as the texts compare, with those of the same call only. The order is that of the user's locale
/// of the moment (LC_COLLATE). Lone surrogates have a place too. Safe from any thread.
CollationKeys CollationKeysOf(const std::vector<std::u16string_view>& texts);

}  // namespace rk::platform
