// A log that ends with any bytes keeps its whole entries, and what is logged afterwards can be read.
#include "fuzz/Fuzz.h"
#include "tests/logging/LogFolder.h"
#include "tests/rklog/LogText.h"

namespace {

constexpr std::string_view kStart = "<l:LogEntry><l:Timestamp>", kFooter = "</l:LogEntry>\n";

}  // namespace

void Try(FuzzedDataProvider& data) {
    static const LogFolder folder;
    const std::string whole = rklog::EntryAt("11/16/26, 9:52 PM:125") + rklog::EntryAt("11/16/26, 9:53 PM:126");
    const std::string before = whole + data.ConsumeRemainingBytesAsString();
    folder.Write(folder.Active(), before);
    folder.Init();  // the writer remembers nothing of the last file
    CrkLogWriter::Log(CrkLogWriter::LogInfo, u"first");
    CrkLogWriter::Log(CrkLogWriter::LogInfo, u"last");
    const std::string after = folder.Read(folder.Active());

    // What was there stays, but for the beginning of an entry at its end.
    const std::size_t kept = after.rfind(kStart, after.rfind(kStart) - 1);
    Require(kept >= whole.size() && after.starts_with(before.substr(0, kept)));
    if (kept < before.size()) {
        const std::string_view cut = std::string_view(before).substr(kept);
        Require(before.substr(0, kept).ends_with(kFooter) && cut.find(kFooter) == cut.npos);
        Require(cut.starts_with(kStart.substr(0, cut.size())));
    }
    std::vector<std::string> messages;
    Require(rklog::CutApart(rklog::EntryCutter(), after, after.size(),
                            [&](const rklog::Entry& entry) { messages.emplace_back(entry.message); }));
    Require(messages[0] == "m" && messages.back() == "last" && messages[messages.size() - 2] == "first");
    Require(CrkLogWriter::GetLogState().droppedEntries == 0);
}
