#include "RkUtilities/platform/files/UserFolders.h"

#include "RkUtilities/platform/files/FileCalls.h"
#include "RkUtilities/platform/files/FileFacts.h"
#include "RkUtilities/platform/files/Files.h"
#include "RkUtilities/platform/process/Environment.h"

#include <algorithm>
#include <cerrno>
#include <optional>
#include <pwd.h>
#include <string_view>
#include <unistd.h>
#include <vector>

namespace rk::platform {
namespace {

enum class Source { Variable, SettingsFile };

struct FolderRule {
    UserFolder kind;
    Source source;
    std::string_view name;  // of the variable, or of the line in user-dirs.dirs
    std::string_view defaultInHome;
};

constexpr FolderRule kRules[] = {
    {UserFolder::Desktop, Source::SettingsFile, "XDG_DESKTOP_DIR", "Desktop"},
    {UserFolder::Documents, Source::SettingsFile, "XDG_DOCUMENTS_DIR", "Documents"},
    {UserFolder::Downloads, Source::SettingsFile, "XDG_DOWNLOAD_DIR", "Downloads"},
    {UserFolder::Pictures, Source::SettingsFile, "XDG_PICTURES_DIR", "Pictures"},
    {UserFolder::Music, Source::SettingsFile, "XDG_MUSIC_DIR", "Music"},
    {UserFolder::Movies, Source::SettingsFile, "XDG_VIDEOS_DIR", "Videos"},
    {UserFolder::Public, Source::SettingsFile, "XDG_PUBLICSHARE_DIR", "Public"},
    {UserFolder::Preferences, Source::Variable, "XDG_CONFIG_HOME", ".config"},
    {UserFolder::ApplicationSupport, Source::Variable, "XDG_DATA_HOME", ".local/share"},
    {UserFolder::Caches, Source::Variable, "XDG_CACHE_HOME", ".cache"},
};

std::string HomeInPasswordDatabase()
{
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

std::string WithoutTrailingSlashes(std::string path)
{
    while (path.size() > 1 && path.back() == '/')
        path.pop_back();
    return path;
}

std::string InHome(std::string_view relative)
{
    std::string home = WithoutTrailingSlashes(HomeFolder());
    if (home.empty())
        return {};
    if (home.back() != '/')
        home += '/';
    return home.append(relative);
}

// After the rule of the XDG base directories, a relative path is ignored.
std::string BaseFolder(const std::string& variable, std::string_view defaultInHome)
{
    std::optional<std::string> value = EnvironmentVariable(variable);
    return value && value->starts_with('/') ? WithoutTrailingSlashes(std::move(*value)) : InHome(defaultInHome);
}

// The value of one line `XDG_MUSIC_DIR="$HOME/Music"`, if the line sets `name`: double-quoted as the shell reads it,
// and either absolute or in the home folder.
std::optional<std::string> ValueOfLine(std::string_view line, std::string_view name)
{
    const auto skipBlanks = [&line] { line.remove_prefix(std::min(line.find_first_not_of(" \t"), line.size())); };
    const auto skip = [&line](std::string_view expected) {
        const bool there = line.starts_with(expected);
        line.remove_prefix(there ? expected.size() : 0);
        return there;
    };
    skipBlanks();
    if (!skip(name))
        return std::nullopt;
    skipBlanks();
    if (!skip("="))
        return std::nullopt;
    skipBlanks();
    if (!skip("\""))
        return std::nullopt;

    const bool inHome = skip("$HOME");
    if (inHome ? !line.starts_with('/') && !line.starts_with('"') : !line.starts_with('/'))
        return std::nullopt;
    std::string path;
    for (std::size_t i = 0; i < line.size() && line[i] != '"'; ++i) {
        if (line[i] == '\\' && i + 1 < line.size())
            ++i;
        path += line[i];
    }
    if (inHome)
        path = InHome(path.empty() ? path : path.substr(1));
    return WithoutTrailingSlashes(std::move(path));
}

/// "" when there is no such ordinary file.
std::string ContentOf(const std::string& path)
{
    std::string content;
    if (KindOf(path) != FileKind::File)
        return content;
    std::error_code error;
    const FileHandle file(OpenFile(path, {}, error));
    constexpr std::size_t kBlock = 4096;
    for (std::size_t done = 0, count = kBlock; !error && count == kBlock; done += count) {
        content.resize(done + kBlock);
        count = ReadFile(file.Descriptor(), content.data() + done, kBlock, error);
        content.resize(done + count);
    }
    return content;
}

std::string ConfiguredFolder(std::string_view name, std::string_view defaultInHome)
{
    const std::string settings = BaseFolder("XDG_CONFIG_HOME", ".config") + "/user-dirs.dirs";
    std::string path = InHome(defaultInHome);
    const std::string lines = ContentOf(settings);
    for (std::size_t start = 0; start < lines.size();) {
        const std::size_t end = std::min(lines.find('\n', start), lines.size());
        if (std::optional<std::string> value = ValueOfLine(std::string_view(lines).substr(start, end - start), name))
            path = std::move(*value);
        start = end + 1;
    }
    return path == WithoutTrailingSlashes(HomeFolder()) ? std::string() : path;
}

}  // namespace

std::string HomeFolder()
{
    std::optional<std::string> home = EnvironmentVariable("HOME");
    return WithoutTrailingSlashes(home && !home->empty() ? std::move(*home) : HomeInPasswordDatabase());
}

std::string UserFolderPath(UserFolder kind)
{
    if (kind == UserFolder::Home)
        return HomeFolder();
    for (const FolderRule& rule : kRules) {
        if (rule.kind == kind)
            return rule.source == Source::Variable ? BaseFolder(std::string(rule.name), rule.defaultInHome)
                                                   : ConfiguredFolder(rule.name, rule.defaultInHome);
    }
    return {};
}

}  // namespace rk::platform
