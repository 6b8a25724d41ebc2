#pragma once

#include <array>
#include <cstdint>
#include <string_view>

namespace rk::platform {

/// 16 bytes from the system's random generator, fit for keys; no other caller is given the same bytes. Each thread
/// draws from a stock of its own, so that a system call serves many draws. The child of a fork never sees what its
/// parent's stock held: the kernel wipes a page that tells it, whichever way the process forked. Where the kernel
/// cannot do that, nothing is kept in stock. Throws std::system_error when the system gives no random bytes (a sandbox
/// that forbids it). Safe from any thread, but not from a signal handler.
std::array<std::uint8_t, 16> RandomBytes();

/// What `rk::SecretHash` promises.
std::uint32_t SecretHash(std::u16string_view text) noexcept;

}  // namespace rk::platform
