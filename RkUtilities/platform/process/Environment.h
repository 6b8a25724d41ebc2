#pragma once

#include <optional>
#include <string>

/// What the process was given when it was started.
/// Safe from any thread as long as no other thread changes the environment or the current folder meanwhile.
namespace rk::platform {

/// The value of an environment variable, its bytes as they are; nullopt when it is not set. An empty value is a value.
/// A name that is empty, contains "=" or a zero byte is never set.
std::optional<std::string> EnvironmentVariable(const std::string& name);

/// The current folder as an absolute native path without trailing "/" ("/" for the root); "" when it was deleted or
/// may not be read. Links stay as the system reports them: the path is the real one.
std::string CurrentFolder();

}  // namespace rk::platform
