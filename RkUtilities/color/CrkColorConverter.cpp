#include "RkUtilities/color/CrkColorConverter.h"

namespace {

constexpr unsigned int kShadeFlag = 0x02000000;

unsigned int ShadeOfChannel(unsigned int channel, int percent) noexcept {
    const int value = static_cast<int>(channel);
    const int shade =
        percent > 0 ? value + ((255 - value) * percent + 50) / 100 : value - (value * -percent + 50) / 100;
    return static_cast<unsigned int>(shade);
}

}  // namespace

unsigned int CrkColorConverter::ShadeOf(unsigned int color, int percent) noexcept {
    if (percent < -100 || percent > 100)
        return (color & 0x00FFFFFFU) | kShadeFlag;
    unsigned int shade = kShadeFlag;
    for (unsigned int shift = 0; shift < 24; shift += 8)
        shade |= ShadeOfChannel(color >> shift & 0xFFU, percent) << shift;
    return shade;
}
