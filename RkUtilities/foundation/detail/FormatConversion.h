#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

namespace rk {

/// Where a width, a precision or a value comes from: the next argument, or the one at a position from 0.
using ArgumentPlace = std::optional<std::size_t>;

/// A width or a precision: absent, a number, or an argument ("*").
struct FormatCount {
    enum class Source { Absent, Number, Argument };
    Source source = Source::Absent;
    int number = 0;
    ArgumentPlace place;
};

/// One conversion of a format, taken apart.
struct FormatConversion {
    enum class Length { None, Char, Short, Long, LongLong, Max, Size, Difference, LongDouble };

    bool isPlain = false;  // nothing stands between "%" and the length
    bool leftAligned = false;
    bool plusSign = false;
    bool blankSign = false;
    bool alternative = false;
    bool zeroPadded = false;
    FormatCount width;
    FormatCount precision;
    Length length = Length::None;
    char type = '\0';  // d u o x X (i reads as d), c s p, f F e E g G a A, %
    ArgumentPlace place;
};

/// Most units that a width or a precision may ask for: a format beyond is taken for a damaged one.
constexpr int kMostFormatUnits = 1 << 20;

/// Reads the conversion that begins with the "%" at the front of `format` and takes it off. Throws `FormatError`.
FormatConversion TakeConversion(std::u16string_view& format);

/// Whether conversions name their arguments by position; a format may not do both. Throws `FormatError`.
class PlacementRule {
public:
    void Check(const FormatConversion& conversion)
    {
        if (conversion.isPlain)
            Note(std::nullopt);
        else
            CheckParts(conversion);
    }

private:
    void CheckParts(const FormatConversion& conversion);
    void Note(const ArgumentPlace& place);

    std::optional<bool> m_positional;
};

}  // namespace rk
