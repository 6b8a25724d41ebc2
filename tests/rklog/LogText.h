#pragma once

#include "rklog/EntryCutter.h"

#include <algorithm>
#include <string>
#include <string_view>

namespace rklog {

/// An entry as the log's writer writes it; the timestamp with its seconds, "11/16/26, 9:52 PM:125".
inline std::string EntryAt(std::string_view timestamp, std::string_view message = "m", std::string_view level = "Info",
                           std::string_view category = "A") {
    std::string text = "<l:LogEntry><l:Timestamp>";
    text.append(timestamp).append("</l:Timestamp><l:Tid>7f01</l:Tid><l:Category>").append(category);
    text.append("</l:Category><l:Severity>").append(level).append("</l:Severity>");
    text += "<l:Id>00000000-0000-0000-0000-000000000000</l:Id><l:Description></l:Description><l:Body>";
    return text.append(message).append("</l:Body></l:LogEntry>\n");
}

/// Takes a log apart that comes in blocks of one size; whether each byte was given once and in order.
template <class Take>
bool CutApart(EntryCutter&& cutter, std::string_view log, std::size_t blockByteCount, const Take& take) {
    Entry entry;
    std::uint64_t end = 0;
    bool isInOrder = true;
    const auto drain = [&] {
        while (cutter.Next(entry)) {
            isInOrder = isInOrder && entry.offset == end && cutter.Offset() > end;
            end = cutter.Offset();
            take(entry);
        }
    };
    for (std::string_view rest = log; !rest.empty(); rest.remove_prefix(std::min(rest.size(), blockByteCount))) {
        const std::string_view block = rest.substr(0, blockByteCount);
        block.copy(cutter.Room(), block.size());
        cutter.Took(block.size());
        drain();
    }
    cutter.Finish();
    drain();
    return isInOrder && end == log.size();
}

}  // namespace rklog
