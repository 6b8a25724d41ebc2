#pragma once

#include "rklog/Record.h"

#include <iosfwd>
#include <memory>
#include <string_view>

namespace rklog {

/// Writes records in a format. Each kind is made by its function below.
class RecordWriter {
public:
    RecordWriter() = default;
    RecordWriter(const RecordWriter&) = delete;
    RecordWriter& operator=(const RecordWriter&) = delete;
    virtual ~RecordWriter() = default;

    virtual void Begin(std::ostream&) {}
    virtual void Write(const Record& record, std::ostream& out) = 0;
    virtual void End(std::ostream&) {}
};

enum class Colors { None, Terminal };

/// One line for people: time, level, process, category, message, description. Further lines of a message are indented,
/// and what could steer a terminal or turn the reading direction is shown by its code: no message passes for an entry.
[[nodiscard]] std::unique_ptr<RecordWriter> MakeTextWriter(Colors colors);
/// One JSON object a line with all fields of kRecordFields; null for a time or number that is not known.
[[nodiscard]] std::unique_ptr<RecordWriter> MakeJsonWriter();
/// RFC 4180, with a header line.
[[nodiscard]] std::unique_ptr<RecordWriter> MakeCsvWriter();
/// A well-formed document with a root element; a field that is empty has no element. Characters that XML 1.0 cannot
/// hold become U+FFFD.
[[nodiscard]] std::unique_ptr<RecordWriter> MakeXmlWriter();
/// One page to filter and search in a browser, complete in itself. What was logged is data there, never markup.
[[nodiscard]] std::unique_ptr<RecordWriter> MakeHtmlWriter();

/// Where a JSON object stands: on a line of its own, with all fields; or in a script of a page, where "<" must not
/// stand as it is, without the fields that are empty.
enum class JsonPlace { Line, Script };
void AppendJson(const Record& record, JsonPlace place, std::string& out);

}  // namespace rklog
