#include "RkUtilities/logging/detail/LogTroubles.h"

#include "RkUtilities/logging/CrkLogWriter.h"

#include <atomic>
#include <cstdio>
#include <iterator>

namespace rk {

namespace {

struct alignas(8) Failure {  // so that every compiler reads and writes it in one go
    LogStep step = LogStep::None;
    int errorNumber = 0;
};

constinit std::atomic<Failure> lastFailure{Failure()};
constinit std::atomic<std::uint64_t> droppedEntryCount = 0;
constinit std::atomic<bool> isTold = false;

// Indexed by LogStep.
constexpr const char* kStepTexts[] = {"",
                                      "make the log folder",
                                      "open the file",
                                      "lock the file (the entry was written without)",
                                      "write the entry",
                                      "move the full file aside",
                                      "close the file (the last entries may be lost)"};
static_assert(std::size(kStepTexts) == static_cast<std::size_t>(LogStep::Close) + 1);

}  // namespace

void LogTroubles::Forget() noexcept
{
    lastFailure = Failure();
    droppedEntryCount = 0;
    isTold = false;
}

void LogTroubles::Note(LogStep step, const std::error_code& error) noexcept
{
    lastFailure = Failure{.step = step, .errorNumber = error.value()};
    if (!CrkLogWriter::m_tellsFirstFailure || isTold.exchange(true))
        return;
    try {
        std::fputs(("Log: " + LastFailure() + "\n").c_str(), stderr);
    } catch (const std::bad_alloc&) {
        isTold = false;
    }
}

void LogTroubles::NoteDroppedEntry(const std::error_code& error) noexcept
{
    ++droppedEntryCount;
    Note(LogStep::OpenFile, error);
}

std::uint64_t LogTroubles::DroppedEntries() noexcept
{
    return droppedEntryCount;
}

std::string LogTroubles::LastFailure()
{
    const Failure failure = lastFailure;
    if (failure.step == LogStep::None)
        return {};
    return std::string(kStepTexts[static_cast<std::size_t>(failure.step)]) + ": " +
           std::generic_category().message(failure.errorNumber);
}

}  // namespace rk
