#include "RkUtilities/foundation/detail/FormatConversion.h"

#include "RkUtilities/foundation/FormatError.h"
#include "RkUtilities/platform/locale/Unicode.h"

#include <array>

namespace rk {

namespace {

using platform::IsAsciiDigit;
using Kind = FormatConversion::Kind;
using Length = FormatConversion::Length;

bool TakeIf(std::u16string_view& format, char16_t unit) {
    if (format.empty() || format.front() != unit)
        return false;
    format.remove_prefix(1);
    return true;
}

int TakeNumber(std::u16string_view& format) {
    int number = 0;
    while (!format.empty() && IsAsciiDigit(format.front())) {
        number = number * 10 + (format.front() - u'0');
        if (number > kMostFormatUnits)
            throw FormatError("a width, a precision or a position is too large");
        format.remove_prefix(1);
    }
    return number;
}

/// Takes a position such as "3$"; takes nothing where the format has no position.
ArgumentPlace TakePlace(std::u16string_view& format) {
    std::u16string_view rest = format;
    if (rest.empty() || !IsAsciiDigit(rest.front()))
        return {};
    const int position = TakeNumber(rest);
    if (!TakeIf(rest, u'$'))
        return {};
    if (position == 0)
        throw FormatError("positions count from 1");
    format = rest;
    return static_cast<unsigned>(position - 1);
}

/// Reads a width or a precision if the format has it.
void TakeCount(std::u16string_view& format, FormatCount& count) {
    count.isArgument = TakeIf(format, u'*');
    if (count.isArgument)
        count.place = TakePlace(format);
    else if (!format.empty() && IsAsciiDigit(format.front()))
        count.number = TakeNumber(format);
}

/// Everything that may stand between "%" and the length.
void TakeLayout(std::u16string_view& format, FormatConversion& conversion) {
    conversion.place = TakePlace(format);
    conversion.flags = format.substr(0, format.find_first_not_of(u"-+ #0"));
    format.remove_prefix(conversion.flags.size());
    TakeCount(format, conversion.width);
    if (TakeIf(format, u'.')) {
        conversion.precision.number = 0;  // also of "." alone
        TakeCount(format, conversion.precision);
    }
}

Length TakeLength(std::u16string_view& format) {
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

/// The kinds, indexed by type.
constexpr std::array<Kind, 128> kKinds = [] {
    std::array<Kind, 128> kinds{};
    const auto set = [&](std::string_view types, Kind kind) {
        for (const char type : types)
            kinds[static_cast<unsigned char>(type)] = kind;
    };
    set("duoxX", Kind::Integer);
    set("fFeEgGaA", Kind::Floating);
    set("c", Kind::Character);
    set("s", Kind::Text);
    set("p", Kind::Pointer);
    set("%", Kind::Percent);
    return kinds;
}();

/// Whether the length may stand before the kind: as in C, but without "%ls", whose text is of `wchar_t`.
bool HasMeaning(Length length, Kind kind) {
    if (kind == Kind::Integer)
        return length != Length::LongDouble;
    if (kind == Kind::Floating)
        return length == Length::None || length == Length::Long || length == Length::LongDouble;
    return kind != Kind::Unknown && (length == Length::None || (length == Length::Long && kind == Kind::Character));
}

}  // namespace

FormatConversion TakeConversion(std::u16string_view& format) {
    format.remove_prefix(1);  // the "%"
    FormatConversion conversion;
    if (!format.empty() && format.front() < u'A')  // a conversion that begins with a letter has no layout
        TakeLayout(format, conversion);
    conversion.length = TakeLength(format);
    if (format.empty())
        throw FormatError("the format ends inside a conversion");
    const char16_t type = format.front();
    format.remove_prefix(1);
    conversion.type = type == u'i' ? 'd' : static_cast<char>(type < 0x80 ? type : u'?');
    conversion.kind = kKinds[static_cast<unsigned char>(conversion.type)];
    if (!HasMeaning(conversion.length, conversion.kind))
        throw FormatError("the format holds an unknown conversion");
    return conversion;
}

}  // namespace rk
