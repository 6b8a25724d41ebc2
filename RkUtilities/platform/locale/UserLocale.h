#pragma once

#include <string>
#include <string_view>

namespace rk::platform {

/// What a locale is asked for; each has its own category of the process.
enum class LocaleUse { Money, Numbers, Time, Texts, Order };

/// Names the user's locale for the whole process, as `setlocale` or ICU would name it; "" leaves it to the process's
/// categories again. A name that cannot be read means the root locale. Safe from any thread.
void NameUserLocale(std::string_view name);

/// The user's locale at this moment, by a name that ICU accepts: the chosen name, else the name of the process's
/// category. Valid until the thread's next call for the same use. Costs no allocation while nothing changes.
const std::string& UserLocaleName(LocaleUse use);

}  // namespace rk::platform
