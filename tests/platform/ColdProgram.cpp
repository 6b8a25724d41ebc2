// A program that links the library and nothing else, for what only a fresh process shows; ServicesTest runs it. Each
// argument is a step, and the first that fails ends it with status 1.
//
//     NAME           the first use of a family: case, names, numbers, dates, preferences, settings
//     load           prints what LoadServices says
//     mapped         prints which of the libraries below are mapped, and whether the modules are
//     threads        all uses by many threads at once
//     child          all uses in a child after a fork
//     late           all uses in the destructor of a static object; with RK_EARLY set also in its constructor
//     in FOLDER      changes to the folder
//     plugin FILE NAME  loads a plug-in that makes the use while it is loaded, as another thread does
#include "RkUtilities/RkUtilities.h"

#include <algorithm>
#include <atomic>
#include <barrier>
#include <chrono>
#include <cstdlib>
#include <dlfcn.h>
#include <fstream>
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
    {"preferences", [] { return SECRegistry().Close() && rk::platform::GetPreferenceState().lastFailure.empty(); }},
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
                if (i % 4 == 3 ? rk::platform::LoadServices().empty() : UseAll(i))
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

void PrintMapped()
{
    std::ifstream file("/proc/self/maps");
    const std::string maps(std::istreambuf_iterator<char>(file), {});
    for (const std::string_view name :
         {"libicuuc", "libexpat", "libsqlite3", "libRkUtilitiesIcu", "libRkUtilitiesXml", "libRkUtilitiesStorage"}) {
        if (maps.find(name) != std::string::npos)
            std::cout << name << '\n';
    }
}

const Use* pluginUse = nullptr;
std::atomic<bool> isPluginLoading = false;
std::atomic<bool> pluginSucceeds = false;

bool UseWhileLoading(const char* file, std::string_view name)
{
    pluginUse = std::find_if(std::begin(kUses), std::end(kUses), [&](const Use& use) { return use.name == name; });
    bool otherSucceeds = false;
    {
        const std::jthread other([&] {
            isPluginLoading.wait(false);
            otherSucceeds = pluginUse->succeeds();  // waits for the loader, which the plug-in's thread holds
        });
        if (dlopen(file, RTLD_NOW) == nullptr) {
            std::cerr << dlerror() << '\n';
            _exit(1);
        }
    }
    return otherSucceeds && pluginSucceeds;
}

bool Make(std::string_view step, char**& arguments)
{
    if (step == "load")
        std::cout << rk::platform::LoadServices() << '\n';
    else if (step == "mapped")
        PrintMapped();
    else if (step == "threads")
        return UseInThreads();
    else if (step == "child")
        return UseInChild();
    else if (step == "late")
        lastObject.isWanted = true;
    else if (step == "in")
        return chdir(*++arguments) == 0;
    else if (step == "plugin") {
        const char* const file = *++arguments;
        return UseWhileLoading(file, *++arguments);
    } else {
        const auto* const use =
            std::find_if(std::begin(kUses), std::end(kUses), [&](const Use& each) { return each.name == step; });
        return use != std::end(kUses) && use->succeeds();
    }
    return true;
}

}  // namespace

/// Called by the plug-in's static initialiser.
extern "C" __attribute__((visibility("default"))) void RkPluginIsLoading()
{
    if (pluginUse == nullptr)
        return;
    isPluginLoading = true;
    isPluginLoading.notify_one();
    std::this_thread::sleep_for(std::chrono::milliseconds(50));  // until the other thread waits
    pluginSucceeds = pluginUse->succeeds();
}

int main(int, char** arguments)
{
    alarm(60);  // ends a run that hangs
    while (*++arguments != nullptr) {
        if (!Make(*arguments, arguments))
            return 1;
    }
}
