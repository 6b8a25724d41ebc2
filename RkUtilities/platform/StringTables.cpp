#include "RkUtilities/platform/StringTables.h"

#include "RkUtilities/platform/StringTableText.h"
#include "RkUtilities/platform/UserLocaleName.h"

#include <memory>
#include <mutex>
#include <unicode/ures.h>

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

struct CloseBundle {
    void operator()(UResourceBundle* bundle) const { ures_close(bundle); }
};

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
    UErrorCode error = U_ZERO_ERROR;
    const std::unique_ptr<UResourceBundle, CloseBundle> table(
        ures_open(folder.c_str(), UserLocaleName(LocaleUse::Texts).c_str(), &error));
    std::int32_t length = 0;
    const UChar* const text = ures_getStringByKey(table.get(), key, &length, &error);
    if (U_FAILURE(error) != 0)
        return {};
    return {text, static_cast<std::size_t>(length)};
}

}  // namespace rk::platform
