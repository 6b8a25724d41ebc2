#include "RkUtilities/platform/locale/NameCompare.h"

#include "RkUtilities/platform/process/Threads.h"

#include <algorithm>
#include <cstdint>
#include <mutex>
#include <new>
#include <unicode/unorm.h>

namespace rk::platform {
namespace {

constexpr char16_t LowerAscii(char16_t unit) {
    return unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit + (u'a' - u'A')) : unit;
}

constexpr bool IsSameAscii(char16_t a, char16_t b) { return a < 0x80 && b < 0x80 && LowerAscii(a) == LowerAscii(b); }

}  // namespace

bool IsSameName(std::u16string_view first, std::u16string_view second) {
    // As long as both are ASCII they decide by themselves: ASCII neither decomposes nor moves when marks are reordered.
    const auto [a, b] = std::mismatch(first.begin(), first.end(), second.begin(), second.end(), IsSameAscii);
    const char16_t firstUnit = a == first.end() ? u'\0' : *a;
    const char16_t secondUnit = b == second.end() ? u'\0' : *b;
    if (firstUnit < 0x80 && secondUnit < 0x80)
        return a == first.end() && b == second.end();

    UErrorCode error = U_ZERO_ERROR;
    const auto length = [](std::u16string_view name) { return static_cast<std::int32_t>(name.size()); };
    const std::lock_guard lock(MutexOf(Lock::Locale));
    const std::int32_t order = unorm_compare(first.data(), length(first), second.data(), length(second),
                                             U_FOLD_CASE_DEFAULT | U_COMPARE_IGNORE_CASE, &error);
    if (error == U_MEMORY_ALLOCATION_ERROR)
        throw std::bad_alloc();
    return U_SUCCESS(error) != 0 && order == 0;
}

}  // namespace rk::platform
