#include "rklog/RecordWriter.h"

#include <ostream>

namespace rklog {

namespace {

void AppendEscape(unsigned char c, std::string& out) {
    constexpr char kDigits[] = "0123456789abcdef";
    out.append("\\u00").append(1, kDigits[c >> 4]).append(1, kDigits[c & 0xF]);
}

void AppendString(std::string_view text, JsonPlace place, std::string& out) {
    out += '"';
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (c == '"' || c == '\\')
            out.append(1, '\\').append(1, c);
        else if (c == '\n')
            out += "\\n";
        else if (c == '\t')
            out += "\\t";
        else if (byte < 0x20 || byte == 0x7F || (c == '<' && place == JsonPlace::Script))
            AppendEscape(byte, out);
        else
            out += c;
    }
    out += '"';
}

class JsonWriter : public RecordWriter {
public:
    void Write(const Record& record, std::ostream& out) override {
        m_line.clear();
        AppendJson(record, JsonPlace::Line, m_line);
        out << (m_line += '\n');
    }

private:
    std::string m_line;
};

}  // namespace

void AppendJson(const Record& record, JsonPlace place, std::string& out) {
    std::string_view separator = "{";
    for (const RecordField& field : kRecordFields) {
        const std::string& text = record.*field.text;
        if (text.empty() && place == JsonPlace::Script)
            continue;
        out.append(separator).append("\"").append(field.name).append("\":");
        if (text.empty() && (field.isNumber || field.text == &Record::time))
            out += "null";
        else if (field.isNumber)
            out += text;
        else
            AppendString(text, place, out);
        separator = ",";
    }
    out += '}';
}

std::unique_ptr<RecordWriter> MakeJsonWriter() { return std::make_unique<JsonWriter>(); }

}  // namespace rklog
