#include "RkUtilities/logging/detail/LogTroubles.h"

#include "RkUtilities/logging/CrkLogWriter.h"

#include <atomic>
#include <cstdio>
#include <iterator>

namespace rk {

namespace {

/// A step in the upper half and an error number in the lower half, so that both are read and written at once.
constexpr std::uint64_t FailureOf(LogStep step, int errorNumber) {
    return std::uint64_t{static_cast<std::uint32_t>(step)} << 32 | static_cast<std::uint32_t>(errorNumber);
}
constinit std::atomic<std::uint64_t> lastFailure = FailureOf(LogStep::None, 0);
constinit std::atomic<std::uint64_t> droppedEntryCount = 0;
constinit std::atomic<bool> isTold = false;

/// Indexed by LogStep.
constexpr const char* kStepTexts[] = {"",
                                      "make the log folder",
                                      "open the file",
                                      "lock the file (the entry was written without)",
                                      "write the entry",
                                      "move the full file aside",
                                      "close the file (the last entries may be lost)"};
static_assert(std::size(kStepTexts) == static_cast<std::size_t>(LogStep::Close) + 1);

}  // namespace

void LogTroubles::Forget() noexcept {
    lastFailure = FailureOf(LogStep::None, 0);
    droppedEntryCount = 0;
    isTold = false;
}

void LogTroubles::Note(LogStep step, const std::error_code& error) noexcept {
    lastFailure = FailureOf(step, error.value());
    if (!CrkLogWriter::m_tellsFirstFailure || isTold.exchange(true))
        return;
    try {
        std::fputs(("Log: " + LastFailure() + "\n").c_str(), stderr);
    } catch (const std::bad_alloc&) {
        isTold = false;
    }
}

void LogTroubles::NoteDroppedEntry(const std::error_code& error) noexcept {
    ++droppedEntryCount;
    Note(LogStep::OpenFile, error);
}

std::uint64_t LogTroubles::DroppedEntries() noexcept { return droppedEntryCount; }

std::string LogTroubles::LastFailure() {
    const std::uint64_t failure = lastFailure;
    const char* const step = kStepTexts[failure >> 32];
    if (*step == 0)
        return {};
    return std::string(step) + ": " + std::generic_category().message(static_cast<int>(failure & 0xFFFFFFFF));
}

}  // namespace rk
