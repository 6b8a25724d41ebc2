#include "RkUtilities/platform/StringTables.h"

#include "RkUtilities/platform/Modules.h"
#include "RkUtilities/platform/StringTableText.h"
#include "RkUtilities/platform/UserLocaleName.h"
#include "RkUtilities/platform/icu/IcuServices.h"

#include <mutex>

namespace rk::platform {

namespace {

struct Folder {
    std::mutex mutex;
    std::string path;
};

Folder& TheFolder()
{
    static Folder folder;
    return folder;
}

std::string FolderOf(const char* bundle)
{
    if (bundle != nullptr)
        return bundle;
    Folder& folder = TheFolder();
    const std::lock_guard lock(folder.mutex);
    return folder.path;
}

}  // namespace

void SetStringTables(std::string_view folder)
{
    std::string path(folder);
    Folder& own = TheFolder();
    const std::lock_guard lock(own.mutex);
    own.path = std::move(path);
}

std::u16string StringTableText(const char* key, const char* bundle)
{
    const std::string folder = FolderOf(bundle);
    if (folder.empty())
        return {};  // ICU would take it for its own data
    return Icu().tableText(folder, UserLocaleName(LocaleUse::Texts), key);
}

}  // namespace rk::platform
