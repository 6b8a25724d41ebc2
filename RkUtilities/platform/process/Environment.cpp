#include "RkUtilities/platform/process/Environment.h"

#include <array>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <unistd.h>

namespace rk::platform {

std::optional<std::string> EnvironmentVariable(const std::string& name)
{
    if (name.empty() || name.find_first_of(std::string("=\0", 2)) != std::string::npos)
        return std::nullopt;
    const char* value = std::getenv(name.c_str());
    return value ? std::optional<std::string>(value) : std::nullopt;
}

std::string CurrentFolder()
{
    std::array<char, PATH_MAX> onStack;
    if (const char* folder = ::getcwd(onStack.data(), onStack.size()))
        return *folder == '/' ? folder : "";  // "(unreachable)/..." lies outside the process's root
    if (errno != ERANGE)
        return {};
    for (std::string longPath(std::size_t{4} * PATH_MAX, '\0');; longPath.resize(longPath.size() * 2)) {
        if (::getcwd(longPath.data(), longPath.size())) {
            longPath.resize(longPath.find('\0'));
            return longPath.front() == '/' ? longPath : std::string();
        }
        if (errno != ERANGE)
            return {};
    }
}

}  // namespace rk::platform
