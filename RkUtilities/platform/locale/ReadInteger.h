#pragma once

#include <charconv>
#include <optional>
#include <string_view>
#include <system_error>

namespace rk::platform {

/// The integer that all of the text spells in ASCII digits; nullopt for another text, and beyond the type's range.
template <class Integer> std::optional<Integer> ReadInteger(std::string_view text) noexcept {
    Integer value{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    return error == std::errc() && end == text.data() + text.size() ? std::optional(value) : std::nullopt;
}

}  // namespace rk::platform
