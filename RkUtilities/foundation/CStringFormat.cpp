#include "RkUtilities/foundation/CString.h"

#include "RkUtilities/foundation/detail/FormatOutput.h"
#include "RkUtilities/foundation/detail/FormatRenderer.h"
#include "RkUtilities/foundation/detail/TextBuilder.h"

void CString::FormatList(const CString& format, const rk::FormatArgument* arguments, std::size_t count)
{
    char16_t shortUnits[128];
    rk::FormatOutput output(shortUnits);
    rk::RenderFormat(format.View(), {arguments, count}, output);
    if (output.Fits()) {
        *this = CString(Utf16, {shortUnits, output.UnitCount()});
        return;
    }
    const std::size_t unitCount = output.UnitCount();
    *this = rk::TextBuilder::Written(unitCount, [&](char16_t* units) {
        rk::FormatOutput whole({units, unitCount});
        rk::RenderFormat(format.View(), {arguments, count}, whole);
    });
}

void CString::FormatV(const CString& format, std::va_list arguments)
{
    const std::vector<rk::FormatArgument> list = rk::CollectArguments(format.View(), arguments);
    FormatList(format, list.data(), list.size());
}
