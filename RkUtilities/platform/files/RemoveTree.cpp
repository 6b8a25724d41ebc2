#include "RkUtilities/platform/files/FileCalls.h"
#include "RkUtilities/platform/files/FileTrees.h"
#include "RkUtilities/platform/files/FolderChain.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace rk::platform {
namespace {

enum class Removed { Yes, NotEmpty, Failed };

Removed RemoveEntry(int folder, const char* name, FileKind kind)
{
    if (kind != FileKind::Folder) {
        if (unlinkat(folder, name, 0) == 0 || errno == ENOENT)
            return Removed::Yes;
        if (errno != EISDIR)
            return Removed::Failed;
    }
    if (unlinkat(folder, name, AT_REMOVEDIR) == 0 || errno == ENOENT)
        return Removed::Yes;
    return errno == ENOTEMPTY || errno == EEXIST ? Removed::NotEmpty : Removed::Failed;
}

/// Removes what a folder holds, deepest first.
class FolderEmptier {
public:
    std::error_code Empty(const std::string& path)
    {
        std::error_code error = m_chain.Start(path, Links::DoNotFollow, FolderChain::Use::List);
        if (!error)
            error = List("");
        while (!error && !m_levels.empty())
            error = Step();
        return error;
    }

private:
    struct Level {
        const char* name;  // in the level above, whose list holds it
        EntryList entries;
    };

    std::error_code List(const char* name)
    {
        m_levels.push_back({name, {}});
        return m_levels.back().entries.Read(m_chain.Current());
    }

    std::error_code Step()
    {
        const EntryList::Entry entry = m_levels.back().entries.Next();
        if (entry.name == nullptr)
            return Finish();
        switch (RemoveEntry(m_chain.Current(), entry.name, entry.kind)) {
        case Removed::Yes:
            return {};
        case Removed::Failed:
            return LastError();
        case Removed::NotEmpty:
            break;
        }
        const std::error_code error = m_chain.Enter(entry.name, Links::DoNotFollow, FolderChain::Use::List);
        return error ? error : List(entry.name);
    }

    std::error_code Finish()
    {
        const char* const name = m_levels.back().name;
        m_levels.pop_back();
        if (m_levels.empty())
            return {};
        const std::error_code error = m_chain.Leave();
        return error ? error : Outcome(unlinkat(m_chain.Current(), name, AT_REMOVEDIR));
    }

    FolderChain m_chain;
    std::vector<Level> m_levels;
};

bool NamesFolderFromInside(const std::string& path)
{
    const std::string name = path.substr(path.find_last_of('/') + 1);
    return name.empty() || name == "." || name == "..";
}

}  // namespace

std::error_code RemoveTree(const std::string& path)
{
    const std::string item = WithoutClosingSlashes(path);
    if (NamesFolderFromInside(item))
        return ErrorOf(EINVAL);
    struct stat status {};
    if (lstat(SystemPath(item), &status) != 0)
        return LastError();
    if (!S_ISDIR(status.st_mode))
        return RemoveFile(item);
    if (rmdir(item.c_str()) == 0)
        return {};
    if (errno != ENOTEMPTY && errno != EEXIST)
        return LastError();
    const std::error_code error = FolderEmptier().Empty(item);
    return error ? error : Outcome(rmdir(item.c_str()));
}

std::error_code RemoveEmptyFolder(const std::string& path)
{
    const std::string item = WithoutClosingSlashes(path);
    struct stat status {};
    if (lstat(SystemPath(item), &status) != 0)
        return LastError();
    return S_ISLNK(status.st_mode) ? RemoveFile(item) : Outcome(rmdir(item.c_str()));
}

}  // namespace rk::platform
