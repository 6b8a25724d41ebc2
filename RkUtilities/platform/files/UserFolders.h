#pragma once

#include <string>
#include <string_view>

/// Where the user's folders are: home, and the folders that the XDG base directories and "xdg-user-dirs" name. Native
/// paths without trailing "/". Nothing is created and, but for the settings file of xdg-user-dirs, nothing is looked
/// for on disk: a folder may be missing. "" when the user has no such folder: there is no home, or the user switched
/// off. Safe from any thread as long as no other thread changes the environment meanwhile.
namespace rk::platform {

/// $HOME, or what the password database says when that is not set or empty.
std::string HomeFolder();

/// The folder that a variable of the XDG base directories names. A value that is no absolute path is ignored; `inHome`
/// is the folder without one.
std::string BaseFolder(const std::string& variable, std::string_view inHome);
/// $XDG_CONFIG_HOME, else ~/.config.
std::string PreferencesFolder();

/// The folder that the last line for `name` in user-dirs.dirs, a file of the preferences' folder, gives; `inHome`
/// without such a line. A line that leads to the home folder itself means that there is no such folder.
std::string ConfiguredFolder(const std::string& name, std::string_view inHome);

}  // namespace rk::platform
