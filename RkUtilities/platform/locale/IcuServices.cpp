#include "RkUtilities/platform/locale/IcuServices.h"

#include "RkUtilities/platform/locale/IcuParts.h"

#include <unicode/locid.h>
#include <unicode/uchar.h>
#include <unicode/unorm.h>
#include <unicode/ures.h>

namespace rk::platform {

namespace {

std::string CanonicalLocale(const std::string& name)
{
    const icu::Locale locale = icu::Locale::createCanonical(name.c_str());
    return locale.isBogus() != 0 ? "root" : locale.getName();
}

struct CloseBundle {
    void operator()(UResourceBundle* bundle) const { ures_close(bundle); }
};

std::u16string TableText(const std::string& folder, const std::string& locale, const char* key)
{
    UErrorCode error = U_ZERO_ERROR;
    const std::unique_ptr<UResourceBundle, CloseBundle> table(ures_open(folder.c_str(), locale.c_str(), &error));
    std::int32_t length = 0;
    const UChar* const text = ures_getStringByKey(table.get(), key, &length, &error);
    if (U_FAILURE(error) != 0)
        return {};
    return {text, static_cast<std::size_t>(length)};
}

bool IsSameFolded(std::u16string_view first, std::u16string_view second)
{
    UErrorCode status = U_ZERO_ERROR;
    const auto length = [](std::u16string_view name) { return static_cast<std::int32_t>(name.size()); };
    const std::int32_t order = unorm_compare(first.data(), length(first), second.data(), length(second),
                                             U_FOLD_CASE_DEFAULT | U_COMPARE_IGNORE_CASE, &status);
    return U_SUCCESS(status) && order == 0;
}

std::int32_t UpperCase(std::int32_t codePoint)
{
    return u_toupper(codePoint);
}

std::int32_t LowerCase(std::int32_t codePoint)
{
    return u_tolower(codePoint);
}

std::int32_t FoldedCase(std::int32_t codePoint)
{
    return u_foldCase(codePoint, U_FOLD_CASE_DEFAULT);
}

bool IsAlphaNumeric(char16_t unit)
{
    return (U_GET_GC_MASK(unit) & (U_GC_L_MASK | U_GC_ND_MASK)) != 0;
}

bool IsWhiteSpace(char16_t unit)
{
    return u_isUWhiteSpace(unit) != 0;
}

constexpr IcuServices kServices{
    .canonicalLocale = &CanonicalLocale,
    .nameOrder = &MakeNameOrder,
    .numberFormats = &MakeNumberFormats,
    .dateFormat = &MakeDateFormat,
    .tableText = &TableText,
    .isSameFolded = &IsSameFolded,
    .upperCase = &UpperCase,
    .lowerCase = &LowerCase,
    .foldedCase = &FoldedCase,
    .isAlphaNumeric = &IsAlphaNumeric,
    .isWhiteSpace = &IsWhiteSpace,
};

}  // namespace

const IcuServices& Icu()
{
    return kServices;
}

}  // namespace rk::platform
