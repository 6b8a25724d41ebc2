#include "RkUtilities/foundation/CString.h"

#include "RkUtilities/foundation/detail/SharedUnits.h"
#include "RkUtilities/foundation/detail/TextBuilder.h"
#include "RkUtilities/foundation/detail/UnitBlock.h"
#include "RkUtilities/foundation/detail/Utf8.h"
#include "RkUtilities/platform/locale/StringTables.h"
#include "RkUtilities/platform/process/Environment.h"

#include <algorithm>
#include <cstring>
#include <ostream>

namespace {

constexpr unsigned int kEncodingUtf8 = 0x08000100;
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

std::size_t CheckedLength(std::size_t unitCount)
{
    rk::TextBuilder::CheckLength(unitCount);
    return unitCount;
}

CString FromUtf8(std::string_view bytes)
{
    rk::TextBuilder builder;
    builder.AppendUtf8(bytes);
    return builder.Take();
}

}  // namespace

// --- Construction
// -------------------------------------------------------------------------------------------------------

CString::CString(unsigned short const* text) : CString(Utf16, ViewOf(text))
{}

CString::CString(char const* utf8) : CString(utf8 != nullptr ? std::string_view(utf8) : std::string_view())
{}

CString::CString(std::string_view utf8) : CString(FromUtf8(utf8))
{}

CString::CString(char const* bytes, unsigned long byteCount, unsigned int encoding, bool skipByteOrderMark) : CString()
{
    if (bytes == nullptr || encoding != kEncodingUtf8)
        return;
    std::string_view utf8(bytes, byteCount);
    if (skipByteOrderMark && utf8.substr(0, kByteOrderMark.size()) == kByteOrderMark)
        utf8.remove_prefix(kByteOrderMark.size());
    *this = CString(utf8);
}

CString::CString(Utf16Tag, std::u16string_view text) : CString()
{
    char16_t* units = m_storage.units;
    if (text.size() > kInlineUnits) {
        units = rk::SharedUnits::Allocate(CheckedLength(text.size()));
        m_storage.pointer = units;
        m_kind = Kind::Shared;
    }
    rk::CopyUnits(text.data(), text.size(), units);
    units[text.size()] = 0;
    m_length = static_cast<int>(text.size());
}

// --- Storage
// ------------------------------------------------------------------------------------------------------------

void CString::Release() noexcept
{
    rk::SharedUnits::Release(m_storage.pointer);
}

void CString::Adopt(const char16_t* units, int length) noexcept
{
    if (m_kind == Kind::Shared)
        Release();
    m_storage.pointer = units;
    m_length = length;
    m_kind = Kind::Shared;
}

bool CString::IsOwn() const noexcept
{
    return m_kind == Kind::Inline || (m_kind == Kind::Shared && rk::SharedUnits::IsUnique(m_storage.pointer));
}

char16_t* CString::MutableUnits() noexcept
{
    return m_kind == Kind::Inline ? m_storage.units : const_cast<char16_t*>(m_storage.pointer);
}

char16_t* CString::Writable()
{
    if (!IsOwn())
        *this = CString(Utf16, View());
    return MutableUnits();
}

void CString::Truncate(int length) noexcept
{
    MutableUnits()[length] = 0;
    m_length = length;
}

// --- Looking at the text
// ------------------------------------------------------------------------------------------------

std::string CString::ToUtf8() const
{
    std::string bytes;
    AppendUtf8To(bytes);
    return bytes;
}

void CString::AppendUtf8To(std::string& bytes) const
{
    rk::AppendUtf8(View(), bytes);
}

std::ostream& operator<<(std::ostream& stream, const CString& text)
{
    return stream << text.ToUtf8();
}

// --- Substrings
// ---------------------------------------------------------------------------------------------------------

CString CString::Left(int unitCount) const
{
    return Mid(0, unitCount);
}

CString CString::Right(int unitCount) const
{
    return Mid(m_length - std::clamp(unitCount, 0, m_length));
}

CString CString::Mid(int start) const
{
    return Mid(start, INT_MAX);
}

CString CString::Mid(int start, int unitCount) const
{
    start = std::clamp(start, 0, m_length);
    unitCount = std::clamp(unitCount, 0, m_length - start);
    return Part(static_cast<std::size_t>(start), static_cast<std::size_t>(unitCount));
}

CString CString::Part(std::size_t start, std::size_t unitCount) const
{
    const std::u16string_view text = View();
    if (unitCount == text.size())
        return *this;
    if (unitCount > kInlineUnits || text.size() - start < kInlineUnits)
        return {Utf16, text.substr(start, unitCount)};
    CString part;  // all the units that it has room for, since a copy of fixed size takes neither call nor branch
    std::memcpy(part.m_storage.units, text.data() + start, sizeof part.m_storage.units);
    part.m_storage.units[unitCount] = 0;
    part.m_length = static_cast<int>(unitCount);
    return part;
}

// --- Changing
// -----------------------------------------------------------------------------------------------------------

CString& CString::Append(const CString& text)
{
    if (m_length == 0)
        return *this = text;
    return AppendUnits(text.View());
}

CString& CString::AppendUnits(std::u16string_view text)
{
    const auto length = static_cast<std::size_t>(m_length);
    const std::size_t capacity = m_kind == Kind::Shared ? rk::SharedUnits::Capacity(m_storage.pointer) : kInlineUnits;
    if (IsOwn() && text.size() <= capacity - length) {
        char16_t* const end = MutableUnits() + length;
        std::copy(text.begin(), text.end(), end);
        Truncate(static_cast<int>(length + text.size()));
        return *this;
    }
    const std::size_t grown = CheckedLength(length + text.size());
    char16_t* const units =
        rk::SharedUnits::Allocate(std::max(grown, std::min<std::size_t>(length + length / 2, INT_MAX - 1)));
    *std::copy(text.begin(), text.end(), std::copy(begin(), end(), units)) = 0;
    Adopt(units, static_cast<int>(grown));
    return *this;
}

CString CString::Joined(std::u16string_view a, std::u16string_view b)
{
    return rk::TextBuilder::Written(a.size() + b.size(), [&](char16_t* units) {
        rk::CopyUnits(a.data(), a.size(), units);
        rk::CopyUnits(b.data(), b.size(), units + a.size());
    });
}

// --- Texts from elsewhere
// -----------------------------------------------------------------------------------------------

void CString::GetEnvironmentVariable(const CString& name)
{
    *this = CString(rk::platform::EnvironmentVariable(name.ToUtf8()).value_or(std::string()));
}

void CString::LoadString(char const* key, char const* bundle)
{
    *this = key != nullptr ? CString(rk::platform::StringTableText(key, bundle)) : CString();
}
