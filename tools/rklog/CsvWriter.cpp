#include "rklog/RecordWriter.h"

#include <ostream>

namespace rklog {

namespace {

void AppendField(std::string_view text, std::string& line) {
    line += line.empty() ? "" : ",";
    if (text.find_first_of(",\"\r\n") == std::string_view::npos) {
        line += text;
        return;
    }
    line += '"';
    for (const char c : text)
        line.append(c == '"' ? 2 : 1, c);
    line += '"';
}

class CsvWriter : public RecordWriter {
public:
    void Begin(std::ostream& out) override {
        std::string line;
        for (const RecordField& field : kRecordFields)
            AppendField(field.name, line);
        out << line << "\r\n";
    }
    void Write(const Record& record, std::ostream& out) override {
        std::string line;
        for (const RecordField& field : kRecordFields)
            AppendField(record.*field.text, line);
        out << line << "\r\n";
    }
};

}  // namespace

std::unique_ptr<RecordWriter> MakeCsvWriter() { return std::make_unique<CsvWriter>(); }

}  // namespace rklog
