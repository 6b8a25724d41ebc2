#include "rklog/RecordWriter.h"

#include <ostream>

namespace rklog {

namespace {

constexpr std::string_view kReplacement = "\uFFFD";

/// The length of a noncharacter at the start of the text, U+FFFE or U+FFFF, which XML 1.0 leaves out.
std::size_t NoncharacterLength(std::string_view text) {
    return text.starts_with("\uFFFE") || text.starts_with("\uFFFF") ? 3 : 0;
}

void AppendText(std::string_view text, std::string& out) {
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        const auto byte = static_cast<unsigned char>(c);
        if (c == '&')
            out += "&amp;";
        else if (c == '<')
            out += "&lt;";
        else if (c == '>')
            out += "&gt;";
        else if (c == '\r')
            out += "&#13;";  // a parser would make a line feed of it
        else if (byte < 0x20 && c != '\n' && c != '\t')
            out += kReplacement;
        else if (const std::size_t length = byte == 0xEF ? NoncharacterLength(text.substr(i)) : 0; length > 0) {
            out += kReplacement;
            i += length - 1;
        } else {
            out += c;
        }
    }
}

class XmlWriter : public RecordWriter {
public:
    void Begin(std::ostream& out) override { out << "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<log>\n"; }
    void Write(const Record& record, std::ostream& out) override {
        std::string text = "<entry>";
        for (const RecordField& field : kRecordFields) {
            if ((record.*field.text).empty())
                continue;
            text.append("<").append(field.name).append(">");
            AppendText(record.*field.text, text);
            text.append("</").append(field.name).append(">");
        }
        out << text << "</entry>\n";
    }
    void End(std::ostream& out) override { out << "</log>\n"; }
};

}  // namespace

std::unique_ptr<RecordWriter> MakeXmlWriter() { return std::make_unique<XmlWriter>(); }

}  // namespace rklog
