#include "RkUtilities/platform/process/ApplicationName.h"

#include <algorithm>
#include <atomic>
#include <climits>
#include <memory>
#include <unistd.h>

namespace rk::platform {

namespace {

/// Names are never destroyed: no lock is needed to read the current name, nor in the child of a fork.
struct KeptName {
    std::string text;
    const KeptName* earlier;
};
constinit std::atomic<const KeptName*> current = nullptr;

std::string ExecutableName() {
    constexpr std::string_view kReplaced = " (deleted)";  // what the link reads after an update of the running program
    char path[PATH_MAX];
    const ssize_t byteCount = readlink("/proc/self/exe", path, sizeof path);
    std::string name(path, static_cast<std::size_t>(std::max<ssize_t>(byteCount, 0)));
    name.erase(0, name.rfind('/') + 1);
    if (name.ends_with(kReplaced))
        name.resize(name.size() - kReplaced.size());
    return name;
}

}  // namespace

void NameApplication(std::string_view name) {
    auto* const kept = new KeptName{std::string(name), current};
    std::replace(kept->text.begin(), kept->text.end(), '\0', '_');
    current = kept;
}

std::string ApplicationName() {
    const KeptName* kept = current;
    if (kept != nullptr && !kept->text.empty())
        return kept->text;
    std::string name = ExecutableName();
    if (!name.empty()) {  // kept, as the file may get another name
        auto mine = std::make_unique<KeptName>(KeptName{name, kept});
        if (current.compare_exchange_strong(kept, mine.get()))
            static_cast<void>(mine.release());
    }
    return name;
}

}  // namespace rk::platform
