#include "RkUtilities/foundation/CharacterTypes.h"

#include "RkUtilities/foundation/detail/SpelledNumber.h"
#include "RkUtilities/platform/locale/Unicode.h"

#include <algorithm>
#include <climits>

int _ttoi(rk::TextView text) {
    std::int64_t value = 0;
    rk::ReadSpelledInteger(text, rk::NumberSpelling(), value);
    return static_cast<int>(std::clamp<std::int64_t>(value, INT_MIN, INT_MAX));
}

bool IsCharAlphaNumeric(unsigned short unit) { return rk::platform::IsAlphaNumeric(unit); }
