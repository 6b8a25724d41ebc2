#include "RkUtilities/foundation/CString.h"

#include "RkUtilities/foundation/FormatRenderer.h"
#include "RkUtilities/foundation/TextBuilder.h"

void CString::FormatList(const CString& format, const rk::FormatArgument* arguments, std::size_t count)
{
    rk::TextBuilder text;
    rk::RenderFormat(format.View(), {arguments, count}, text);
    *this = text.Take();
}

void CString::FormatV(const CString& format, std::va_list arguments)
{
    const std::vector<rk::FormatArgument> list = rk::CollectArguments(format.View(), arguments);
    FormatList(format, list.data(), list.size());
}
