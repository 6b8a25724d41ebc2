#pragma once

#include "rklog/Entry.h"
#include "rklog/EntryTimes.h"

#include <string>
#include <string_view>

namespace rklog {

/// An entry as it was logged, ready to be written out: every text is well-formed UTF-8, what is not known is empty.
struct Record {
    std::string time;  ///< ISO 8601
    std::string level;
    std::string process;
    std::string category;
    std::string message;
    std::string description;
    std::string id;  ///< empty for the null GUID
    std::string thread;
    std::string timestamp;  ///< as it stands in the log
    std::string seconds;    ///< since the process began
    std::string damage;     ///< "torn" or "stray" for what is no whole entry
    std::string file;
    std::string offset;
};

struct RecordField {
    std::string_view name;
    std::string Record::* text;
    bool isNumber = false;
};

/// The fields by name, in the order in which machines get them.
constexpr RecordField kRecordFields[] = {
    {"time", &Record::time},
    {"level", &Record::level},
    {"process", &Record::process},
    {"category", &Record::category},
    {"message", &Record::message},
    {"description", &Record::description},
    {"id", &Record::id},
    {"thread", &Record::thread},
    {"timestamp", &Record::timestamp},
    {"seconds", &Record::seconds, /*isNumber=*/true},
    {"damage", &Record::damage},
    {"file", &Record::file},
    {"offset", &Record::offset, /*isNumber=*/true},
};

[[nodiscard]] Record RecordOf(const Entry& entry, const EntryTime& time);

}  // namespace rklog
