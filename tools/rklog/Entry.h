#pragma once

#include <RkUtilities/logging/ErkLogLevel.h>

#include <cstdint>
#include <optional>
#include <string_view>

namespace rklog {

/// How much of an entry is there.
enum class Wholeness {
    Whole,
    Torn,   ///< an entry whose end is missing
    Stray,  ///< text that belongs to no entry; all of it is the message
};

/// An entry of a log as it stands in the file: every text is a view of the bytes, "&amp;" and all, valid until the
/// source that gave the entry is asked for the next. What is not there is empty.
struct Entry {
    Wholeness wholeness = Wholeness::Whole;
    std::optional<rk::ErkLogLevel> level;  ///< empty for a severity that is no level
    std::uint64_t offset = 0;              ///< of the first byte in the file
    std::string_view file;                 ///< the path of the file
    std::string_view timestamp;
    std::string_view thread;
    std::string_view category;
    std::string_view id;
    std::string_view description;
    std::string_view message;
};

/// Where entries come from, one at a time.
class EntrySource {
public:
    EntrySource() = default;
    EntrySource(const EntrySource&) = delete;
    EntrySource& operator=(const EntrySource&) = delete;
    virtual ~EntrySource() = default;

    /// Gives the next entry; false when there is no further entry, or not yet.
    /// @throws std::system_error  a file that cannot be read
    virtual bool Next(Entry& entry) = 0;
};

}  // namespace rklog
