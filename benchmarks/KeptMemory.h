#pragma once

#include <malloc.h>

/// Freed memory stays with the process: the first touch of a page is the kernel's time, and virtual machines take up to
/// 40 us.
[[maybe_unused]] inline const bool kKeepsFreedMemory =
    mallopt(M_TRIM_THRESHOLD, 1 << 30) == 1 && mallopt(M_MMAP_MAX, 0) == 1;
