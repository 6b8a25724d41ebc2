// What every fuzzer is written with. A fuzzer defines `Try`, which stops the process where something does not hold.
#pragma once

#include "tests/support/Test.h"

#include <cstdint>
#include <cstdlib>
#include <fuzzer/FuzzedDataProvider.h>
#include <iterator>
#include <map>
#include <optional>
#include <sys/wait.h>
#include <unistd.h>

/// Tries one input.
void Try(FuzzedDataProvider& data);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    FuzzedDataProvider data(bytes, size);
    Try(data);
    return 0;
}

/// States what must hold.
inline void Require(bool holds) {
    if (!holds)
        std::abort();
}
