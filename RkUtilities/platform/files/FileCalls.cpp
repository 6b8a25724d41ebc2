#include "RkUtilities/platform/files/FileCalls.h"

#include <algorithm>
#include <climits>
#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

namespace rk::platform {
namespace {

sigset_t FileSizeSignal() noexcept {
    sigset_t set;
    sigemptyset(&set);
    sigaddset(&set, SIGXFSZ);
    return set;
}

bool IsPending() noexcept {
    sigset_t pending;
    return sigpending(&pending) == 0 && sigismember(&pending, SIGXFSZ) == 1;
}

}  // namespace

Place PlaceOf(const std::string& path) noexcept { return {AT_FDCWD, SystemPath(path)}; }

std::optional<FileIdentity> IdentityOf(int descriptor) noexcept {
    struct stat status{};
    return fstat(descriptor, &status) == 0 ? std::optional(IdentityOf(status)) : std::nullopt;
}

std::optional<FileIdentity> IdentityAt(const std::string& path) noexcept {
    struct stat status{};
    return stat(SystemPath(path), &status) == 0 ? std::optional(IdentityOf(status)) : std::nullopt;
}

FileHandle OpenAt(Place place, int flags, mode_t permissions) noexcept {
    return FileHandle(
        Uninterrupted([&] { return openat(place.folder, place.name, flags | O_CLOEXEC | O_NOCTTY, permissions); }));
}

std::error_code LinkTarget(Place link, std::string& target) {
    char text[PATH_MAX];
    const ssize_t length = readlinkat(link.folder, link.name, text, sizeof text);
    if (length < 0 || length == sizeof text)
        return length < 0 ? LastError() : ErrorOf(ENAMETOOLONG);
    target.assign(text, static_cast<std::size_t>(length));
    return {};
}

std::error_code FileHandle::Close() noexcept {
    if (m_descriptor < 0)
        return {};
    // Linux gives the descriptor back even when a signal interrupts: closing again could close another thread's file.
    return close(Release()) == 0 || errno == EINTR ? std::error_code() : LastError();
}

FileSizeSignalGuard::FileSizeSignalGuard() noexcept {
    rlimit limit{};
    m_foundLimit = getrlimit(RLIMIT_FSIZE, &limit) != 0 || limit.rlim_cur != RLIM_INFINITY;
    if (!m_foundLimit || IsPending())
        return;
    const sigset_t set = FileSizeSignal();
    m_holding = pthread_sigmask(SIG_BLOCK, &set, &m_previousMask) == 0;
}

FileSizeSignalGuard::~FileSizeSignalGuard() {
    if (!m_holding)
        return;
    const int keptError = errno;
    const sigset_t set = FileSizeSignal();
    constexpr timespec atOnce{};
    if (IsPending())
        sigtimedwait(&set, nullptr, &atOnce);
    pthread_sigmask(SIG_SETMASK, &m_previousMask, nullptr);
    errno = keptError;
}

std::string WithoutClosingSlashes(const std::string& path) {
    const std::size_t last = path.find_last_not_of('/');
    return path.substr(0, last == std::string::npos ? std::min<std::size_t>(path.size(), 1) : last + 1);
}

std::string FolderPart(const std::string& path) {
    const std::size_t last = path.find_last_not_of('/');
    const std::size_t slash = last == std::string::npos ? last : path.find_last_of('/', last);
    return slash == std::string::npos ? std::string() : path.substr(0, slash + 1);
}

std::string FolderHolding(const std::string& path) {
    std::string folder = FolderPart(path);
    return folder.empty() ? "." : folder;
}

}  // namespace rk::platform
