// Any bytes as a log, in blocks of any size: every byte is given once and in order, entries that stand behind the bytes
// are found, and what is written of them is well-formed.
#include "fuzz/Fuzz.h"
#include "rklog/EntryTimes.h"
#include "rklog/RecordWriter.h"
#include "tests/rklog/LogText.h"

#include <expat.h>
#include <sstream>

using namespace rklog;

namespace {

bool IsWellFormedXml(const std::string& xml) {
    XML_Parser parser = XML_ParserCreate(nullptr);
    const XML_Status status = XML_Parse(parser, xml.data(), static_cast<int>(xml.size()), XML_TRUE);
    XML_ParserFree(parser);
    return status == XML_STATUS_OK;
}

}  // namespace

void Try(FuzzedDataProvider& data) {
    const std::size_t blockByteCount = data.ConsumeIntegralInRange<std::size_t>(1, 64);
    const std::string log =
        data.ConsumeRemainingBytesAsString() + '\n' + EntryAt("11/16/26, 9:52 PM:125", "last", "Info", "fuzz");
    EntryTimes times(DateReader({.order = DateStyle::Order::MonthDayYear, .days = {}}));
    std::ostringstream json, xml, text;
    const auto jsonWriter = MakeJsonWriter(), xmlWriter = MakeXmlWriter(), textWriter = MakeTextWriter(Colors::None);
    xmlWriter->Begin(xml);
    std::string last;
    std::size_t count = 0;
    const auto take = [&](const Entry& entry) {
        times.Notice(entry);
        const Record record = RecordOf(entry, times.Of(entry));
        for (const auto& writer : {jsonWriter.get(), textWriter.get()})
            writer->Write(record, writer == jsonWriter.get() ? json : text);
        xmlWriter->Write(record, xml);
        last = record.category + record.message;
        ++count;
    };
    Require(CutApart(EntryCutter(), log, blockByteCount, take));
    xmlWriter->End(xml);
    Require(last == "fuzzlast");
    Require(IsWellFormedXml(xml.str()));
    const std::string lines = json.str(), shown = text.str();
    Require(static_cast<std::size_t>(std::count(lines.begin(), lines.end(), '\n')) == count);
    Require(CString(lines).ToUtf8() == lines);
    Require(std::none_of(shown.begin(), shown.end(),
                         [](char c) { return static_cast<unsigned char>(c) < 0x20 && c != '\n' && c != '\t'; }));

    std::size_t wholeCount = 0;
    Require(CutApart(EntryCutter(), log, log.size(), [&](const Entry&) { ++wholeCount; }) && wholeCount == count);
}
