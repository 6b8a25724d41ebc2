#include "rklog/InputFile.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace rklog {

namespace {

InputFile::Facts FactsOf(const struct stat& status) {
    return {.identity = {.device = status.st_dev, .number = status.st_ino},
            .byteCount = static_cast<std::uint64_t>(status.st_size),
            .modifiedNanoseconds = status.st_mtim.tv_sec * std::int64_t{1000000000} + status.st_mtim.tv_nsec,
            .isRegular = S_ISREG(status.st_mode),
            .isFolder = S_ISDIR(status.st_mode)};
}

template <class Call> std::size_t Complete(const Call& call, const std::string& path) {
    ssize_t count = 0;
    do
        count = call();
    while (count < 0 && errno == EINTR);
    if (count < 0)
        throw std::system_error(errno, std::generic_category(), path);
    return static_cast<std::size_t>(count);
}

}  // namespace

InputFile::InputFile(const std::string& path)
    : m_path(path), m_descriptor(path == "-" ? dup(STDIN_FILENO) : open(path.c_str(), O_RDONLY | O_CLOEXEC)) {
    if (m_descriptor < 0)
        Fail();
}

InputFile::~InputFile() { close(m_descriptor); }

void InputFile::Fail() const { throw std::system_error(errno, std::generic_category(), m_path); }

InputFile::Facts InputFile::Look() const {
    struct stat status{};
    if (fstat(m_descriptor, &status) != 0)
        Fail();
    return FactsOf(status);
}

bool InputFile::Look(const std::string& path, Facts& facts) {
    struct stat status{};
    if (stat(path.c_str(), &status) != 0)
        return false;
    facts = FactsOf(status);
    return true;
}

std::size_t InputFile::Read(char* buffer, std::size_t byteCount) {
    return Complete([&] { return read(m_descriptor, buffer, byteCount); }, m_path);
}

std::size_t InputFile::ReadAt(std::uint64_t offset, char* buffer, std::size_t byteCount) const {
    return Complete([&] { return pread(m_descriptor, buffer, byteCount, static_cast<off_t>(offset)); }, m_path);
}

void InputFile::GoTo(std::uint64_t offset) {
    if (lseek(m_descriptor, static_cast<off_t>(offset), SEEK_SET) < 0)
        Fail();
}

}  // namespace rklog
