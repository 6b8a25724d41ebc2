#pragma once

#include "rklog/DateReader.h"
#include "rklog/InputFile.h"
#include "rklog/Process.h"

#include <string>
#include <vector>

namespace rklog {

/// Entries from all over a log, to tell by how their dates are written.
class DateSamples {
public:
    /// Takes entries from the beginning, the middle and the end of a file; nothing from a pipe or an unreadable file.
    void TakeFrom(const std::string& path);

    struct Verdict {
        DateStyle style;
        bool isAmbiguous = false;  ///< the dates may as well be written in another order
        bool isReadable = true;    ///< at least half of the dates can be read
    };

    /// The style that makes the most samples dates, and no sample a date after the file's last change. Of several such
    /// styles the style in which the seconds since a process's start pass as fast as the clock, and which agrees with
    /// the starts of processes and with the file's last change; of several still, the user's.
    [[nodiscard]] Verdict Recognise(const DateStyle& users) const;

private:
    struct Sample {
        std::string date;
        std::string thread;
        Seconds sinceLoad;
        std::optional<Process> process;
        std::optional<Seconds> changedUtc;  // of the file whose last entry this is
        Seconds latest;                     // the latest time that the entry can be of
    };
    struct Score {
        std::size_t readableCount = 0;
        std::size_t agreementCount = 0;
        friend auto operator<=>(const Score&, const Score&) = default;
    };

    void TakeFrom(const InputFile& file, std::uint64_t offset);
    [[nodiscard]] Score ScoreOf(const DateReader& reader) const;
    [[nodiscard]] bool ReadAlike(const DateReader& a, const DateReader& b) const;

    std::vector<Sample> m_samples;
};

}  // namespace rklog
