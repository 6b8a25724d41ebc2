#include "RkUtilities/foundation/CElementTraits.h"

#include "RkUtilities/platform/process/Random.h"

namespace rk {

std::uint32_t SecretHash(std::u16string_view text) noexcept { return platform::SecretHash(text); }

}  // namespace rk
