#pragma once

#include <cstdint>
#include <string_view>

namespace rk::platform {

/// What `rk::SecretHash` promises.
std::uint32_t SecretHash(std::u16string_view text) noexcept;

}  // namespace rk::platform
