#pragma once

#if __cplusplus < 202002L
#    error "RkUtilities needs C++20: compile with -std=c++20 or later."
#elif !defined(__cpp_exceptions)
#    error "RkUtilities reports errors by exceptions: compile without -fno-exceptions."
#elif !defined(__LP64__)
#    error "RkUtilities needs a 64-bit target."
#endif

/// Marks what belongs to the documented interface of the library; everything else stays hidden in the shared library.
/// RKUTILITIES_STATIC is defined for (and by) the static library, RKUTILITIES_BUILDING while the shared one is built.
#if defined(RKUTILITIES_STATIC)
#    define RK_EXPORT
#else
#    define RK_EXPORT __attribute__((visibility("default")))
#endif

/// Marks a member whose result looks into its object: clang warns of a result that outlives a temporary object.
#if defined(__clang__)
#    define RK_LIFETIMEBOUND [[clang::lifetimebound]]
#else
#    define RK_LIFETIMEBOUND
#endif

/// Marks a class with virtual functions that debuggers show. Compilers describe such a class only where its virtual
/// functions are defined, so programs beside a library without debugging symbols knew its name alone. clang takes the
/// mark; the CMake target gives g++ `-femit-class-debug-always`.
#if defined(__clang__)
#    define RK_DESCRIBED __attribute__((standalone_debug))
#else
#    define RK_DESCRIBED
#endif
