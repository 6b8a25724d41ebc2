#pragma once

#include "RkUtilities/RkExport.h"

/// Colors in their two 32-bit forms, and shades of them. A `COLORREF` is 0x00BBGGRR: red in the lowest byte, a flag
/// byte in the highest. ARGB is 0xAARRGGBB. Every value is legal input. Pure functions: safe from any thread.
class RK_EXPORT CrkColorConverter {
public:
    /// Opaque ARGB; the flag byte is dropped: 0x00332211 becomes 0xFF112233.
    static constexpr unsigned int COLORREFToARGB(unsigned int color) noexcept {
        return 0xFF000000U | ARGBToCOLORREF(color);
    }
    /// Alpha is dropped, the flag byte is 0: 0x80112233 becomes 0x00332211.
    static constexpr unsigned int ARGBToCOLORREF(unsigned int argb) noexcept {
        return (argb & 0xFFU) << 16U | (argb & 0xFF00U) | (argb >> 16U & 0xFFU);
    }
    /// A lighter (percent above 0) or darker shade: each channel moves by that share towards 255 or 0, rounded half up.
    /// The flag byte of the result is 0x02. A percentage outside -100 to 100 leaves the channels as they are.
    static unsigned int ShadeOf(unsigned int color, int percent) noexcept;
};
