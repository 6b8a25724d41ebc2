#include "RkUtilities/foundation/detail/FormatRenderer.h"

#include "RkUtilities/foundation/FormatError.h"
#include "RkUtilities/foundation/detail/FormatConversion.h"
#include "RkUtilities/foundation/detail/TextBuilder.h"
#include "RkUtilities/platform/locale/CFormat.h"
#include "RkUtilities/platform/locale/Utf.h"

#include <algorithm>
#include <charconv>
#include <climits>
#include <cstdint>
#include <cstring>
#include <string>

namespace rk {

namespace {

using Kind = FormatArgument::Kind;
using Length = FormatConversion::Length;

/// The arguments, walked in order or asked for by position.
class ArgumentList {
public:
    explicit ArgumentList(std::span<const FormatArgument> arguments) : m_arguments(arguments) {}

    const FormatArgument& At(const ArgumentPlace& place)
    {
        const std::size_t index = place ? *place : m_next++;
        if (index >= m_arguments.size())
            throw FormatError("the format names an argument that is not there");
        return m_arguments[index];
    }

private:
    std::span<const FormatArgument> m_arguments;
    std::size_t m_next = 0;
};

/// What a conversion asks for once its "*" are read.
struct Layout {
    int width = 0;
    int precision = -1;  // none
    bool leftAligned = false;
};

bool IsInteger(const FormatArgument& argument)
{
    return argument.GetKind() == Kind::Signed || argument.GetKind() == Kind::Unsigned;
}

int ReadCount(const FormatCount& count, ArgumentList& arguments, int absent)
{
    if (count.source != FormatCount::Source::Argument)
        return count.source == FormatCount::Source::Absent ? absent : count.number;
    const FormatArgument& argument = arguments.At(count.place);
    const auto value = static_cast<long long>(argument.Integer());
    if (!IsInteger(argument) || value < -kMostFormatUnits || value > kMostFormatUnits)
        throw FormatError("a width or precision argument is no integer in range");
    return static_cast<int>(value);
}

Layout ReadLayout(const FormatConversion& conversion, ArgumentList& arguments)
{
    Layout layout;
    if (conversion.isPlain)
        return layout;
    const int width = ReadCount(conversion.width, arguments, 0);
    layout.width = std::abs(width);
    layout.leftAligned = conversion.leftAligned || width < 0;  // C: a negative width is the flag "-"
    layout.precision = ReadCount(conversion.precision, arguments, -1);
    return layout;
}

/// Appends what `append` appends, `shownUnits` wide by C's count, padded with blanks to the width.
template <class Append>
void Pad(TextBuilder& output, const Layout& layout, std::size_t shownUnits, const Append& append)
{
    const auto width = static_cast<std::size_t>(layout.width);
    const std::size_t blanks = width > shownUnits ? width - shownUnits : 0;
    if (!layout.leftAligned)
        output.Append(blanks, u' ');
    append();
    if (layout.leftAligned)
        output.Append(blanks, u' ');
}

void AppendPadded(TextBuilder& output, const Layout& layout, std::string_view ascii)
{
    Pad(output, layout, ascii.size(), [&] { output.AppendAscii(ascii); });
}

// --- Integers

unsigned BitsOf(Length length)
{
    switch (length) {
    case Length::Char:
        return CHAR_BIT;
    case Length::Short:
        return CHAR_BIT * sizeof(short);
    case Length::None:
        return CHAR_BIT * sizeof(int);
    default:
        return 64;
    }
}

struct Integer {
    bool negative = false;
    unsigned long long magnitude = 0;
};

/// Whether the value survives in 32 bits, signed or not.
bool FitsInt(const FormatArgument& argument, bool asSigned)
{
    const unsigned long long bits = argument.Integer();
    if (argument.GetKind() == Kind::Signed && static_cast<long long>(bits) < 0)
        return asSigned && static_cast<long long>(bits) >= INT_MIN;
    return bits <= (asSigned ? static_cast<unsigned long long>(INT_MAX) : UINT_MAX);
}

Integer ReadInteger(const FormatConversion& conversion, const FormatArgument& argument)
{
    if (!IsInteger(argument))
        throw FormatError("an integer conversion has an argument that is none");
    const bool asSigned = conversion.type == 'd';
    const unsigned bitCount = BitsOf(conversion.length);
    if (bitCount < 64 && argument.ByteCount() > sizeof(int) && !FitsInt(argument, asSigned))
        throw FormatError("an integer does not fit its conversion");
    const unsigned unused = 64 - bitCount;
    const unsigned long long shifted = argument.Integer() << unused;
    if (!asSigned)
        return {false, shifted >> unused};
    const long long value = static_cast<long long>(shifted) >> unused;
    return {value < 0, value < 0 ? 0 - static_cast<unsigned long long>(value) : static_cast<unsigned long long>(value)};
}

std::string_view SignOf(const FormatConversion& conversion, const Integer& integer)
{
    if (conversion.type != 'd')
        return "";
    if (integer.negative)
        return "-";
    if (conversion.plusSign)
        return "+";
    return conversion.blankSign ? " " : "";
}

std::string_view PrefixOf(const FormatConversion& conversion, const Integer& integer)
{
    if (!conversion.alternative || integer.magnitude == 0)
        return "";
    if (conversion.type == 'x')
        return "0x";
    return conversion.type == 'X' ? "0X" : "";
}

void AppendInteger(TextBuilder& output, const FormatConversion& conversion, Layout layout, const Integer& integer)
{
    char digits[CHAR_BIT * sizeof integer.magnitude];
    const int base = conversion.type == 'o' ? 8 : (conversion.type == 'x' || conversion.type == 'X') ? 16 : 10;
    char* end = std::to_chars(std::begin(digits), std::end(digits), integer.magnitude, base).ptr;
    if (integer.magnitude == 0 && layout.precision == 0)
        end = digits;
    if (conversion.type == 'X')
        std::transform(digits, end, digits, [](char c) { return c >= 'a' ? static_cast<char>(c - 'a' + 'A') : c; });
    const std::string_view shown(digits, static_cast<std::size_t>(end - digits));
    const std::string_view sign = SignOf(conversion, integer);
    const std::string_view prefix = PrefixOf(conversion, integer);
    std::size_t least = layout.precision < 0 ? 1 : static_cast<std::size_t>(layout.precision);
    if (conversion.alternative && base == 8 && (shown.empty() || shown.front() != '0'))
        least = std::max(least, shown.size() + 1);
    if (conversion.zeroPadded && !layout.leftAligned && layout.precision < 0) {
        const auto width = static_cast<std::size_t>(layout.width);
        least = std::max(least, width - std::min(width, sign.size() + prefix.size()));
    }
    const std::size_t zeros = least > shown.size() ? least - shown.size() : 0;
    Pad(output, layout, sign.size() + prefix.size() + zeros + shown.size(), [&] {
        output.AppendAscii(sign);
        output.AppendAscii(prefix);
        output.Append(zeros, u'0');
        output.AppendAscii(shown);
    });
}

/// The same for a decimal number that is asked for as it is.
void AppendDecimal(TextBuilder& output, const Integer& integer)
{
    char characters[24] = {'-'};
    char* const digits = characters + 1;
    const char* const end = std::to_chars(digits, std::end(characters), integer.magnitude).ptr;
    const char* const first = integer.negative ? characters : digits;
    output.AppendAscii({first, static_cast<std::size_t>(end - first)});
}

// --- Floating-point numbers

void AppendFloating(TextBuilder& output, const FormatConversion& conversion, const Layout& layout,
                    const FormatArgument& argument)
{
    const bool wide = conversion.length == Length::LongDouble;
    if (argument.GetKind() != Kind::Floating && !(wide && argument.GetKind() == Kind::LongFloating))
        throw FormatError("a floating-point conversion has an argument of another kind");
    std::string plain = "%";
    const std::pair<bool, char> flags[] = {{layout.leftAligned, '-'},
                                           {conversion.plusSign, '+'},
                                           {conversion.blankSign, ' '},
                                           {conversion.alternative, '#'},
                                           {conversion.zeroPadded, '0'}};
    for (const auto& [set, flag] : flags) {
        if (set)
            plain += flag;
    }
    plain += wide ? "*.*L" : "*.*";
    plain += conversion.type;
    if (!wide)
        output.AppendAscii(platform::FormatNumber(plain, layout.width, layout.precision, argument.Floating()));
    else if (argument.GetKind() == Kind::LongFloating)
        output.AppendAscii(platform::FormatNumber(plain, layout.width, layout.precision, argument.LongFloating()));
    else
        output.AppendAscii(platform::FormatNumber(plain, layout.width, layout.precision,
                                                  static_cast<long double>(argument.Floating())));
}

// --- Texts, characters, pointers

/// The bytes without a character that the cut left unfinished at their end.
std::string_view WithoutCutCharacter(std::string_view bytes)
{
    const auto byteAt = [&](std::size_t i) { return static_cast<unsigned char>(bytes[i]); };
    std::size_t lead = bytes.size();
    while (lead > 0 && bytes.size() - lead < 3 && (byteAt(lead - 1) & 0xC0U) == 0x80U)
        --lead;
    if (lead == 0 || byteAt(lead - 1) < 0xC0)
        return bytes;
    const unsigned first = byteAt(lead - 1);
    const std::size_t length = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
    const std::size_t there = bytes.size() - (lead - 1);
    return there < length ? bytes.substr(0, lead - 1) : bytes;
}

/// The bytes of a text argument, no more than `most` of them looked at.
std::string_view TextOf(const FormatArgument& argument, std::size_t most)
{
    if (argument.GetKind() == Kind::SizedText)
        return std::string_view(argument.Text(), argument.ByteCount()).substr(0, most);
    if (argument.GetKind() != Kind::Text)
        throw FormatError("\"%s\" has an argument that is no text");
    const char* const utf8 = argument.Text() != nullptr ? argument.Text() : "(null)";
    return {utf8, most == std::string_view::npos ? std::strlen(utf8) : strnlen(utf8, most)};
}

void AppendUnits(TextBuilder& output, const Layout& layout, std::u16string_view units)
{
    if (layout.precision >= 0 && units.size() > static_cast<std::size_t>(layout.precision)) {
        units = units.substr(0, static_cast<std::size_t>(layout.precision));
        if (!units.empty() && platform::IsHighSurrogate(units.back()))
            units.remove_suffix(1);
    }
    Pad(output, layout, units.size(), [&] { output.Append(units); });
}

void AppendText(TextBuilder& output, const Layout& layout, const FormatArgument& argument)
{
    if (argument.GetKind() == Kind::Utf16Text)
        return AppendUnits(output, layout, argument.Units());
    if (layout.precision < 0 && layout.width == 0)  // the commonest one
        return output.AppendUtf8(TextOf(argument, std::string_view::npos));
    const std::size_t most = layout.precision < 0 ? std::string_view::npos : static_cast<std::size_t>(layout.precision);
    std::string_view bytes = TextOf(argument, most);
    if (bytes.size() == most)
        bytes = WithoutCutCharacter(bytes);
    Pad(output, layout, bytes.size(), [&] { output.AppendUtf8(bytes); });
}

void AppendCharacter(TextBuilder& output, const FormatConversion& conversion, const Layout& layout,
                     const FormatArgument& argument)
{
    if (!IsInteger(argument))
        throw FormatError("\"%c\" has an argument that is no character");
    auto codePoint = static_cast<long long>(argument.Integer());
    if (codePoint < 0 && codePoint >= SCHAR_MIN)
        codePoint = 0xFFFD;  // a byte of UTF-8 that is no character by itself
    const long long most = conversion.length == Length::Long ? 0x10FFFF : 0xFFFF;
    if (codePoint < 0 || codePoint > most)
        throw FormatError("\"%c\" has an argument that is no character");
    char16_t units[2];
    const char16_t* const end = platform::WriteUtf16(static_cast<char32_t>(codePoint), units);
    Pad(output, layout, 1, [&] { output.Append({units, end}); });
}

void AppendPointer(TextBuilder& output, const Layout& layout, const FormatArgument& argument)
{
    const void* pointer = argument.GetKind() == Kind::Text ? argument.Text() : argument.Pointer();
    if (argument.GetKind() != Kind::Text && argument.GetKind() != Kind::Pointer)
        throw FormatError("\"%p\" has an argument that is no pointer");
    if (pointer == nullptr)
        return AppendPadded(output, layout, "(nil)");
    char digits[2 + 2 * sizeof pointer] = {'0', 'x'};
    char* const end = std::to_chars(digits + 2, std::end(digits), reinterpret_cast<std::uintptr_t>(pointer), 16).ptr;
    AppendPadded(output, layout, {digits, static_cast<std::size_t>(end - digits)});
}

void AppendArgument(TextBuilder& output, const FormatConversion& conversion, const Layout& layout,
                    const FormatArgument& argument)
{
    switch (conversion.type) {
    case 's':
        return AppendText(output, layout, argument);
    case 'c':
        return AppendCharacter(output, conversion, layout, argument);
    case 'p':
        return AppendPointer(output, layout, argument);
    case 'd':
    case 'u':
        if (conversion.isPlain)
            return AppendDecimal(output, ReadInteger(conversion, argument));
        [[fallthrough]];
    case 'o':
    case 'x':
    case 'X':
        return AppendInteger(output, conversion, layout, ReadInteger(conversion, argument));
    default:
        return AppendFloating(output, conversion, layout, argument);
    }
}

/// Hands the literal parts and the conversions of a format to one of two functions each.
template <class OnText, class OnConversion>
void Walk(std::u16string_view format, const OnText& onText, const OnConversion& onConversion)
{
    PlacementRule rule;
    while (!format.empty()) {
        if (format.front() != u'%') {
            const std::u16string_view literal = format.substr(0, format.find(u'%'));
            onText(literal);
            format.remove_prefix(literal.size());
            continue;
        }
        const FormatConversion conversion = TakeConversion(format);
        rule.Check(conversion);
        onConversion(conversion);
    }
}

// --- C's argument lists

/// The C types that conversions take.
enum class CType { Int, Long, Double, LongDouble, Text, Pointer };

CType TypeOf(const FormatConversion& conversion)
{
    switch (conversion.type) {
    case 's':
        return CType::Text;
    case 'p':
        return CType::Pointer;
    case 'c':
        return CType::Int;
    case 'd':
    case 'u':
    case 'o':
    case 'x':
    case 'X':
        return BitsOf(conversion.length) == 64 ? CType::Long : CType::Int;
    default:
        return conversion.length == Length::LongDouble ? CType::LongDouble : CType::Double;
    }
}

/// The types of the arguments in the order of the list, as the format tells them.
class TypeList {
public:
    void Add(const FormatConversion& conversion)
    {
        if (conversion.width.source == FormatCount::Source::Argument)
            Add(conversion.width.place, CType::Int);
        if (conversion.precision.source == FormatCount::Source::Argument)
            Add(conversion.precision.place, CType::Int);
        if (conversion.type != '%')
            Add(conversion.place, TypeOf(conversion));
    }
    [[nodiscard]] const std::vector<std::optional<CType>>& Types() const noexcept { return m_types; }

private:
    static constexpr std::size_t kMostArguments = 4096;  // C promises 127 to a call

    void Add(const ArgumentPlace& place, CType type)
    {
        const std::size_t index = place.value_or(m_types.size());
        if (index >= kMostArguments)
            throw FormatError("the format names too many arguments");
        m_types.resize(std::max(m_types.size(), index + 1));
        if (m_types[index].value_or(type) != type)
            throw FormatError("the format takes one argument as two kinds");
        m_types[index] = type;
    }

    std::vector<std::optional<CType>> m_types;
};

}  // namespace

void RenderFormat(std::u16string_view format, std::span<const FormatArgument> arguments, TextBuilder& output)
{
    ArgumentList list(arguments);
    Walk(
        format, [&](std::u16string_view literal) { output.Append(literal); },
        [&](const FormatConversion& conversion) {
            const Layout layout = ReadLayout(conversion, list);
            if (conversion.type == '%')
                output.Append(u'%');
            else
                AppendArgument(output, conversion, layout, list.At(conversion.place));
        });
}

std::vector<FormatArgument> CollectArguments(std::u16string_view format, std::va_list list)
{
    TypeList types;
    Walk(format, [](std::u16string_view) {}, [&](const FormatConversion& conversion) { types.Add(conversion); });
    std::vector<FormatArgument> arguments;
    arguments.reserve(types.Types().size());
    for (const std::optional<CType>& type : types.Types()) {
        if (!type)
            throw FormatError("the format leaves out a position, so that its kind cannot be told");
        switch (*type) {
        case CType::Int:
            arguments.emplace_back(va_arg(list, int));
            break;
        case CType::Long:
            arguments.emplace_back(va_arg(list, long long));
            break;
        case CType::Double:
            arguments.emplace_back(va_arg(list, double));
            break;
        case CType::LongDouble:
            arguments.emplace_back(va_arg(list, long double));
            break;
        case CType::Text:
            arguments.emplace_back(static_cast<const char*>(va_arg(list, char*)));
            break;
        case CType::Pointer:
            arguments.emplace_back(static_cast<const void*>(va_arg(list, void*)));
            break;
        }
    }
    return arguments;
}

}  // namespace rk
