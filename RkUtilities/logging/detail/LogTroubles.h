#pragma once

#include <cstdint>
#include <string>
#include <system_error>

namespace rk {

/// What the log writer was about to do when something failed.
enum class LogStep : std::uint8_t { None, MakeFolder, OpenFile, Lock, Write, RollOver, Close };

/// What has gone wrong since `CrkLogWriter::Init`. Noting takes neither a lock nor memory. Safe from any thread.
class LogTroubles {
public:
    static void Forget() noexcept;
    static void Note(LogStep step, const std::error_code& error) noexcept;
    static void NoteDroppedEntry(const std::error_code& error) noexcept;

    [[nodiscard]] static std::uint64_t DroppedEntries() noexcept;
    /// "open the file: Too many open files"; "" when nothing failed.
    [[nodiscard]] static std::string LastFailure();
};

}  // namespace rk
