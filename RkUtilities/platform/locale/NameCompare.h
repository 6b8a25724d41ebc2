#pragma once

#include <string_view>

namespace rk::platform {

/// Whether two names are the same but for case and composition: canonical caseless matching (Unicode, chapter 3, D145)
/// with full case folding, so "É" is "e" with a combining acute and "ß" is "SS". The same in every locale; lone
/// surrogates match themselves.
bool IsSameName(std::u16string_view first, std::u16string_view second);

}  // namespace rk::platform
