#pragma once

#include <string>

namespace rk::platform {

/// What a locale is asked for; each has its own category of the process.
enum class LocaleUse { Money, Numbers, Time, Texts, Order };

/// The user's locale at this moment, by a name that ICU accepts: the chosen one, else that of the process's category.
/// Valid until the thread's next call for the same use. Costs no allocation while nothing changes.
const std::string& UserLocaleName(LocaleUse use);

}  // namespace rk::platform
