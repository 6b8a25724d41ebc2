#include "RkUtilities/foundation/CString.h"

#include "RkUtilities/foundation/detail/FormatRenderer.h"
#include "RkUtilities/foundation/detail/TextBuilder.h"

CString rk::FormattedText(std::u16string_view format, const FormatArgument* arguments, std::size_t count) {
    TextBuilder output;
    RenderFormat(format, {arguments, count}, output);
    return output.Take();
}

void CString::FormatV(const CString& format, std::va_list arguments) {
    const std::vector<rk::FormatArgument> list = rk::CollectArguments(format.View(), arguments);
    *this = rk::FormattedText(format.View(), list.data(), list.size());
}
