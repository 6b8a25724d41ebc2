#include "RkUtilities/platform/locale/UserLocale.h"

#include "RkUtilities/platform/locale/IcuServices.h"
#include "RkUtilities/platform/process/PerThread.h"

#include <array>
#include <atomic>
#include <clocale>
#include <cstdint>
#include <mutex>
#include <utility>

namespace rk::platform {

namespace {

constexpr std::size_t kMostNameBytes = 100;  // names of CLDR are far shorter

/// The chosen name; readers look at its generation first, which costs no lock.
struct Choice {
    std::mutex mutex;
    std::string name;
    std::atomic<std::uint64_t> generation{1};
};

Choice& TheChoice()
{
    static auto& choice = *new Choice;  // never destroyed: a static object's destructor may still ask
    return choice;
}

constexpr std::array<int, 5> kCategories = {LC_MONETARY, LC_NUMERIC, LC_TIME, LC_MESSAGES, LC_COLLATE};

// Modifiers of the C library that name a script; the others (a currency, a collation) have no part in ICU's names.
constexpr std::pair<std::string_view, std::string_view> kScripts[] = {
    {"latin", "Latn"}, {"cyrillic", "Cyrl"}, {"devanagari", "Deva"}, {"arabic", "Arab"}};

/// "sr_RS.UTF-8@latin" as ICU names it: "sr_Latn_RS". Keywords of ICU ("@calendar=gregorian") stay.
std::string IcuName(std::string_view name)
{
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

/// ICU looks for files by the language and is not ready for a locale that it has refused.
bool IsHarmless(std::string_view name)
{
    constexpr std::string_view kLetters = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-_";
    return name.size() <= kMostNameBytes &&
           name.substr(0, name.find('@')).find_first_not_of(kLetters) == std::string_view::npos &&
           name.find('\0') == std::string_view::npos;
}

/// The name of a locale that ICU accepts; the root locale for all others.
std::string CanonicalName(std::string_view name)
{
    const std::string icuName = IcuName(name);
    return IsHarmless(icuName) ? Icu().canonicalLocale(icuName) : "root";
}

/// What a thread last found for one use.
struct Known {
    std::uint64_t generation = 0;
    bool chosen = false;
    std::string category;  // as setlocale tells it
    std::string name;
};

}  // namespace

void NameUserLocale(std::string_view name)
{
    Choice& choice = TheChoice();
    std::string copy(name);
    const std::lock_guard lock(choice.mutex);
    choice.name = std::move(copy);
    choice.generation.fetch_add(1, std::memory_order_release);
}

const std::string& UserLocaleName(LocaleUse use)
{
    auto& knownByUse = PerThread<std::array<Known, kCategories.size()>>();
    Known& known = knownByUse[static_cast<std::size_t>(use)];
    Choice& choice = TheChoice();
    if (known.generation != choice.generation.load(std::memory_order_acquire)) {
        const std::lock_guard lock(choice.mutex);
        known.chosen = !choice.name.empty();
        known.category.clear();
        known.name = known.chosen ? CanonicalName(choice.name) : "en_US_POSIX";
        known.generation = choice.generation.load(std::memory_order_relaxed);
    }
    if (known.chosen)
        return known.name;
    const char* const category = std::setlocale(kCategories[static_cast<std::size_t>(use)], nullptr);
    if (category != nullptr && known.category != category) {
        known.name = CanonicalName(category);
        known.category = category;
    }
    return known.name;
}

}  // namespace rk::platform
