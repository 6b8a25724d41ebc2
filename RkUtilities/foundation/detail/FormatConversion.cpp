#include "RkUtilities/foundation/detail/FormatConversion.h"

#include "RkUtilities/foundation/FormatError.h"
#include "RkUtilities/foundation/detail/FormatArgument.h"

#include <algorithm>
#include <string>

namespace rk {

namespace {

using Length = FormatConversion::Length;

bool IsDigit(char16_t unit)
{
    return unit >= u'0' && unit <= u'9';
}

bool TakeIf(std::u16string_view& format, char16_t unit)
{
    if (format.empty() || format.front() != unit)
        return false;
    format.remove_prefix(1);
    return true;
}

int TakeNumber(std::u16string_view& format)
{
    int number = 0;
    while (!format.empty() && IsDigit(format.front())) {
        number = number * 10 + (format.front() - u'0');
        if (number > kMostFormatUnits)
            throw FormatError("a width, a precision or a position is too large");
        format.remove_prefix(1);
    }
    return number;
}

/// "3$" and the like; without one nothing is taken.
ArgumentPlace TakePlace(std::u16string_view& format)
{
    std::u16string_view rest = format;
    if (rest.empty() || !IsDigit(rest.front()))
        return {};
    const int position = TakeNumber(rest);
    if (!TakeIf(rest, u'$'))
        return {};
    if (position == 0)
        throw FormatError("positions count from 1");
    format = rest;
    return static_cast<std::size_t>(position - 1);
}

void TakeFlags(std::u16string_view& format, FormatConversion& conversion)
{
    for (;;) {
        if (TakeIf(format, u'-'))
            conversion.leftAligned = true;
        else if (TakeIf(format, u'+'))
            conversion.plusSign = true;
        else if (TakeIf(format, u' '))
            conversion.blankSign = true;
        else if (TakeIf(format, u'#'))
            conversion.alternative = true;
        else if (TakeIf(format, u'0'))
            conversion.zeroPadded = true;
        else
            return;
    }
}

FormatCount TakeCount(std::u16string_view& format)
{
    FormatCount count;
    if (TakeIf(format, u'*')) {
        count.source = FormatCount::Source::Argument;
        count.place = TakePlace(format);
    } else if (!format.empty() && IsDigit(format.front())) {
        count.source = FormatCount::Source::Number;
        count.number = TakeNumber(format);
    }
    return count;
}

/// All that may stand between "%" and the length.
void TakeLayout(std::u16string_view& format, FormatConversion& conversion)
{
    conversion.place = TakePlace(format);
    TakeFlags(format, conversion);
    conversion.width = TakeCount(format);
    if (TakeIf(format, u'.')) {
        conversion.precision = TakeCount(format);
        if (conversion.precision.source == FormatCount::Source::Absent)
            conversion.precision.source = FormatCount::Source::Number;  // "." alone is 0
    }
}

Length TakeLength(std::u16string_view& format)
{
    if (TakeIf(format, u'h'))
        return TakeIf(format, u'h') ? Length::Char : Length::Short;
    if (TakeIf(format, u'l'))
        return TakeIf(format, u'l') ? Length::LongLong : Length::Long;
    if (TakeIf(format, u'j'))
        return Length::Max;
    if (TakeIf(format, u'z'))
        return Length::Size;
    if (TakeIf(format, u't'))
        return Length::Difference;
    return TakeIf(format, u'L') ? Length::LongDouble : Length::None;
}

/// Whether C gives the pair of length and type a meaning that 8-bit arguments can have.
bool IsKnown(Length length, char type)
{
    switch (type) {
    case 'd':
    case 'u':
    case 'o':
    case 'x':
    case 'X':
        return length != Length::LongDouble;
    case 'f':
    case 'F':
    case 'e':
    case 'E':
    case 'g':
    case 'G':
    case 'a':
    case 'A':
        return length == Length::None || length == Length::Long || length == Length::LongDouble;
    case 'c':
        return length == Length::None || length == Length::Long;
    case 's':
    case 'p':
    case '%':
        return length == Length::None;
    default:
        return false;
    }
}

}  // namespace

FormatConversion TakeConversion(std::u16string_view& format)
{
    format.remove_prefix(1);  // the "%"
    FormatConversion conversion;
    conversion.isPlain = !format.empty() && format.front() >= u'A';  // what comes before a letter is no letter
    if (!conversion.isPlain)
        TakeLayout(format, conversion);
    conversion.length = TakeLength(format);
    if (format.empty())
        throw FormatError("the format ends inside a conversion");
    const char16_t type = format.front();
    format.remove_prefix(1);
    conversion.type = type == u'i' ? 'd' : static_cast<char>(type < 0x80 ? type : u'?');
    if (!IsKnown(conversion.length, conversion.type))
        throw FormatError("the format holds an unknown conversion");
    return conversion;
}

void PlacementRule::CheckParts(const FormatConversion& conversion)
{
    if (conversion.width.source == FormatCount::Source::Argument)
        Note(conversion.width.place);
    if (conversion.precision.source == FormatCount::Source::Argument)
        Note(conversion.precision.place);
    if (conversion.type != '%')
        Note(conversion.place);
}

void PlacementRule::Note(const ArgumentPlace& place)
{
    if (m_positional.value_or(place.has_value()) != place.has_value())
        throw FormatError("the format mixes positions with plain conversions");
    m_positional = place.has_value();
}

}  // namespace rk
