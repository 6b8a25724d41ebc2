#pragma once

#include "rklog/Entry.h"
#include "rklog/EntryTimes.h"
#include "rklog/Pattern.h"

#include <RkUtilities/foundation/CString.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace rklog {

/// Which entries are wanted. All conditions must hold; of several categories, ids or threads a single match is enough.
struct Filter {
    std::optional<rk::ErkLogLevel> level;  ///< this level and more severe levels
    std::vector<std::string> categories;
    std::vector<std::string> texts;  ///< each in the message or in the description
    std::vector<std::shared_ptr<const Pattern>> patterns;
    std::vector<std::string> ids;  ///< as LogTextsOfId gives them
    std::vector<std::string> threads;
    std::optional<Seconds> sinceUtc;
    std::optional<Seconds> untilUtc;  ///< this second is still wanted
    bool ignoresCase = false;

    [[nodiscard]] bool NeedsTimes() const { return sinceUtc || untilUtc; }
    /// All but the times.
    [[nodiscard]] bool Admits(const Entry& entry) const;
    [[nodiscard]] bool Admits(const EntryTime& time) const;
};

/// The texts by which entries may name a GUID that a person gives, with or without braces: the given text, and the text
/// that the log makes of the record which CrkGuid reads from it. Empty when the text is no GUID.
[[nodiscard]] std::vector<std::string> LogTextsOfId(const CString& guid);

}  // namespace rklog
