#pragma once

#include <functional>

namespace mindmap {

/// Called now and then while a long step works: the step's name and how many of how many topics are done.
using ProgressHook = std::function<void(const char* step, int doneCount, int count)>;

/// How many topics pass between two calls.
inline constexpr int kProgressStride = 512;

inline void Tell(const ProgressHook& progress, const char* step, std::size_t done, std::size_t count) {
    if (progress && done % kProgressStride == 0)
        progress(step, static_cast<int>(done), static_cast<int>(count));
}

}  // namespace mindmap
