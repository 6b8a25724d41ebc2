#include "tests/support/ScopedFolder.h"
#include "tests/support/ScopedVariable.h"

#include <cstdio>
#include <gtest/gtest.h>
#include <memory>
#include <string>

namespace {

/// What a run of ColdProgram prints, standard error included, and its status unless that is 0. Preferences go to a folder
/// of the run's own.
std::string PrintedBy(const std::string& steps, const std::string& variables = "")
{
    const ScopedFolder settings;
    const std::string command =
        "XDG_CONFIG_HOME='" + settings.Path() + "' " + variables + " exec " COLD_PROGRAM " " + steps + " 2>&1";
    const std::unique_ptr<FILE, int (*)(FILE*)> pipe(popen(command.c_str(), "r"), [](FILE*) { return 0; });
    std::string output;
    for (int c = std::fgetc(pipe.get()); c != EOF; c = std::fgetc(pipe.get()))
        output += static_cast<char>(c);
    const int status = pclose(pipe.get());
    return status == 0 ? output : output + "status " + std::to_string(status);
}

TEST(FirstUse, MayBeMadeByAnyThreadAtAnyTime)
{
    for (const char* const steps : {"threads", "threads threads", "child", "late", "threads late", "case late"})
        EXPECT_EQ(PrintedBy(steps), "") << steps;
    EXPECT_EQ(PrintedBy("late", "RK_EARLY=1"), "");
}

TEST(Fork, LeavesNoLockHeldInAChild)
{
    for (const char* const variables : {"TZ=Europe/Berlin", "TZ=UTC RK_EARLY=1"})
        EXPECT_EQ(PrintedBy("forks", variables), "") << variables;
}

}  // namespace
