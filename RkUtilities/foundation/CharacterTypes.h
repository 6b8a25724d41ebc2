#pragma once

#include "RkUtilities/RkExport.h"
#include "RkUtilities/foundation/TextView.h"

/// The number at the start of a UTF-16 text: blanks (Unicode White_Space), an optional "+" or "-", decimal digits 0 to
/// 9. What follows the digits is ignored; 0 when there are no digits or the text is null. Numbers beyond `int` give
/// INT_MAX or INT_MIN.
RK_EXPORT int _ttoi(rk::TextView text);

/// Whether the code unit is a letter or a digit: Unicode's categories L* and Nd, as ICU knows them. False for "_",
/// punctuation, marks and surrogates: half of a character outside the Basic Multilingual Plane is no letter.
RK_EXPORT bool IsCharAlphaNumeric(unsigned short unit);
