#include "RkUtilities/platform/locale/UserLocale.h"

#include "RkUtilities/platform/locale/IcuMemory.h"
#include "RkUtilities/platform/process/PerThread.h"
#include "RkUtilities/platform/process/SameAsLast.h"
#include "RkUtilities/platform/process/Threads.h"

#include <array>
#include <atomic>
#include <clocale>
#include <cstdint>
#include <memory>
#include <mutex>
#include <tuple>
#include <unicode/locid.h>
#include <unicode/ures.h>
#include <utility>

namespace rk::platform {

namespace {

constexpr std::size_t kMostNameBytes = 100;  // names of CLDR are far shorter

/// The chosen name, null without a choice; guarded by `Lock::Locale`.
constinit const std::string* chosenName = nullptr;
/// Changes with each choice, and is odd while a name is chosen. Readers look at it without a lock.
constinit std::atomic<std::uint64_t> choice{0};

constexpr std::array<int, 5> kCategories = {LC_MONETARY, LC_NUMERIC, LC_TIME, LC_MESSAGES, LC_COLLATE};

/// Modifiers of the C library that name a script. Other modifiers (a currency, a collation) are left out of ICU's
/// names.
constexpr std::pair<std::string_view, std::string_view> kScripts[] = {
    {"latin", "Latn"}, {"cyrillic", "Cyrl"}, {"devanagari", "Deva"}, {"arabic", "Arab"}};

/// "sr_RS.UTF-8@latin" as ICU names it: "sr_Latn_RS". Keywords of ICU ("@calendar=gregorian") stay.
std::string IcuName(std::string_view name) {
    const std::string_view modifier = name.substr(std::min(name.find('@'), name.size()));
    const std::string_view language = name.substr(0, std::min(name.find_first_of(".@"), name.size()));
    if (language == "C" || language == "POSIX")
        return "en_US_POSIX";
    std::string result(language);
    if (modifier.find('=') != std::string_view::npos)
        return result.append(modifier);
    for (const auto& [posix, script] : kScripts) {
        if (modifier.substr(std::min<std::size_t>(1, modifier.size())) == posix)
            result.insert(std::min(result.find('_'), result.size()), "_" + std::string(script));
    }
    return result;
}

/// Whether ICU may get the name: it looks for files by the language, and fails on a locale that it has refused.
bool IsHarmless(std::string_view name) {
    constexpr std::string_view kLetters = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-_";
    return name.size() <= kMostNameBytes &&
           name.substr(0, name.find('@')).find_first_not_of(kLetters) == std::string_view::npos &&
           name.find('\0') == std::string_view::npos;
}

/// Whether ICU has data under this very name, which is then no old name of another locale.
bool HasOwnData(const char* name) {
    UErrorCode error = U_ZERO_ERROR;
    const icu::LocalUResourceBundlePointer data(ures_open(nullptr, name, &error));
    const char* const found = ures_getLocaleByType(data.getAlias(), ULOC_ACTUAL_LOCALE, &error);
    return U_SUCCESS(error) != 0 && std::string_view(found) == name;
}

/// The name as ICU writes it, its present name for an old name ("iw_IL"); "root" for a name that ICU does not accept.
std::string CanonicalName(std::string_view name) {
    const std::string icuName = IcuName(name);
    if (!IsHarmless(icuName))
        return "root";
    const std::lock_guard lock(MutexOf(Lock::Locale));
    // ICU's tables of old names take longer to read than all else that a first date needs: most names do without.
    const icu::Locale locale = MadeWhole([&] {
        const icu::Locale named(icuName.c_str());
        return HasOwnData(named.getName()) ? named : icu::Locale::createCanonical(icuName.c_str());
    });
    return locale.isBogus() != 0 ? "root" : locale.getName();
}

/// Valid until the category changes.
const char* CategoryName(LocaleUse use) {
    const char* const name = std::setlocale(kCategories[static_cast<std::size_t>(use)], nullptr);
    return name != nullptr ? name : "C";
}

/// The chosen name; the category's where the choice was taken back meanwhile.
std::string ChosenName(LocaleUse use) {
    const std::lock_guard lock(MutexOf(Lock::Locale));
    return chosenName != nullptr ? *chosenName : CategoryName(use);
}

}  // namespace

void NameUserLocale(std::string_view name) {
    std::unique_ptr<const std::string> copy(name.empty() ? nullptr : new std::string(name));
    const std::uint64_t isChosen = copy != nullptr ? 1 : 0;
    const std::lock_guard lock(MutexOf(Lock::Locale));
    delete std::exchange(chosenName, copy.release());
    choice.store(((choice.load(std::memory_order_relaxed) | 1) + 1) | isChosen, std::memory_order_release);
}

const std::string& UserLocaleName(LocaleUse use) {
    using LastName = SameAsLast<std::tuple<std::uint64_t, std::string>, std::string>;  // by choice and category
    struct LastNames {
        std::array<LastName, kCategories.size()> byUse;
    };
    LastName& last = PerThread<LastNames>().byUse[static_cast<std::size_t>(use)];
    const std::uint64_t now = choice.load(std::memory_order_acquire);
    if (now % 2 != 0)
        return last.For(std::tuple(now, ""), [use] { return CanonicalName(ChosenName(use)); });
    const char* const category = CategoryName(use);
    return last.For(std::tuple(now, category), [category] { return CanonicalName(category); });
}

}  // namespace rk::platform
