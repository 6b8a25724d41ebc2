// The number at the start of a text.
#include "RkUtilities/numbers/CrkStringConversionUtilities.h"

#include "RkUtilities/numbers/detail/NumberScanner.h"
#include "RkUtilities/numbers/detail/NumberText.h"

bool CrkStringConversionUtilities::StringToDouble(const CString& text, double& value)
{
    return rk::ScanDouble(text, value);
}

bool CrkStringConversionUtilities::StringToInteger(const CString& text, int& value)
{
    return rk::ScanInteger(text, value);
}

bool CrkStringConversionUtilities::IsStringDouble(const CString& text)
{
    double ignored = 0;
    return rk::ScanDouble(text, ignored);
}

bool CrkStringConversionUtilities::IsStringInteger(const CString& text)
{
    int ignored = 0;
    return rk::ScanInteger(text, ignored);
}

bool CrkStringConversionUtilities::StringToPercentageDouble(const CString& text, double& value)
{
    value = 0;
    const std::u16string_view trimmed = rk::Trimmed(text);
    const std::size_t percentAt = trimmed.rfind(u'%');
    if (percentAt == std::u16string_view::npos)
        return rk::ScanDouble(trimmed, value);
    if (percentAt + 1 != trimmed.size() || !rk::ScanDouble(trimmed.substr(0, percentAt), value))
        return false;
    value *= 0.01;
    return true;
}
