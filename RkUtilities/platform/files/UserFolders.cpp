#include "RkUtilities/platform/files/UserFolders.h"

#include "RkUtilities/platform/files/FileCalls.h"
#include "RkUtilities/platform/files/Files.h"
#include "RkUtilities/platform/process/Environment.h"

#include <algorithm>
#include <cerrno>
#include <optional>
#include <pwd.h>
#include <unistd.h>
#include <vector>

namespace rk::platform {
namespace {

std::string HomeInPasswordDatabase() {
    std::vector<char> buffer(1024);
    for (;;) {
        passwd entry{};
        passwd* found = nullptr;
        const int error = ::getpwuid_r(::getuid(), &entry, buffer.data(), buffer.size(), &found);
        if (error == 0)
            return found && found->pw_dir ? found->pw_dir : "";
        if (error == ERANGE)
            buffer.resize(buffer.size() * 2);
        else if (error != EINTR)
            return {};
    }
}

std::string InHome(std::string_view relative) {
    std::string home = HomeFolder();
    if (home.empty())
        return {};
    if (home.back() != '/')
        home += '/';
    return home.append(relative);
}

/// The value of a line `XDG_MUSIC_DIR="$HOME/Music"` that sets `name`: quoted for the shell, absolute or in the home.
std::optional<std::string> ValueOfLine(std::string_view line, std::string_view name) {
    const auto skip = [&line](std::string_view expected) {
        line.remove_prefix(std::min(line.find_first_not_of(" \t"), line.size()));
        const bool isThere = line.starts_with(expected);
        line.remove_prefix(isThere ? expected.size() : 0);
        return isThere;
    };
    if (!skip(name) || !skip("=") || !skip("\""))
        return std::nullopt;
    constexpr std::string_view kHome = "$HOME";
    const bool inHome = line.starts_with(kHome);
    line.remove_prefix(inHome ? kHome.size() : 0);
    if (!line.starts_with('/') && !(inHome && line.starts_with('"')))
        return std::nullopt;
    std::string path;
    for (std::size_t i = 0; i < line.size() && line[i] != '"'; ++i) {
        if (line[i] == '\\' && i + 1 < line.size())
            ++i;
        path += line[i];
    }
    if (inHome)
        path = InHome(path.empty() ? path : path.substr(1));
    return WithoutClosingSlashes(path);
}

}  // namespace

std::string HomeFolder() {
    const std::optional<std::string> home = EnvironmentVariable("HOME");
    return WithoutClosingSlashes(home && !home->empty() ? *home : HomeInPasswordDatabase());
}

std::string BaseFolder(const std::string& variable, std::string_view inHome) {
    const std::optional<std::string> value = EnvironmentVariable(variable);
    return value && value->starts_with('/') ? WithoutClosingSlashes(*value) : InHome(inHome);
}

std::string PreferencesFolder() { return BaseFolder("XDG_CONFIG_HOME", ".config"); }

std::string ConfiguredFolder(const std::string& name, std::string_view inHome) {
    std::error_code ignored;
    const std::string lines = ContentOfFile(PreferencesFolder() + "/user-dirs.dirs", ignored);
    std::string path = InHome(inHome);
    for (std::size_t start = 0; start < lines.size();) {
        const std::size_t end = std::min(lines.find('\n', start), lines.size());
        if (std::optional<std::string> value = ValueOfLine(std::string_view(lines).substr(start, end - start), name))
            path = std::move(*value);
        start = end + 1;
    }
    return path == HomeFolder() ? std::string() : path;
}

}  // namespace rk::platform
