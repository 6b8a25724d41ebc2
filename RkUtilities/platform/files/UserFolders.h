#pragma once

#include <string>
#include <string_view>

/// Where the user's folders are: home, and the folders that the XDG base directories and "xdg-user-dirs" name. Native
/// paths without trailing "/". Nothing is created, and a folder may be missing on disk. "" when the user has no such
/// folder: without a home, or when the user switched it off. Safe from any thread as long as no other thread changes
/// the environment meanwhile.
namespace rk::platform {

/// $HOME, or what the password database says when that is not set or empty.
std::string HomeFolder();

/// The folder that a variable of the XDG base directories names; `inHome` where it holds no absolute path.
std::string BaseFolder(const std::string& variable, std::string_view inHome);
/// $XDG_CONFIG_HOME, else ~/.config.
std::string PreferencesFolder();

/// The folder of the last line for `name` in user-dirs.dirs in the preferences' folder; `inHome` without such a line. A
/// line that leads to the home folder itself means that there is no such folder.
std::string ConfiguredFolder(const std::string& name, std::string_view inHome);

}  // namespace rk::platform
