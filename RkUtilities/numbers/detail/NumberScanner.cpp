#include "RkUtilities/numbers/detail/NumberScanner.h"

#include "RkUtilities/foundation/detail/NumberScan.h"
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

bool ScanDouble(std::u16string_view text, double& value)
{
    return ScanDouble(text, UserSpelling(), value);
}

bool ScanInteger(std::u16string_view text, int& value)
{
    return ScanInteger(text, UserSpelling(), value);
}

}  // namespace rk
