#include "RkUtilities/platform/files/FolderChain.h"

#include <fcntl.h>
#include <utility>

namespace rk::platform {

std::error_code FolderChain::Start(Place place, Links links, Use use) { return Open(place, links, use); }

std::error_code FolderChain::Enter(const char* name, Links links, Use use) {
    const std::error_code error = Open({Current(), name}, links, use);
    return error ? error : CloseFarLevel();
}

std::error_code FolderChain::EnterElsewhere(Place place) {
    if (const std::error_code error = Open(place, Links::DoNotFollow, Use::List))
        return error;
    m_levels.back().throughLink = true;
    return CloseFarLevel();
}

std::error_code FolderChain::Open(Place place, Links links, Use use) {
    const int flags = use == Use::List ? O_RDONLY : O_PATH;
    FileHandle folder = OpenFolder(place, flags | O_NOFOLLOW);
    const bool throughLink = !folder && links == Links::Follow && (errno == ELOOP || errno == ENOTDIR);
    if (throughLink)
        folder = OpenFolder(place, flags);
    if (!folder)
        return LastError();
    m_levels.push_back({std::move(folder), flags, throughLink, {}});
    return {};
}

std::error_code FolderChain::CloseFarLevel() {
    if (m_levels.size() <= kOpenLevels)
        return {};
    const std::size_t far = m_levels.size() - 1 - kOpenLevels;
    Level& level = m_levels[far];
    if (m_levels[far + 1].throughLink)
        return {};
    level.identity = IdentityOf(level.folder.Descriptor());
    const std::error_code error = level.identity ? std::error_code() : LastError();
    level.folder.Close();
    return error;
}

std::error_code FolderChain::Leave() {
    const Level left = std::move(m_levels.back());
    m_levels.pop_back();
    if (m_levels.empty() || m_levels.back().folder)
        return {};
    Level& level = m_levels.back();
    level.folder = OpenFolder({left.folder.Descriptor(), ".."}, level.flags);
    if (!level.folder)
        return LastError();
    const std::optional<FileIdentity> found = IdentityOf(level.folder.Descriptor());
    if (!found)
        return LastError();
    return found == level.identity ? std::error_code() : ErrorOf(ESTALE);
}

}  // namespace rk::platform
