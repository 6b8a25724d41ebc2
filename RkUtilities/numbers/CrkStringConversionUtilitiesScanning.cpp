// The number at the start of a text.
#include "RkUtilities/numbers/CrkStringConversionUtilities.h"

#include "RkUtilities/foundation/detail/SpelledNumber.h"
#include "RkUtilities/numbers/detail/NumberText.h"
#include "RkUtilities/platform/locale/NumberFormats.h"

#include <algorithm>
#include <climits>

namespace {

rk::NumberSpelling UserSpelling() {
    using namespace rk::platform;
    const NumberFormats& formats = NumberFormats::Of(LocaleUse::Numbers);
    return {.decimalSeparator = formats.decimalSeparator,
            .minusSigns = {u"\u2212", formats.minusSign},
            .plusSign = formats.plusSign,
            .digits = &formats.digits};
}

bool ReadDouble(std::u16string_view text, double& value) { return rk::ReadSpelledDouble(text, UserSpelling(), value); }

}  // namespace

bool CrkStringConversionUtilities::StringToDouble(const CString& text, double& value) {
    return ReadDouble(text, value);
}

bool CrkStringConversionUtilities::StringToInteger(const CString& text, int& value) {
    std::int64_t read = 0;
    if (!rk::ReadSpelledInteger(text, UserSpelling(), read))
        return false;
    value = static_cast<int>(std::clamp<std::int64_t>(read, INT_MIN, INT_MAX));
    return true;
}

bool CrkStringConversionUtilities::IsStringDouble(const CString& text) {
    double ignored = 0;
    return ReadDouble(text, ignored);
}

bool CrkStringConversionUtilities::IsStringInteger(const CString& text) {
    int ignored = 0;
    return StringToInteger(text, ignored);
}

bool CrkStringConversionUtilities::StringToPercentageDouble(const CString& text, double& value) {
    value = 0;
    const std::u16string_view trimmed = rk::Trimmed(text);
    const std::size_t percentAt = trimmed.rfind(u'%');
    if (percentAt == std::u16string_view::npos)
        return ReadDouble(trimmed, value);
    if (percentAt + 1 != trimmed.size() || !ReadDouble(trimmed.substr(0, percentAt), value))
        return false;
    value *= 0.01;
    return true;
}
