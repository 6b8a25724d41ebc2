#include "RkUtilities/platform/locale/NameCompare.h"

#include "RkUtilities/platform/process/Threads.h"

#include <cstdint>
#include <mutex>
#include <new>
#include <unicode/unorm.h>

namespace rk::platform {
namespace {

constexpr char16_t LowerAscii(char16_t unit)
{
    return unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit + (u'a' - u'A')) : unit;
}

/// The rule in full.
bool IsSameFolded(std::u16string_view first, std::u16string_view second)
{
    UErrorCode error = U_ZERO_ERROR;
    const auto length = [](std::u16string_view name) { return static_cast<std::int32_t>(name.size()); };
    const std::lock_guard lock(MutexOf(Lock::Locale));
    const std::int32_t order = unorm_compare(first.data(), length(first), second.data(), length(second),
                                             U_FOLD_CASE_DEFAULT | U_COMPARE_IGNORE_CASE, &error);
    if (error == U_MEMORY_ALLOCATION_ERROR)
        throw std::bad_alloc();
    return U_SUCCESS(error) != 0 && order == 0;
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
    return IsSameFolded(first, second);
}

}  // namespace rk::platform
