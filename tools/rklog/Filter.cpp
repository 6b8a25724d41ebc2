#include "rklog/Filter.h"

#include "rklog/EntryText.h"

#include <RkUtilities/guid/CrkGuid.h>
#include <RkUtilities/logging/CrkLogWriter.h>

#include <algorithm>
#include <cstring>

namespace rklog {

namespace {

bool IsOneOf(std::string_view field, const std::vector<std::string>& wanted) {
    return wanted.empty() || std::find(wanted.begin(), wanted.end(), field) != wanted.end();
}

bool Holds(std::string_view text, const std::string& sought) {
    return memmem(text.data(), text.size(), sought.data(), sought.size()) != nullptr;
}

/// The texts that are searched, as they were logged.
struct Searched {
    std::string message;
    std::string description;
};

bool Holds(const Searched& searched, const std::string& sought, bool ignoresCase) {
    if (!ignoresCase)
        return Holds(searched.message, sought) || Holds(searched.description, sought);
    const CString text(sought);
    return CString(searched.message).FindNoCase(text) >= 0 || CString(searched.description).FindNoCase(text) >= 0;
}

}  // namespace

bool Filter::Admits(const Entry& entry) const {
    if (level && (!entry.level || *entry.level > *level))
        return false;
    if (!categories.empty() && !IsOneOf(Unescaped(entry.category), categories))
        return false;
    if (!IsOneOf(entry.id, ids) || !IsOneOf(entry.thread, threads))
        return false;
    if (texts.empty() && patterns.empty())
        return true;
    const Searched searched{Unescaped(entry.message), Unescaped(entry.description)};
    return std::all_of(texts.begin(), texts.end(),
                       [&](const std::string& text) { return Holds(searched, text, ignoresCase); }) &&
           std::all_of(patterns.begin(), patterns.end(), [&](const auto& pattern) {
               return pattern->IsIn(searched.message) || pattern->IsIn(searched.description);
           });
}

bool Filter::Admits(const EntryTime& time) const {
    if (!NeedsTimes())
        return true;
    return !time.isBeforeAll && (!sinceUtc || time.utc >= *sinceUtc) && (!untilUtc || time.utc <= *untilUtc);
}

std::vector<std::string> LogTextsOfId(const CString& guid) {
    const bool hasBraces = guid.Left(1) == u"{";
    CString bare = hasBraces ? guid.Mid(1, guid.GetLength() - 2) : guid;
    bare.MakeUpper();
    const CFUUIDBytes bytes = CrkGuid::StringToGuid(bare);
    constexpr int kLength = 36;
    if (bare.GetLength() != kLength || (CrkGuid::IsNullGuid(bytes) && bare != CrkGuid::GuidToString(bytes)))
        return {};
    // The text form swaps the first bytes of a record; the log writes them as they stand.
    const CString header = CrkLogWriter::EntryHeader({}, CrkLogWriter::LogDebug, {}, bytes);
    const int start = header.Find(u"<l:Id>") + 6;
    return {bare.ToUtf8(), header.Mid(start, kLength).ToUtf8()};
}

}  // namespace rklog
