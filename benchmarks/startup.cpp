// What starting programs costs: each command, an argument of this program with spaces between its words, runs many
// times, in turn with the others, with its output thrown away. Prints the fastest and the median time of each in
// microseconds.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <iterator>
#include <spawn.h>
#include <sstream>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace {

double MicrosecondsOf(const char* command) {
    std::istringstream stream{std::string(command)};
    std::vector<std::string> words{std::istream_iterator<std::string>(stream), {}};
    std::vector<char*> arguments;
    for (std::string& word : words)
        arguments.push_back(word.data());
    arguments.push_back(nullptr);
    posix_spawn_file_actions_t quiet;
    posix_spawn_file_actions_init(&quiet);
    posix_spawn_file_actions_addopen(&quiet, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    const auto start = std::chrono::steady_clock::now();
    pid_t process = 0;
    int status = 0;
    const int error = posix_spawn(&process, arguments[0], &quiet, nullptr, arguments.data(), environ);
    posix_spawn_file_actions_destroy(&quiet);
    if (error != 0 || waitpid(process, &status, 0) != process || status != 0) {
        std::fprintf(stderr, "%s: error %d, status %d\n", command, error, status);
        std::exit(EXIT_FAILURE);
    }
    return std::chrono::duration<double, std::micro>(std::chrono::steady_clock::now() - start).count();
}

}  // namespace

int main(int argc, char** argv) {
    constexpr int kRuns = 200;
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
