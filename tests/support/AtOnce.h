#pragma once

#include <latch>
#include <thread>
#include <vector>

/// Runs `work` in `count` threads that start together, to its end.
template <int count, class Work> void AtOnce(const Work& work) {
    std::latch start(count);
    std::vector<std::jthread> threads;
    for (int i = 0; i < count; ++i)
        threads.emplace_back([&] {
            start.arrive_and_wait();
            work();
        });
}
