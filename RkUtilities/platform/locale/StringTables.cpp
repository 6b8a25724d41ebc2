#include "RkUtilities/platform/locale/StringTables.h"

#include "RkUtilities/platform/files/FileFacts.h"
#include "RkUtilities/platform/locale/UserLocale.h"
#include "RkUtilities/platform/process/Threads.h"

#include <algorithm>
#include <memory>
#include <mutex>
#include <new>
#include <string>
#include <unicode/ures.h>
#include <utility>

namespace rk::platform {

namespace {

/// Null without a folder; guarded by `Lock::Locale`. Never destroyed: static objects' destructors may load texts.
constinit const std::string* ownFolder = nullptr;

struct CloseBundle {
    void operator()(UResourceBundle* bundle) const { ures_close(bundle); }
};
using Table = std::unique_ptr<UResourceBundle, CloseBundle>;

/// Whether ICU finds a table for the locale and can read the locale's own ("de_AT.res") and its parents' ("de.res") as
/// far as they are there: by itself ICU passes over a table that it cannot read.
bool CanRead(const std::string& folder, std::string locale) {
    UErrorCode error = U_ZERO_ERROR;
    if (Table(ures_open(folder.c_str(), locale.c_str(), &error)) == nullptr)
        return false;
    locale.resize(std::min(locale.find('@'), locale.size()));
    while (!locale.empty()) {
        error = U_ZERO_ERROR;
        const bool isThere = Inspect(std::string(folder).append("/").append(locale).append(".res")).has_value();
        if (isThere && Table(ures_openDirect(folder.c_str(), locale.c_str(), &error)) == nullptr)
            return false;
        const std::size_t parentEnd = locale.rfind('_');
        locale.resize(parentEnd == std::string::npos ? 0 : parentEnd);
    }
    return true;
}

}  // namespace

bool NameStringTables(std::string_view folder) {
    std::unique_ptr<const std::string> copy(folder.empty() ? nullptr : new std::string(folder));
    const std::string& locale = UserLocaleName(LocaleUse::Texts);
    const std::lock_guard lock(MutexOf(Lock::Locale));
    delete std::exchange(ownFolder, copy.release());
    return ownFolder == nullptr || CanRead(*ownFolder, locale);
}

std::u16string StringTableText(const char* key, const char* bundle) {
    const std::string& locale = UserLocaleName(LocaleUse::Texts);
    const std::lock_guard lock(MutexOf(Lock::Locale));
    if (bundle == nullptr)
        bundle = ownFolder != nullptr ? ownFolder->c_str() : "";
    if (*bundle == '\0')
        return {};  // ICU would take it for its own data
    UErrorCode error = U_ZERO_ERROR;
    const Table table(ures_open(bundle, locale.c_str(), &error));
    std::int32_t length = 0;
    const UChar* const text = ures_getStringByKey(table.get(), key, &length, &error);
    if (error == U_MEMORY_ALLOCATION_ERROR)
        throw std::bad_alloc();
    if (U_FAILURE(error) != 0)
        return {};
    return {text, static_cast<std::size_t>(length)};
}

}  // namespace rk::platform
