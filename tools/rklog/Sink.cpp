#include "rklog/Sink.h"

#include <ostream>
#include <utility>

namespace rklog {

void CountSink::Finish() { m_out << m_count << '\n'; }

WriteSink::WriteSink(std::unique_ptr<RecordWriter> writer, std::ostream& out)
    : m_writer(std::move(writer)), m_out(out) {
    m_writer->Begin(m_out);
}

void WriteSink::Pause() { m_out.flush(); }

void WriteSink::Finish() { m_writer->End(m_out); }

LastSink::LastSink(std::size_t count, std::unique_ptr<RecordWriter> writer, std::ostream& out)
    : m_count(count), m_writer(std::move(writer)), m_out(out) {
    m_writer->Begin(m_out);
}

void LastSink::Take(Log& log) {
    Record record = RecordOf(log.Current(), log.Time());
    if (!m_keeps) {
        m_writer->Write(record, m_out);
        return;
    }
    m_kept.push_back(std::move(record));
    if (m_kept.size() > m_count)
        m_kept.pop_front();
}

void LastSink::WriteKept() {
    for (const Record& record : m_kept)
        m_writer->Write(record, m_out);
    m_kept.clear();
    m_keeps = false;
}

void LastSink::Pause() {
    WriteKept();
    m_out.flush();
}

void LastSink::Finish() {
    WriteKept();
    m_writer->End(m_out);
}

}  // namespace rklog
