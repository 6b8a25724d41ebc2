#pragma once

#include <string>

namespace rk::platform {

/// What a locale is asked for; each has its own category of the process.
enum class LocaleUse { Money, Numbers, Time, Texts, Order };

/// ICU's name of the user's locale at this moment: the chosen one, else that of the process's category. At most 100
/// characters. Valid until the thread's next call for the same use. Costs no allocation while nothing changes.
const std::string& UserLocaleName(LocaleUse use);

}  // namespace rk::platform
