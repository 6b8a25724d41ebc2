#include "RkUtilities/strings/CrkStringUtilities.h"

#include "RkUtilities/foundation/detail/TextBuilder.h"

#include <optional>
#include <utility>

namespace {

constexpr int kMostPasses = 64;
constexpr std::size_t kMostUnits = 4194304;

CString ValueOf(const CString& name) {
    CString value;
    value.GetEnvironmentVariable(name);
    return value;
}

std::size_t CountOf(const CString& sought, const CString& text) {
    std::size_t count = 0;
    for (int at = text.Find(sought); at >= 0; at = text.Find(sought, at + sought.GetLength()))
        ++count;
    return count;
}

/// The text after the passes; nothing when they do not end, or bring in too much.
std::optional<CString> ExpandedInPasses(CString text) {
    CString placeholder;
    std::size_t unitsLeft = kMostUnits;
    for (int pass = 0; CrkStringUtilities::FindEnvironmentVariable(text, &placeholder) >= 0; ++pass) {
        const CString value = ValueOf(placeholder.Mid(1, placeholder.GetLength() - 2));
        const std::size_t count = CountOf(placeholder, text);
        if (pass == kMostPasses || value.View().size() > unitsLeft / count)
            return std::nullopt;
        unitsLeft -= count * value.View().size();
        text.Replace(placeholder, value);
    }
    return text;
}

/// The text with its placeholders, pair by pair from its start, replaced by the values as they are.
CString ExpandedOnce(std::u16string_view text) {
    constexpr std::size_t kNone = std::u16string_view::npos;
    rk::TextBuilder result;
    for (std::size_t unitsLeft = kMostUnits;;) {
        const std::size_t open = text.find(u'%');
        const std::size_t close = open == kNone ? kNone : text.find(u'%', open + 1);
        if (close == kNone)
            break;
        const CString value = ValueOf(text.substr(open + 1, close - open - 1));
        if (value.View().size() > unitsLeft)
            break;
        unitsLeft -= value.View().size();
        result.Append(text.substr(0, open));
        result.Append(value);
        text.remove_prefix(close + 1);
    }
    result.Append(text);
    return result.Take();
}

}  // namespace

int CrkStringUtilities::FindEnvironmentVariable(const CString& text, CString* placeholder) {
    const int first = text.Find(u"%");
    if (first < 0)
        return -1;
    const int second = text.Find(u"%", first + 1);
    if (placeholder != nullptr)
        *placeholder = second < 0 ? CString() : text.Mid(first, second - first + 1);
    return second < 0 ? -1 : first;
}

void CrkStringUtilities::ReplaceEnvironmentVariable(CString* text, const CString& placeholder) {
    if (text == nullptr)
        return;
    CString name(placeholder);
    name.Remove(u'%');
    text->Replace(placeholder, ValueOf(name));
}

void CrkStringUtilities::ReplaceEnvironmentVariables(CString* text) {
    if (text == nullptr)
        return;
    std::optional<CString> expanded = ExpandedInPasses(*text);
    *text = expanded ? *std::move(expanded) : ExpandedOnce(*text);
}
