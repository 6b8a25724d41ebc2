// A log that ends with any bytes keeps its whole entries, and what is logged afterwards can be read.
#include "RkUtilities/logging/CrkLogWriter.h"

#include "../tests/rklog/LogText.h"
#include "fuzz/Require.h"
#include "fuzz/ScratchFolder.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace {

constexpr std::string_view kStart = "<l:LogEntry><l:Timestamp>", kFooter = "</l:LogEntry>\n";

/// Where the log writer is switched on.
struct LogFolder : ScratchFolder {
    LogFolder() {
        WriteFile(Path("settings"), "<x><ls:Enable>true</ls:Enable><ls:IncludeCategory>*</ls:IncludeCategory></x>");
    }
    ~LogFolder() { CrkLogWriter::Uninitialize(); }
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const LogFolder folder;
    const std::string path = folder.Path("messages.xml");
    const std::string whole = rklog::EntryAt("11/16/26, 9:52 PM:125") + rklog::EntryAt("11/16/26, 9:53 PM:126");
    const std::string before = whole + std::string(reinterpret_cast<const char*>(data), size);
    WriteFile(path, before);
    CrkLogWriter::Init(folder.Text("settings"), folder.Text());  // the writer remembers nothing of the last file
    CrkLogWriter::Log(CrkLogWriter::LogInfo, u"first");
    CrkLogWriter::Log(CrkLogWriter::LogInfo, u"last");
    const std::string after = ReadFile(path);

    // What was there stays, but for the beginning of an entry at its end.
    const std::size_t kept = after.rfind(kStart, after.rfind(kStart) - 1);
    Require(kept >= whole.size() && after.starts_with(before.substr(0, kept)));
    if (kept < before.size()) {
        const std::string_view cut = std::string_view(before).substr(kept);
        Require(before.substr(0, kept).ends_with(kFooter) && cut.find(kFooter) == cut.npos);
        Require(cut.starts_with(kStart.substr(0, cut.size())));
    }
    std::vector<std::string> messages;
    Require(rklog::Scan(rklog::EntryScanner(), after, after.size(),
                        [&](const rklog::Entry& entry) { messages.emplace_back(entry.message); }));
    Require(messages[0] == "m" && messages.back() == "last" && messages[messages.size() - 2] == "first");
    Require(CrkLogWriter::GetLogState().droppedEntries == 0);
    return 0;
}
