#pragma once

#include "rklog/Log.h"
#include "rklog/RecordWriter.h"
#include "rklog/Stats.h"

#include <cstdint>
#include <deque>
#include <iosfwd>
#include <memory>

namespace rklog {

/// What happens to the entries that are wanted.
class Sink {
public:
    Sink() = default;
    Sink(const Sink&) = delete;
    Sink& operator=(const Sink&) = delete;
    virtual ~Sink() = default;

    virtual void Take(Log& log) = 0;
    /// No entries come for now.
    virtual void Pause() {}
    /// No entries come any more.
    virtual void Finish() {}
};

class CountSink : public Sink {
public:
    explicit CountSink(std::ostream& out) : m_out(out) {}
    void Take(Log&) override { ++m_count; }
    void Finish() override;

private:
    std::ostream& m_out;
    std::uint64_t m_count = 0;
};

class StatsSink : public Sink {
public:
    explicit StatsSink(std::ostream& out) : m_out(out) {}
    void Take(Log& log) override { m_stats.Count(log.Current(), log.Time()); }
    void Finish() override { m_stats.Write(m_out); }

private:
    std::ostream& m_out;
    Stats m_stats;
};

class WriteSink : public Sink {
public:
    WriteSink(std::unique_ptr<RecordWriter> writer, std::ostream& out);
    void Take(Log& log) override { m_writer->Write(RecordOf(log.Current(), log.Time()), m_out); }
    void Pause() override;
    void Finish() override;

private:
    std::unique_ptr<RecordWriter> m_writer;
    std::ostream& m_out;
};

/// Keeps the last entries back until the first pause, and writes everything from then on.
class LastSink : public Sink {
public:
    LastSink(std::size_t count, std::unique_ptr<RecordWriter> writer, std::ostream& out);
    void Take(Log& log) override;
    void Pause() override;
    void Finish() override;

private:
    void WriteKept();

    std::size_t m_count;
    std::unique_ptr<RecordWriter> m_writer;
    std::ostream& m_out;
    std::deque<Record> m_kept;
    bool m_keeps = true;
};

}  // namespace rklog
