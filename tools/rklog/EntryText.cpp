#include "rklog/EntryText.h"

#include "rklog/Levels.h"

#include <utility>

namespace rklog {

namespace {

constexpr std::string_view kAmpersand = "&amp;";

/// What stands between the fields, in their order; the severity is read into its own variable.
struct Separator {
    std::string_view markup;
    std::string_view Entry::* field;
};
constexpr Separator kBeforeSeverity[] = {
    {"</l:Timestamp><l:Tid>", &Entry::timestamp},
    {"</l:Tid><l:Category>", &Entry::thread},
    {"</l:Category><l:Severity>", &Entry::category},
};
constexpr std::string_view kAfterSeverity = "</l:Severity><l:Id>";
constexpr Separator kBehindSeverity[] = {
    {"</l:Id><l:Description>", &Entry::id},
    {"</l:Description><l:Body>", &Entry::description},
};

class Fields {
public:
    explicit Fields(std::string_view rest) : m_rest(rest) {}

    /// Reads up to the markup; false, with all of the rest as the field, when it is not there.
    bool ReadUpTo(std::string_view markup, std::string_view& field) {
        const std::size_t end = m_rest.find(markup);
        field = m_rest.substr(0, end);
        m_rest.remove_prefix(end == std::string_view::npos ? m_rest.size() : end + markup.size());
        return end != std::string_view::npos;
    }
    [[nodiscard]] std::string_view Rest() const { return m_rest; }

private:
    std::string_view m_rest;
};

bool ReadHeader(Fields& fields, Entry& entry) {
    for (const Separator& separator : kBeforeSeverity) {
        if (!fields.ReadUpTo(separator.markup, entry.*separator.field))
            return false;
    }
    std::string_view severity;
    if (!fields.ReadUpTo(kAfterSeverity, severity))
        return false;
    entry.level = LevelOf(severity);
    for (const Separator& separator : kBehindSeverity) {
        if (!fields.ReadUpTo(separator.markup, entry.*separator.field))
            return false;
    }
    return true;
}

}  // namespace

void TakeApart(std::string_view bytes, Entry& entry) {
    const Entry place = std::exchange(entry, {});
    entry.file = place.file;
    entry.offset = place.offset;
    if (!bytes.starts_with(kEntryStart)) {
        entry.wholeness = Wholeness::Stray;
        entry.message = bytes;
        return;
    }
    const bool hasEnd = bytes.ends_with(kEntryEnd);
    bytes.remove_prefix(kEntryStart.size());
    if (hasEnd)
        bytes.remove_suffix(kEntryEnd.size());
    Fields fields(bytes);
    const bool hasHeader = ReadHeader(fields, entry);
    entry.message = fields.Rest();
    entry.wholeness = hasEnd && hasHeader ? Wholeness::Whole : Wholeness::Torn;
}

std::string Unescaped(std::string_view field) {
    std::string text;
    text.reserve(field.size());
    for (std::size_t at = field.find(kAmpersand); at != std::string_view::npos; at = field.find(kAmpersand)) {
        text.append(field.substr(0, at + 1));
        field.remove_prefix(at + kAmpersand.size());
    }
    return text.append(field);
}

}  // namespace rklog
