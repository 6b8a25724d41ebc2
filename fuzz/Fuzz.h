// What every fuzzer is written with. A fuzzer defines `Try`, which stops the process where something does not hold.
#pragma once

#include "RkUtilities/RkUtilities.h"

#include "tests/support/ScopedFolder.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <fuzzer/FuzzedDataProvider.h>
#include <iterator>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

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
