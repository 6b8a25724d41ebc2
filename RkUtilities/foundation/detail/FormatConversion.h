#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

namespace rk {

/// Where a width, a precision or a value comes from: the next argument, or the argument at a position from 0.
using ArgumentPlace = std::optional<unsigned>;

/// A width or a precision: a number, or an argument ("*").
struct FormatCount {
    int number = 0;
    bool isArgument = false;
    ArgumentPlace place;
};

/// One conversion of a format, taken apart.
struct FormatConversion {
    enum class Length : unsigned char { None, Char, Short, Long, LongLong, Max, Size, Difference, LongDouble };
    enum class Kind : unsigned char { Unknown, Integer, Floating, Character, Text, Pointer, Percent };

    std::u16string_view flags;  // of "-+ #0", in any order and number
    FormatCount width;
    FormatCount precision{.number = -1, .place = {}};  // -1: no precision
    Length length = Length::None;
    char type = '\0';  // d u o x X (i reads as d), c s p, f F e E g G a A, %
    Kind kind = Kind::Unknown;
    ArgumentPlace place;
};

/// Most units that a width or a precision may ask for: a format beyond is taken for a damaged one.
constexpr int kMostFormatUnits = 1 << 20;

/// Reads the conversion that begins with the "%" at the front of `format` and takes it off. Throws `FormatError`.
FormatConversion TakeConversion(std::u16string_view& format);

}  // namespace rk
