// What starting programs costs: each command, an argument of this program, runs many times, in turn with the others. Prints
// the fastest and the median time of each in microseconds.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace {

double MicrosecondsOf(char* program)
{
    char* arguments[] = {program, nullptr};
    const auto start = std::chrono::steady_clock::now();
    pid_t process = 0;
    int status = 0;
    if (posix_spawn(&process, program, nullptr, nullptr, arguments, environ) != 0 ||
        waitpid(process, &status, 0) != process || status != 0) {
        std::perror(program);
        std::exit(EXIT_FAILURE);
    }
    return std::chrono::duration<double, std::micro>(std::chrono::steady_clock::now() - start).count();
}

}  // namespace

int main(int argc, char** argv)
{
    constexpr int kRuns = 300;
    std::vector<std::vector<double>> times(static_cast<std::size_t>(argc));
    for (int run = 0; run < kRuns; ++run) {
        for (int i = 1; i < argc; ++i)
            times[static_cast<std::size_t>(i)].push_back(MicrosecondsOf(argv[i]));
    }
    for (std::size_t i = 1; i < times.size(); ++i) {
        std::sort(times[i].begin(), times[i].end());
        std::printf("%.0f %.0f\n", times[i].front(), times[i][kRuns / 2]);
    }
}
