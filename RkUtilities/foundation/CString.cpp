#include "RkUtilities/foundation/CString.h"

#include "RkUtilities/foundation/detail/TextBuilder.h"
#include "RkUtilities/foundation/detail/UnitBlock.h"
#include "RkUtilities/foundation/detail/Utf8.h"
#include "RkUtilities/platform/locale/Collation.h"
#include "RkUtilities/platform/locale/StringTables.h"
#include "RkUtilities/platform/process/Environment.h"

#include <algorithm>
#include <cstring>
#include <ostream>

namespace {

constexpr unsigned int kEncodingUtf8 = 0x08000100;
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

CString FromUtf8(std::string_view bytes) {
    rk::TextBuilder builder;
    builder.AppendUtf8(bytes);
    return builder.Take();
}

}  // namespace

// --- Construction

CString::CString(std::string_view utf8) : CString(FromUtf8(utf8)) {}

CString::CString(char const* bytes, unsigned long byteCount, unsigned int encoding, bool skipByteOrderMark)
    : CString() {
    if (bytes == nullptr || encoding != kEncodingUtf8)
        return;
    std::string_view utf8(bytes, byteCount);
    if (skipByteOrderMark && utf8.starts_with(kByteOrderMark))
        utf8.remove_prefix(kByteOrderMark.size());
    *this = CString(utf8);
}

// --- Looking at the text

std::string CString::ToUtf8() const {
    std::string bytes;
    AppendUtf8To(bytes);
    return bytes;
}

void CString::AppendUtf8To(std::string& bytes) const { rk::AppendUtf8(View(), bytes); }

std::ostream& operator<<(std::ostream& stream, const CString& text) { return stream << text.ToUtf8(); }

// --- Substrings

CString CString::Left(int unitCount) const { return Mid(0, unitCount); }

CString CString::Right(int unitCount) const { return Mid(GetLength() - std::clamp(unitCount, 0, GetLength())); }

CString CString::Mid(int start, int unitCount) const {
    start = std::clamp(start, 0, GetLength());
    unitCount = std::clamp(unitCount, 0, GetLength() - start);
    return Part(static_cast<std::size_t>(start), static_cast<std::size_t>(unitCount));
}

CString CString::Part(std::size_t start, std::size_t unitCount) const {
    const std::u16string_view text = View();
    if (unitCount == text.size())
        return *this;
    constexpr std::size_t kMost = rk::TextStorage::kInlineUnits;
    if (unitCount > kMost || text.size() - start < kMost)
        return text.substr(start, unitCount);
    CString part;  // all the units that it has room for, since a copy of fixed size takes neither call nor branch
    std::memcpy(part.m_text.OwnUnits(), text.data() + start, kMost * sizeof(char16_t));
    part.m_text.SetLength(unitCount);
    return part;
}

// --- Comparing

int CString::Collate(const CString& other) const {
    rk::platform::TextRow<char16_t> texts;
    texts.Add(View());
    texts.Add(other.View());
    const rk::platform::TextRow<char> keys = rk::platform::CollationKeysOf(texts);
    const int order = keys[0].compare(keys[1]);
    return order != 0 ? order : Compare(other);
}

// --- Changing

CString& CString::Append(const CString& text) {
    if (IsEmpty())
        return *this = text;
    return AppendUnits(text.View());
}

CString& CString::AppendUnits(std::u16string_view text) {
    const std::size_t length = View().size();
    const std::size_t grown = length + text.size();
    if (m_text.IsOwn() && grown <= m_text.Capacity()) {
        std::copy(text.begin(), text.end(), m_text.OwnUnits() + length);
        m_text.SetLength(grown);
        return *this;
    }
    rk::TextStorage::CheckLength(grown);
    char16_t* const units =
        rk::SharedUnits::Allocate(std::max(grown, std::min<std::size_t>(length + length / 2, INT_MAX - 1)));
    std::copy(text.begin(), text.end(), std::copy(begin(), end(), units));
    m_text = rk::TextStorage::Adopting(units, grown);
    return *this;
}

CString CString::Joined(std::u16string_view a, std::u16string_view b) {
    return rk::TextBuilder::Written(a.size() + b.size(), [&](char16_t* units) {
        rk::CopyUnits(a.data(), a.size(), units);
        rk::CopyUnits(b.data(), b.size(), units + a.size());
    });
}

// --- Texts from elsewhere

void CString::GetEnvironmentVariable(const CString& name) {
    *this = CString(rk::platform::EnvironmentVariable(name.ToUtf8()).value_or(std::string()));
}

void CString::LoadString(char const* key, char const* bundle) {
    *this = key != nullptr ? CString(rk::platform::StringTableText(key, bundle)) : CString();
}
