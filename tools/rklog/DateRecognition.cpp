#include "rklog/DateRecognition.h"

#include "rklog/EntryCutter.h"
#include "rklog/EntryTimes.h"
#include "rklog/InputFile.h"

#include <algorithm>
#include <cstdlib>
#include <map>
#include <system_error>
#include <utility>

namespace rklog {

namespace {

constexpr std::uint64_t kSampledByteCount = 64 << 10;
constexpr std::uint64_t kPlaceCount = 8;  // in a file

/// Two clocks agree when they differ by less: a minute is cut off each time.
constexpr Seconds kTolerance = 2 * kSecondsOfMinute;

/// How far a wall's time may be ahead of the UTC of a file's last change.
constexpr Seconds kFarthestZones = 2 * kSecondsOfDay;

bool Agree(Seconds a, Seconds b) { return std::abs(a - b) < kTolerance; }

}  // namespace

void DateSamples::TakeFrom(const std::string& path) {
    try {
        InputFile::Facts facts;
        if (!InputFile::Look(path, facts) || !facts.isRegular)
            return;
        const InputFile file(path);
        const std::uint64_t last = facts.byteCount - std::min(facts.byteCount, kSampledByteCount);
        const std::uint64_t step = std::max(last / (kPlaceCount - 1), kSampledByteCount);
        const std::size_t before = m_samples.size();
        for (std::uint64_t offset = 0; offset < last; offset += step)
            TakeFrom(file, offset);
        TakeFrom(file, last);
        const Seconds changedUtc = facts.modifiedNanoseconds / 1'000'000'000;
        for (std::size_t i = before; i < m_samples.size(); ++i)
            m_samples[i].latest = changedUtc + kFarthestZones;
        if (m_samples.size() > before)
            m_samples.back().changedUtc = changedUtc;
    } catch (const std::system_error&) {
        return;  // told when the file is read
    }
}

void DateSamples::TakeFrom(const InputFile& file, std::uint64_t offset) {
    EntryCutter cutter;
    cutter.Took(file.ReadAt(offset, cutter.Room(), kSampledByteCount));
    cutter.Finish();
    for (Entry entry; cutter.Next(entry);) {
        const auto [date, sinceLoad] = ReadTimestamp(entry.timestamp);
        if (entry.wholeness == Wholeness::Whole && sinceLoad && !date.empty())
            m_samples.push_back({std::string(date), std::string(entry.thread), *sinceLoad, ReadLogStart(entry), {}, 0});
    }
}

DateSamples::Score DateSamples::ScoreOf(const DateReader& reader) const {
    Score score;
    std::map<std::string_view, Seconds> starts;  // on the wall, by thread
    for (const Sample& sample : m_samples) {
        const std::optional<Seconds> wall = reader.Read(sample.date);
        if (!wall || *wall > sample.latest)
            continue;
        ++score.readableCount;
        const Seconds start = *wall - sample.sinceLoad;
        const auto [known, isNew] = starts.insert({sample.thread, start});
        score.agreementCount += !isNew && Agree(std::exchange(known->second, start), start);
        score.agreementCount += sample.changedUtc && Agree(UtcOfWall(*wall), *sample.changedUtc);
        if (const auto& process = sample.process)
            score.agreementCount += Agree(start, process->loadedUtc + process->zoneOffset);
    }
    return score;
}

bool DateSamples::ReadAlike(const DateReader& a, const DateReader& b) const {
    return std::all_of(m_samples.begin(), m_samples.end(),
                       [&](const Sample& sample) { return a.Read(sample.date) == b.Read(sample.date); });
}

DateSamples::Verdict DateSamples::Recognise(const DateStyle& users) const {
    using enum DateStyle::Order;
    std::vector<DateReader> readers{DateReader(users)};
    for (const DateStyle::Order order : {DayMonthYear, MonthDayYear, YearMonthDay}) {
        if (const DateStyle style{.order = order, .days = {}}; style != users)
            readers.emplace_back(style);
    }
    const DateReader* best = nullptr;
    Score bestScore;
    bool isAmbiguous = false;
    for (const DateReader& reader : readers) {
        const Score score = ScoreOf(reader);
        if (best == nullptr || score > bestScore) {
            best = &reader;
            bestScore = score;
            isAmbiguous = false;
        } else if (score == bestScore && score.readableCount > 0) {
            isAmbiguous |= !ReadAlike(*best, reader);
        }
    }
    return {.style = best->Style(),
            .isAmbiguous = isAmbiguous,
            .isReadable = 2 * bestScore.readableCount >= m_samples.size()};
}

}  // namespace rklog
