// The number at the start of a text.
#include "RkUtilities/numbers/CrkStringConversionUtilities.h"

#include "RkUtilities/numbers/detail/NumberText.h"
#include "RkUtilities/numbers/detail/UserNumber.h"

bool CrkStringConversionUtilities::StringToDouble(const CString& text, double& value)
{
    return rk::ReadUserDouble(text, value);
}

bool CrkStringConversionUtilities::StringToInteger(const CString& text, int& value)
{
    return rk::ReadUserInteger(text, value);
}

bool CrkStringConversionUtilities::IsStringDouble(const CString& text)
{
    double ignored = 0;
    return rk::ReadUserDouble(text, ignored);
}

bool CrkStringConversionUtilities::IsStringInteger(const CString& text)
{
    int ignored = 0;
    return rk::ReadUserInteger(text, ignored);
}

bool CrkStringConversionUtilities::StringToPercentageDouble(const CString& text, double& value)
{
    value = 0;
    const std::u16string_view trimmed = rk::Trimmed(text);
    const std::size_t percentAt = trimmed.rfind(u'%');
    if (percentAt == std::u16string_view::npos)
        return rk::ReadUserDouble(trimmed, value);
    if (percentAt + 1 != trimmed.size() || !rk::ReadUserDouble(trimmed.substr(0, percentAt), value))
        return false;
    value *= 0.01;
    return true;
}
