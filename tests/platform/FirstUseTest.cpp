#include "tests/support/ScopedFolder.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <string>

namespace {

/// The status of a run of ColdProgram, which tells what failed. Preferences go to a folder of the run's own.
int StatusOf(const std::string& steps, const std::string& variables = "") {
    const ScopedFolder settings;
    const std::string command = "XDG_CONFIG_HOME='" + settings.Path() + "' " + variables + " exec " COLD_PROGRAM " ";
    return std::system((command + steps).c_str());
}

TEST(FirstUse, MayBeMadeByAnyThreadAtAnyTime) {
    for (const char* const steps : {"threads", "threads threads", "child", "late", "threads late"})
        EXPECT_EQ(StatusOf(steps), 0) << steps;
    EXPECT_EQ(StatusOf("late", "RK_EARLY=1"), 0);
}

TEST(Fork, LeavesNoLockHeldInAChild) {
    for (const char* const variables : {"TZ=Europe/Berlin", "TZ=UTC RK_EARLY=1"})
        EXPECT_EQ(StatusOf("forks", variables), 0) << variables;
}

}  // namespace
