#pragma once

#include "RkUtilities/foundation/detail/FormatArgument.h"

#include <cstdarg>
#include <cstddef>
#include <span>
#include <string_view>
#include <vector>

namespace rk {

class TextBuilder;

/// Carries out a format, to the end of a text. Throws `FormatError`.
void RenderFormat(std::u16string_view format, std::span<const FormatArgument> arguments, TextBuilder& output);

/// Takes the arguments that the format names from C's list, in order. Throws `FormatError` where a kind cannot be told.
std::vector<FormatArgument> CollectArguments(std::u16string_view format, std::va_list list);

}  // namespace rk
