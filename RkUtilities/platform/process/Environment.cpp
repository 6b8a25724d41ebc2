#include "RkUtilities/platform/process/Environment.h"

#include <cerrno>
#include <cstdlib>
#include <memory>
#include <new>
#include <unistd.h>

namespace rk::platform {

std::optional<std::string> EnvironmentVariable(const std::string& name) {
    if (name.empty() || name.find_first_of(std::string("=\0", 2)) != std::string::npos)
        return std::nullopt;
    const char* value = std::getenv(name.c_str());
    return value ? std::optional<std::string>(value) : std::nullopt;
}

std::string CurrentFolder() {
    const std::unique_ptr<char, decltype(&std::free)> folder(::getcwd(nullptr, 0), &std::free);
    if (!folder && errno == ENOMEM)
        throw std::bad_alloc();
    return folder && *folder == '/' ? folder.get() : "";  // "(unreachable)/..." lies outside the process's root
}

}  // namespace rk::platform
