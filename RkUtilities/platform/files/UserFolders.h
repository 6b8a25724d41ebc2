#pragma once

#include <string>

/// Where the user's folders are: home, and the folders that the XDG base directories and
/// "xdg-user-dirs" name.
///
/// Native paths without trailing "/". Nothing is created and, but for the settings file of xdg-user-dirs, nothing is
/// looked for on disk: a folder may be missing. "" when there is none: a user without a home, or a folder that the user
/// switched off. Safe from any thread as long as no other thread changes the environment meanwhile.
namespace rk::platform {

enum class UserFolder {
    Home,                ///< `HomeFolder()`
    Desktop,             ///< XDG_DESKTOP_DIR, else ~/Desktop
    Documents,           ///< XDG_DOCUMENTS_DIR, else ~/Documents
    Downloads,           ///< XDG_DOWNLOAD_DIR, else ~/Downloads
    Pictures,            ///< XDG_PICTURES_DIR, else ~/Pictures
    Music,               ///< XDG_MUSIC_DIR, else ~/Music
    Movies,              ///< XDG_VIDEOS_DIR, else ~/Videos
    Public,              ///< XDG_PUBLICSHARE_DIR, else ~/Public
    Preferences,         ///< $XDG_CONFIG_HOME, else ~/.config
    ApplicationSupport,  ///< $XDG_DATA_HOME, else ~/.local/share
    Caches,              ///< $XDG_CACHE_HOME, else ~/.cache
};

/// $HOME, or what the password database says when that is not set or empty.
std::string HomeFolder();

/// The folder of a kind. XDG_..._DIR are the lines of $XDG_CONFIG_HOME/user-dirs.dirs, where the last line for a name
/// counts and one that leads to the home folder itself means that there is none; variables that are no absolute path
/// are ignored.
std::string UserFolderPath(UserFolder kind);

}  // namespace rk::platform
