#include "RkUtilities/xml/CrkXmlUtilities.h"

#include "RkUtilities/foundation/detail/TextBuilder.h"
#include "RkUtilities/guid/CrkGuid.h"
#include "RkUtilities/platform/locale/Utf.h"
#include "RkUtilities/xml/detail/XmlCharacterTable.h"

#include <algorithm>
#include <functional>
#include <string_view>

namespace {

bool Is(unsigned short unit, unsigned classes) noexcept { return (rk::kXmlClasses[unit] & classes) != 0; }

/// The units that a name may begin with, and the units that may follow; a unit that may begin may also follow.
struct NameRule {
    rk::XmlCharacterClass following;
    bool colonBegins;

    [[nodiscard]] bool Begins(char16_t unit) const noexcept {
        return Is(unit, rk::XmlNcNameStart) || (colonBegins && unit == u':');
    }
    [[nodiscard]] bool Follows(char16_t unit) const noexcept { return Is(unit, following); }
};
constexpr NameRule kName{rk::XmlNameChar, true};
constexpr NameRule kNcName{rk::XmlNcNameChar, false};

bool IsValid(std::u16string_view text, const NameRule& rule) noexcept {
    return !text.empty() && rule.Begins(text.front()) &&
           std::all_of(text.begin() + 1, text.end(), [&](char16_t unit) { return rule.Follows(unit); });
}

/// Writes the units; a unit that is not accepted is replaced.
template <class Accepts>
void WriteRepaired(std::u16string_view units, unsigned short replacement, const Accepts& accepts, char16_t* out) {
    std::replace_copy_if(units.begin(), units.end(), out, std::not_fn(accepts), static_cast<char16_t>(replacement));
}

CString MadeValid(const CString& text, unsigned short replacement, bool insertUnderscore, const NameRule& rule) {
    std::u16string_view rest = text.View();
    if (IsValid(rest, rule) || (rest.empty() && !insertUnderscore))
        return text;
    const bool begins = !rest.empty() && rule.Begins(rest.front());
    const char16_t first = begins ? rest.front() : u'_';
    if (!rest.empty() && (begins || !insertUnderscore))
        rest.remove_prefix(1);
    return rk::TextBuilder::Written(rest.size() + 1, [&](char16_t* name) {
        *name = first;
        WriteRepaired(rest, replacement, [&](char16_t unit) { return rule.Follows(unit); }, name + 1);
    });
}

}  // namespace

bool CrkXmlUtilities::IsChar(unsigned short unit) noexcept {
    return unit >= 0x20 ? unit <= 0xFFFD && !rk::platform::IsSurrogate(unit)
                        : unit == u'\t' || unit == u'\n' || unit == u'\r';
}

bool CrkXmlUtilities::IsLetter(unsigned short unit) noexcept { return Is(unit, rk::XmlBaseChar | rk::XmlIdeographic); }

bool CrkXmlUtilities::IsBaseChar(unsigned short unit) noexcept { return Is(unit, rk::XmlBaseChar); }

bool CrkXmlUtilities::IsIdeographic(unsigned short unit) noexcept { return Is(unit, rk::XmlIdeographic); }

bool CrkXmlUtilities::IsCombiningChar(unsigned short unit) noexcept { return Is(unit, rk::XmlCombiningChar); }

bool CrkXmlUtilities::IsDigit(unsigned short unit) noexcept { return Is(unit, rk::XmlDigit); }

bool CrkXmlUtilities::IsExtender(unsigned short unit) noexcept { return Is(unit, rk::XmlExtender); }

bool CrkXmlUtilities::IsNCNameChar(unsigned short unit) noexcept { return Is(unit, rk::XmlNcNameChar); }

bool CrkXmlUtilities::IsNameChar(unsigned short unit) noexcept { return Is(unit, rk::XmlNameChar); }

bool CrkXmlUtilities::IsValidName(const CString& text) noexcept { return IsValid(text.View(), kName); }

bool CrkXmlUtilities::IsValidNCName(const CString& text) noexcept { return IsValid(text.View(), kNcName); }

bool CrkXmlUtilities::IsValidUri(const CString& text) noexcept { return !text.IsEmpty() && text.Find(u" ") < 0; }

CString CrkXmlUtilities::StringToXmlString(const CString& text, unsigned short replacement) {
    if (std::all_of(text.begin(), text.end(), &IsChar))
        return text;
    return rk::TextBuilder::Written(text.View().size(),
                                    [&](char16_t* repaired) { WriteRepaired(text, replacement, &IsChar, repaired); });
}

CString CrkXmlUtilities::StringToNCName(const CString& text, unsigned short replacement, bool insertUnderscore) {
    return MadeValid(text, replacement, insertUnderscore, kNcName);
}

CString CrkXmlUtilities::StringToName(const CString& text, unsigned short replacement, bool insertUnderscore) {
    return MadeValid(text, replacement, insertUnderscore, kName);
}

CString CrkXmlUtilities::GenerateUniqueUri() {
    return CrkGuid::GuidToString(rk::guid::WithGroupsReversed(CrkGuid::CreateGuid()));
}
