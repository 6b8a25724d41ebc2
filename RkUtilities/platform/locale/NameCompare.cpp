#include "RkUtilities/platform/locale/NameCompare.h"

#include "RkUtilities/platform/locale/IcuServices.h"

namespace rk::platform {
namespace {

constexpr char16_t LowerAscii(char16_t unit)
{
    return unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit + (u'a' - u'A')) : unit;
}

}  // namespace

bool IsSameName(std::u16string_view first, std::u16string_view second)
{
    // As long as both are ASCII they decide by themselves: ASCII neither decomposes nor moves when marks are reordered.
    for (std::size_t i = 0;; ++i) {
        const bool firstEnds = i == first.size();
        const bool secondEnds = i == second.size();
        if (firstEnds && secondEnds)
            return true;
        const char16_t a = firstEnds ? u'\0' : first[i];
        const char16_t b = secondEnds ? u'\0' : second[i];
        if (a >= 0x80 || b >= 0x80)
            break;
        if (firstEnds || secondEnds || LowerAscii(a) != LowerAscii(b))
            return false;
    }
    return Icu().isSameFolded(first, second);
}

}  // namespace rk::platform
