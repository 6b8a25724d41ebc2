#pragma once

#include <string_view>

namespace rk {

/// The decimal number at the front of a text: an optional sign, digits with an optional ".", and an optional exponent, as far as they
/// form a number; 0 when there is none. Correctly rounded in linear time; infinite beyond `double`, 0 below it.
double DecimalAtFront(std::u16string_view text);

/// The value of a whole ASCII text of that form.
double DecimalValue(std::string_view number);

}  // namespace rk
