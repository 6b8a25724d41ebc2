#pragma once

#include <cstdlib>

/// States what must hold; a fuzzer stops where it does not.
inline void Require(bool holds) {
    if (!holds)
        std::abort();
}
