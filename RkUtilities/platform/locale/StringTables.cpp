#include "RkUtilities/platform/locale/StringTables.h"

#include "RkUtilities/platform/locale/IcuServices.h"
#include "RkUtilities/platform/locale/UserLocale.h"

#include <mutex>

namespace rk::platform {

namespace {

struct Folder {
    std::mutex mutex;
    std::string path;
};

Folder& TheFolder()
{
    static auto& folder = *new Folder;  // never destroyed: a static object's destructor may still load a text
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

void NameStringTables(std::string_view folder)
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
