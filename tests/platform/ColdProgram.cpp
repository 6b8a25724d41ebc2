// A program that links the library and nothing else, for what only a fresh process shows; FirstUseTest runs it. Each
// argument is a step, and the first that fails ends it with status 1.
//
//     threads        all uses by many threads at once
//     child          all uses in a child after a fork
//     forks          children of many forks while threads ask for other locales' texts and numbers
//     late           all uses in the destructor of a static object; with RK_EARLY set also in its constructor
#include "RkUtilities/RkUtilities.h"

#include "tests/support/AtOnce.h"

#include <algorithm>
#include <atomic>
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
    {"formats", [] { return (rk::PrepareFormats(), true); }},
    {"case", [] { return CString(u"über").MakeUpper() == u"ÜBER"; }},
    {"names", [] { return CrkPathUtilities::CalcRelativePathname(u"/É/a", u"/é") == u"./a"; }},
    {"numbers",
     [] {
         return CrkStringConversionUtilities::DoubleToString(2.5) == u"2.5" &&
                CrkLocaleUtilities::GetFirstDayOfWeek() == 1;
     }},
    {"dates", [] { return CrkDateUtilities::ShortDateString(CTime(2026, 11, 16, 12, 0, 0)) == u"11/16/26"; }},
    {"folder", [] { return !CrkPathUtilities::GetTempFolder().IsEmpty(); }},
    {"preferences", [] { return SECRegistry().Close() && rk::GetPreferenceState().lastFailure.empty(); }},
    {"settings", [] { return !CrkLogSettings(u"/proc/self/status").m_enable; }},
};

bool UseAll(std::size_t first = 0) {
    for (std::size_t i = 0; i < std::size(kUses); ++i) {
        const Use& use = kUses[(first + i) % std::size(kUses)];
        if (!use.succeeds()) {
            std::cerr << use.name << " failed\n";
            return false;
        }
    }
    return true;
}

bool UseInThreads() {
    std::atomic<std::size_t> startCount = 0, successCount = 0;
    AtOnce<12>([&] { successCount += UseAll(startCount++) ? 1 : 0; });
    return successCount == startCount;
}

template <class Use> bool SucceedsInChild(const Use& use) {
    const pid_t child = fork();
    if (child == 0) {
        alarm(20);  // ends a child that hangs
        _exit(use() ? 0 : 1);
    }
    int status = -1;
    return waitpid(child, &status, 0) == child && status == 0;
}

/// Texts and numbers of a locale that others may ask for at once; each name is new, so that ICU makes its objects.
void UseLocale(unsigned name) {
    rk::SetUserLocale((name % 2 == 0 ? "de_DE@x=" : "ja_JP@x=") + std::to_string(name % 100));
    long number = 0;
    static_cast<void>(CrkStringConversionUtilities::StringToLong(u"1E3", number));
    static_cast<void>(CrkLogWriter::CurrentTimeString(kCFDateFormatterFullStyle));
    static_cast<void>(CTime(2026, 11, 16, 12, 0, 0).GetHour());
    static_cast<void>(CrkPathUtilities::CalcRelativePathname(u"/\u00C9/a", u"/\u00E9"));
}

bool ForkWhileThreadsWork() {
    std::atomic<bool> isOver = false;
    std::vector<std::jthread> threads;
    for (unsigned i = 0; i < 3; ++i)
        threads.emplace_back([&isOver, i] {
            for (unsigned name = i; !isOver; name += 7)
                UseLocale(name);
        });
    bool areEnded = true;
    for (unsigned i = 0; i < 150; ++i)
        areEnded = areEnded && SucceedsInChild([i] {
                       UseLocale(i);
                       return CString(u"\u00FCber").MakeUpper() == u"\u00DCBER";
                   });
    isOver = true;
    return areEnded;
}

/// Made before main and destroyed after it.
struct Static {
    Static() {
        if (std::getenv("RK_EARLY") != nullptr && !UseAll())
            _exit(1);
    }
    ~Static() {
        if (isWanted && !UseAll())
            _exit(1);
    }
    bool isWanted = false;
} lastObject;

constexpr Use kSteps[] = {
    {"threads", &UseInThreads},
    {"child", [] { return SucceedsInChild([] { return UseAll(); }); }},
    {"forks", &ForkWhileThreadsWork},
    {"late", [] { return lastObject.isWanted = true; }},
};

bool Make(std::string_view step) {
    return std::ranges::any_of(kSteps, [=](const Use& known) { return known.name == step && known.succeeds(); });
}

}  // namespace

int main(int, char** arguments) {
    alarm(60);  // ends a run that hangs
    while (*++arguments != nullptr) {
        if (!Make(*arguments))
            return 1;
    }
}
