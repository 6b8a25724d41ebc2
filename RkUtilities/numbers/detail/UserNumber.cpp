#include "RkUtilities/numbers/detail/UserNumber.h"

#include "RkUtilities/foundation/detail/SpelledNumber.h"
#include "RkUtilities/platform/locale/NumberFormats.h"

namespace rk {

namespace {

NumberSpelling UserSpelling()
{
    const platform::NumberFormats& formats = platform::NumberFormats::Of(platform::LocaleUse::Numbers);
    return {.decimalSeparator = formats.decimalSeparator,
            .minusSigns = {u"\u2212", formats.minusSign},
            .plusSign = formats.plusSign,
            .digits = &formats.digits};
}

}  // namespace

bool ReadUserDouble(std::u16string_view text, double& value)
{
    return ReadSpelledDouble(text, UserSpelling(), value);
}

bool ReadUserInteger(std::u16string_view text, int& value)
{
    return ReadSpelledInteger(text, UserSpelling(), value);
}

}  // namespace rk
