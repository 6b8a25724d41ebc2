// A program that links the library and nothing else, for what only a fresh process shows; ServicesTest runs it. Each
// argument is a step, and the first that fails ends it with status 1.
//
//     NAME           the first use of a family: case, names, numbers, dates, preferences, settings
//     threads        all uses by many threads at once
//     child          all uses in a child after a fork
//     late           all uses in the destructor of a static object; with RK_EARLY set also in its constructor
#include "RkUtilities/RkUtilities.h"

#include <algorithm>
#include <atomic>
#include <barrier>
#include <cstdlib>
#include <iostream>
#include <iterator>
#include <string>
#include <string_view>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace {

struct Use {
    std::string_view name;
    bool (*succeeds)();
};
constexpr Use kUses[] = {
    {"case", [] { return CString(u"über").MakeUpper() == u"ÜBER"; }},
    {"names", [] { return CrkPathUtilities::CalcRelativePathname(u"/É/a", u"/é") == u"./a"; }},
    {"numbers", [] { return CrkLocaleUtilities::GetDecimalPoint() == u"."; }},
    {"dates", [] { return CrkDateUtilities::ShortDateString(CTime(2026, 11, 16, 12, 0, 0)) == u"11/16/26"; }},
    {"preferences", [] { return SECRegistry().Close() && rk::GetPreferenceState().lastFailure.empty(); }},
    {"settings", [] { return !CrkLogSettings(u"/proc/self/status").m_enable; }},
};

bool UseAll(std::size_t first = 0)
{
    for (std::size_t i = 0; i < std::size(kUses); ++i) {
        const Use& use = kUses[(first + i) % std::size(kUses)];
        if (!use.succeeds()) {
            std::cerr << use.name << " failed\n";
            return false;
        }
    }
    return true;
}

bool UseInThreads()
{
    constexpr std::size_t kThreads = 12;
    std::barrier start(kThreads);
    std::atomic<std::size_t> successCount = 0;
    {
        std::vector<std::jthread> threads;
        for (std::size_t i = 0; i < kThreads; ++i)
            threads.emplace_back([&, i] {
                start.arrive_and_wait();
                if (UseAll(i))
                    ++successCount;
            });
    }
    return successCount == kThreads;
}

bool UseInChild()
{
    const pid_t child = fork();
    if (child == 0)
        _exit(UseAll() ? 0 : 1);
    int status = -1;
    return waitpid(child, &status, 0) == child && status == 0;
}

/// Made before main and destroyed after it.
struct Static {
    Static()
    {
        if (std::getenv("RK_EARLY") != nullptr && !UseAll())
            _exit(1);
    }
    ~Static()
    {
        if (isWanted && !UseAll())
            _exit(1);
    }
    bool isWanted = false;
} lastObject;

bool Make(std::string_view step)
{
    if (step == "threads")
        return UseInThreads();
    else if (step == "child")
        return UseInChild();
    else if (step == "late")
        lastObject.isWanted = true;
    else {
        const auto* const use =
            std::find_if(std::begin(kUses), std::end(kUses), [&](const Use& each) { return each.name == step; });
        return use != std::end(kUses) && use->succeeds();
    }
    return true;
}

}  // namespace

int main(int, char** arguments)
{
    alarm(60);  // ends a run that hangs
    while (*++arguments != nullptr) {
        if (!Make(*arguments))
            return 1;
    }
}
