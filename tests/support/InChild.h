#pragma once

#include <array>
#include <cstddef>
#include <exception>
#include <gtest/gtest.h>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

/// The text that `work` returns in a process of its own, forked from this one: for what a process keeps from its first
/// call on. Threads must have ended.
template <class Work>
std::string InChild(const Work& work)
{
    std::array<int, 2> ends{};
    if (pipe(ends.data()) != 0) {
        ADD_FAILURE() << "no pipe";
        return {};
    }
    const pid_t child = fork();
    if (child == 0) {
        std::string text;
        try {
            text = work();
        } catch (const std::exception& error) {
            text = error.what();
        }
        std::size_t written = 0;
        while (written < text.size()) {
            const ssize_t count = write(ends[1], text.data() + written, text.size() - written);
            if (count <= 0)
                _exit(1);
            written += static_cast<std::size_t>(count);
        }
        _exit(0);
    }
    close(ends[1]);
    std::string text;
    std::array<char, 4096> bytes{};
    for (ssize_t count = 0; (count = read(ends[0], bytes.data(), bytes.size())) > 0;)
        text.append(bytes.data(), static_cast<std::size_t>(count));
    close(ends[0]);
    int status = -1;
    EXPECT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0) << "the child did not end well";
    return text;
}
