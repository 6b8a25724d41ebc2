#pragma once

#include <string>

/// What tells this process and its machine from others. Safe from any thread.
namespace rk::platform {

int ProcessId() noexcept;
/// The name of the machine in its network.
std::string HostName();
/// Name, release and machine of the operating system's kernel: "Linux 6.1.0-13-amd64 x86_64".
std::string SystemName();

}  // namespace rk::platform
