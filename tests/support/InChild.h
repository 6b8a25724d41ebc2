#pragma once

#include "tests/support/ScopedFolder.h"

#include <gtest/gtest.h>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

/// Starts `work` in a process of its own, forked from this process; its status tells of failed expectations.
template <class Work> pid_t StartChild(const Work& work) {
    const pid_t child = fork();
    if (child == 0) {
        alarm(120);  // ends a child that hangs
        work();
        _exit(testing::Test::HasFailure() ? 1 : 0);
    }
    return child;
}

inline void ExpectItEndsWell(pid_t child) {
    int status = -1;
    EXPECT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0) << "the child did not end well";
}

/// The text that `work` returns in a child: for what a process keeps from its first call on. Threads must have ended.
template <class Work> std::string InChild(const Work& work) {
    const ScopedFolder folder;
    ExpectItEndsWell(StartChild([&] { folder.Write("text", work()); }));
    return folder.Read("text");
}
