#include "RkUtilities/platform/locale/NumberFormats.h"

#include "RkUtilities/platform/locale/IcuServices.h"
#include "RkUtilities/platform/process/PerThread.h"

#include <map>
#include <memory>
#include <mutex>

namespace rk::platform {

namespace {

std::shared_ptr<const NumberFormats> FormatsOf(const std::string& name)
{
    constexpr std::size_t kMostLocales = 64;  // more are hostile names; they are let go together
    static std::mutex mutex;
    // Never destroyed: a static object's destructor may still ask.
    static auto& formatsByName = *new std::map<std::string, std::shared_ptr<const NumberFormats>>;
    const IcuServices& icu = Icu();  // before a lock is held
    const std::lock_guard lock(mutex);
    const auto known = formatsByName.find(name);
    if (known != formatsByName.end())
        return known->second;
    if (formatsByName.size() >= kMostLocales)
        formatsByName.clear();
    return formatsByName.emplace(name, icu.numberFormats(name)).first->second;
}

}  // namespace

const NumberFormats& NumberFormats::Of(LocaleUse use)
{
    constexpr auto kUses = static_cast<std::size_t>(LocaleUse::Order) + 1;
    auto& knownByUse = PerThread<std::array<std::shared_ptr<const NumberFormats>, kUses>>();
    std::shared_ptr<const NumberFormats>& known = knownByUse[static_cast<std::size_t>(use)];
    const std::string& name = UserLocaleName(use);
    if (known == nullptr || known->locale != name)
        known = FormatsOf(name);
    return *known;
}

}  // namespace rk::platform
