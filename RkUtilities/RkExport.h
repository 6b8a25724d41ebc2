#pragma once

/// Marks what belongs to the documented interface of the library; everything else stays hidden in the shared library.
///
/// RKUTILITIES_STATIC is defined for (and by) the static library, RKUTILITIES_BUILDING while the shared one is built.
#if defined(RKUTILITIES_STATIC)
#    define RK_EXPORT
#else
#    define RK_EXPORT __attribute__((visibility("default")))
#endif
