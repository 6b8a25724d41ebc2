#pragma once

#include "RkUtilities/platform/files/FileCalls.h"
#include "RkUtilities/platform/files/FileFacts.h"
#include "RkUtilities/platform/files/FolderList.h"

#include <system_error>
#include <vector>

namespace rk::platform {

/// The folders from a starting point down to the current folder. All but the deepest are closed, and opened again from
/// below on the way up, so that a tree of any depth needs few descriptors; a folder that was moved away meanwhile is an
/// error (ESTALE).
class FolderChain {
public:
    enum class Use { List, PassThrough };  ///< PassThrough needs no permission to read the folder

    std::error_code Start(Place place, Links links, Use use);
    std::error_code Enter(const char* name, Links links, Use use);  ///< Goes down into a sub-folder.
    std::error_code EnterElsewhere(Place place);  ///< Goes to a folder that is somewhere else; leaving it leads back.
    std::error_code Leave();
    [[nodiscard]] int Current() const noexcept { return m_levels.back().folder.Descriptor(); }

private:
    static constexpr std::size_t kOpenLevels = 32;
    struct Level {
        FileHandle folder;
        int flags;
        bool throughLink;                      // ".." of such a folder is not where it was entered from
        std::optional<FileIdentity> identity;  // known once the folder was closed
    };
    std::error_code Open(Place place, Links links, Use use);
    std::error_code CloseFarLevel();

    std::vector<Level> m_levels;
};

}  // namespace rk::platform
