#include "RkUtilities/foundation/CharacterTypes.h"

#include "RkUtilities/foundation/CString.h"
#include "RkUtilities/platform/locale/Unicode.h"

#include <climits>

int _ttoi(unsigned short const* text)
{
    if (text == nullptr)
        return 0;
    const char16_t* unit = rk::AsChar16(text);
    while (rk::platform::IsWhiteSpace(*unit))
        ++unit;
    const bool negative = *unit == u'-';
    if (negative || *unit == u'+')
        ++unit;
    const long limit = negative ? -static_cast<long>(INT_MIN) : INT_MAX;
    long value = 0;
    for (; *unit >= u'0' && *unit <= u'9' && value < limit; ++unit)
        value = value * 10 + (*unit - u'0');
    value = value < limit ? value : limit;
    return static_cast<int>(negative ? -value : value);
}

bool IsCharAlphaNumeric(unsigned short unit)
{
    return rk::platform::IsAlphaNumeric(unit);
}
