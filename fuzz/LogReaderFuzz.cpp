// Any bytes as a log, in blocks of any size: every byte is given once and in order, entries that stand behind the bytes are
// found, and what is written of them is well-formed.
#include "rklog/EntryScanner.h"
#include "rklog/EntryText.h"
#include "rklog/EntryTimes.h"
#include "rklog/RecordWriter.h"

#include "Require.h"

#include <RkUtilities/foundation/CString.h>

#include <algorithm>
#include <cstdint>
#include <expat.h>
#include <sstream>
#include <string>

using namespace rklog;

namespace {

const std::string kWhole =
    "\n<l:LogEntry><l:Timestamp>11/16/26, 9:52 PM:125</l:Timestamp><l:Tid>7f</l:Tid><l:Category>fuzz</l:Category>"
    "<l:Severity>Info</l:Severity><l:Id></l:Id><l:Description></l:Description><l:Body>last</l:Body></l:LogEntry>\n";

template <class Take>
void Scan(std::string_view log, std::size_t blockByteCount, const Take& take)
{
    EntryScanner scanner;
    Entry entry;
    std::uint64_t end = 0;
    const auto drain = [&] {
        while (scanner.Next(entry)) {
            Require(entry.offset == end && scanner.Offset() > end);
            end = scanner.Offset();
            take(entry);
        }
    };
    for (std::string_view rest = log; !rest.empty(); rest.remove_prefix(std::min(rest.size(), blockByteCount))) {
        const std::string_view block = rest.substr(0, blockByteCount);
        block.copy(scanner.Room(), block.size());
        scanner.Took(block.size());
        drain();
    }
    scanner.Finish();
    drain();
    Require(end == log.size());
}

bool IsWellFormedXml(const std::string& xml)
{
    XML_Parser parser = XML_ParserCreate(nullptr);
    const XML_Status status = XML_Parse(parser, xml.data(), static_cast<int>(xml.size()), XML_TRUE);
    XML_ParserFree(parser);
    return status == XML_STATUS_OK;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::size_t blockByteCount = size > 0 ? data[0] % 64U + 1U : 1U;
    const std::string log = std::string(reinterpret_cast<const char*>(data), size) + kWhole;
    EntryTimes times(DateReader({.order = DateStyle::Order::MonthDayYear, .days = {}}));
    std::ostringstream json, xml, text;
    const auto jsonWriter = MakeJsonWriter(), xmlWriter = MakeXmlWriter(), textWriter = MakeTextWriter(Colors::None);
    xmlWriter->Begin(xml);
    std::string last;
    std::size_t count = 0;
    Scan(log, blockByteCount, [&](const Entry& entry) {
        times.Notice(entry);
        const Record record = RecordOf(entry, times.Of(entry));
        for (const auto& writer : {jsonWriter.get(), textWriter.get()})
            writer->Write(record, writer == jsonWriter.get() ? json : text);
        xmlWriter->Write(record, xml);
        last = record.category + record.message;
        ++count;
    });
    xmlWriter->End(xml);
    Require(last == "fuzzlast");
    Require(IsWellFormedXml(xml.str()));
    const std::string lines = json.str(), shown = text.str();
    Require(static_cast<std::size_t>(std::count(lines.begin(), lines.end(), '\n')) == count);
    Require(CString(lines).ToUtf8() == lines);
    Require(std::none_of(shown.begin(), shown.end(),
                         [](char c) { return static_cast<unsigned char>(c) < 0x20 && c != '\n' && c != '\t'; }));

    std::size_t wholeCount = 0;
    Scan(log, log.size(), [&](const Entry&) { ++wholeCount; });
    Require(wholeCount == count);
    return 0;
}
