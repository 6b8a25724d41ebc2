#include "RkUtilities/foundation/detail/FormatRenderer.h"

#include "RkUtilities/foundation/FormatError.h"
#include "RkUtilities/foundation/detail/FormatConversion.h"
#include "RkUtilities/foundation/detail/TextBuilder.h"
#include "RkUtilities/platform/locale/CFormat.h"
#include "RkUtilities/platform/locale/Utf.h"

#include <algorithm>
#include <charconv>
#include <climits>
#include <cstring>
#include <optional>
#include <string>
#include <utility>

namespace rk {

namespace {

using Kind = FormatConversion::Kind;
using Length = FormatConversion::Length;

/// The arguments, walked in order or asked for by position.
class ArgumentList {
public:
    explicit ArgumentList(std::span<const FormatArgument> arguments) : m_arguments(arguments) {}

    const FormatArgument& At(const ArgumentPlace& place) {
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
    int width = 0;       // negative: the text stands at the left, as in C
    int precision = -1;  // negative: no precision
};

/// The bits of an integer argument, sign-extended; nothing for an argument of another kind.
std::optional<unsigned long long> IntegerOf(const FormatArgument& argument) {
    if (const auto* value = argument.As<long long>())
        return static_cast<unsigned long long>(*value);
    const auto* value = argument.As<unsigned long long>();
    return value != nullptr ? std::optional(*value) : std::nullopt;
}

int CountIn(const FormatArgument& argument) {
    const auto value = static_cast<long long>(IntegerOf(argument).value_or(LLONG_MAX));
    if (value < -kMostFormatUnits || value > kMostFormatUnits)
        throw FormatError("a width or precision argument is no integer in range");
    return static_cast<int>(value);
}

int ReadCount(const FormatCount& count, ArgumentList& arguments) {
    return count.isArgument ? CountIn(arguments.At(count.place)) : count.number;
}

Layout ReadLayout(const FormatConversion& conversion, ArgumentList& arguments) {
    const int width = ReadCount(conversion.width, arguments);
    const bool isAtLeft = width > 0 && conversion.flags.find(u'-') != std::u16string_view::npos;
    return {isAtLeft ? -width : width, ReadCount(conversion.precision, arguments)};
}

/// Appends what `append` appends, `shownUnits` wide by C's count, padded with blanks to the width.
template <class Append>
void Pad(TextBuilder& output, const Layout& layout, std::size_t shownUnits, const Append& append) {
    const auto width = static_cast<std::size_t>(std::abs(layout.width));
    const std::size_t blanks = width > shownUnits ? width - shownUnits : 0;
    output.Append(layout.width > 0 ? blanks : 0, u' ');
    append();
    output.Append(layout.width < 0 ? blanks : 0, u' ');
}

// --- Numbers

/// Appends a number as C prints it. `length` is the length of the number's C type.
template <class Number>
void AppendNumber(TextBuilder& output, const FormatConversion& conversion, const Layout& layout, const char* length,
                  Number number) {
    std::string format = "%";
    for (const char16_t flag : conversion.flags)
        format += static_cast<char>(flag);
    format.append("*.*").append(length) += conversion.type;
    output.AppendAscii(platform::FormatNumber(format, layout.width, layout.precision, number));
}

template <class Integer>
void AppendInteger(TextBuilder& output, const FormatConversion& conversion, const Layout& layout, Integer integer) {
    const bool isDecimal = conversion.type == 'd' || conversion.type == 'u';
    if (!isDecimal || !conversion.flags.empty() || layout.width != 0 || layout.precision >= 0)
        return AppendNumber(output, conversion, layout, "ll", integer);
    char digits[20];  // enough for 64 bits; the commonest conversion goes without printf
    output.AppendAscii({digits, std::to_chars(digits, std::end(digits), integer).ptr});
}

unsigned BitsOf(Length length) {
    if (length == Length::Char)
        return CHAR_BIT;
    if (length == Length::Short)
        return CHAR_BIT * sizeof(short);
    return length == Length::None ? CHAR_BIT * sizeof(int) : 64;
}

/// Whether the value survives in 32 bits.
bool FitsInt(const FormatArgument& argument, bool asSigned) {
    const auto fits = [=](auto value) { return asSigned ? std::in_range<int>(value) : std::in_range<unsigned>(value); };
    const auto* const value = argument.As<long long>();
    return value != nullptr ? fits(*value) : fits(*argument.As<unsigned long long>());
}

void AppendInteger(TextBuilder& output, const FormatConversion& conversion, const Layout& layout,
                   const FormatArgument& argument) {
    const auto bits = IntegerOf(argument);
    if (!bits)
        throw FormatError("an integer conversion has an argument of another kind");
    const bool asSigned = conversion.type == 'd';
    const unsigned unused = 64 - BitsOf(conversion.length);
    if (unused != 0 && argument.ByteCount() > sizeof(int) && !FitsInt(argument, asSigned))
        throw FormatError("an integer does not fit its conversion");
    if (asSigned)
        AppendInteger(output, conversion, layout, static_cast<long long>(*bits << unused) >> unused);
    else
        AppendInteger(output, conversion, layout, *bits << unused >> unused);
}

void AppendFloating(TextBuilder& output, const FormatConversion& conversion, const Layout& layout,
                    const FormatArgument& argument) {
    const auto* const number = argument.As<double>();
    const auto* const longNumber = argument.As<long double>();
    const bool isLong = conversion.length == Length::LongDouble;
    if (number == nullptr && (longNumber == nullptr || !isLong))
        throw FormatError("a floating-point conversion has an argument of another kind");
    if (isLong)
        AppendNumber(output, conversion, layout, "L", number != nullptr ? *number : *longNumber);
    else
        AppendNumber(output, conversion, layout, "", *number);
}

// --- Texts, characters, pointers

/// The bytes without a character that the cut left unfinished at their end.
std::string_view WithoutCutCharacter(std::string_view bytes) {
    const auto byteAt = [&](std::size_t i) { return static_cast<unsigned char>(bytes[i]); };
    std::size_t lead = bytes.size();
    while (lead > 0 && bytes.size() - lead < 3 && platform::IsContinuation(byteAt(lead - 1)))
        --lead;
    if (lead == 0 || byteAt(lead - 1) < 0xC0)
        return bytes;
    const unsigned first = byteAt(lead - 1);
    const std::size_t length = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
    const std::size_t there = bytes.size() - (lead - 1);
    return there < length ? bytes.substr(0, lead - 1) : bytes;
}

/// The bytes of a text argument, no more than `most` of them looked at.
std::string_view TextOf(const FormatArgument& argument, std::size_t most) {
    if (const auto* text = argument.As<std::string_view>())
        return text->substr(0, most);
    const auto* const pointer = argument.As<const char*>();
    if (pointer == nullptr)
        throw FormatError("\"%s\" has an argument that is no text");
    const char* const utf8 = *pointer != nullptr ? *pointer : "(null)";
    return {utf8, most == std::string_view::npos ? std::strlen(utf8) : strnlen(utf8, most)};
}

void AppendUnits(TextBuilder& output, const Layout& layout, std::u16string_view units) {
    if (layout.precision >= 0 && units.size() > static_cast<std::size_t>(layout.precision)) {
        units = units.substr(0, static_cast<std::size_t>(layout.precision));
        if (!units.empty() && platform::IsHighSurrogate(units.back()))
            units.remove_suffix(1);
    }
    Pad(output, layout, units.size(), [&] { output.Append(units); });
}

void AppendText(TextBuilder& output, const Layout& layout, const FormatArgument& argument) {
    if (const auto* units = argument.As<std::u16string_view>())
        return AppendUnits(output, layout, *units);
    const std::size_t most = layout.precision < 0 ? std::string_view::npos : static_cast<std::size_t>(layout.precision);
    std::string_view bytes = TextOf(argument, most);
    if (bytes.size() == most)
        bytes = WithoutCutCharacter(bytes);
    Pad(output, layout, bytes.size(), [&] { output.AppendUtf8(bytes); });
}

void AppendCharacter(TextBuilder& output, const FormatConversion& conversion, const Layout& layout,
                     const FormatArgument& argument) {
    auto codePoint = static_cast<long long>(IntegerOf(argument).value_or(LLONG_MAX));
    if (codePoint < 0 && codePoint >= SCHAR_MIN)
        codePoint = platform::kReplacementCharacter;  // a byte of UTF-8 that is no character by itself
    if (codePoint < 0 || codePoint > (conversion.length == Length::Long ? 0x10FFFF : 0xFFFF))
        throw FormatError("\"%c\" has an argument that is no character");
    char16_t units[2];
    const char16_t* const end = platform::WriteUtf16(static_cast<char32_t>(codePoint), units);
    Pad(output, layout, 1, [&] { output.Append({units, end}); });
}

void AppendPointer(TextBuilder& output, const Layout& layout, const FormatArgument& argument) {
    const auto* const text = argument.As<const char*>();
    const auto* const pointer = argument.As<const void*>();
    if (text == nullptr && pointer == nullptr)
        throw FormatError("\"%p\" has an argument that is no pointer");
    const void* const address = text != nullptr ? *text : *pointer;
    output.AppendAscii(platform::FormatNumber("%*.*p", layout.width, -1, address));
}

void AppendArgument(TextBuilder& output, const FormatConversion& conversion, const Layout& layout,
                    const FormatArgument& argument) {
    switch (conversion.kind) {
    case Kind::Integer:
        return AppendInteger(output, conversion, layout, argument);
    case Kind::Text:
        return AppendText(output, layout, argument);
    case Kind::Character:
        return AppendCharacter(output, conversion, layout, argument);
    case Kind::Pointer:
        return AppendPointer(output, layout, argument);
    default:
        return AppendFloating(output, conversion, layout, argument);
    }
}

// --- The arguments of a format

/// Takes an argument of one C type from C's list.
using TakeArgument = FormatArgument (*)(std::va_list& list);

template <class T> FormatArgument Take(std::va_list& list) { return FormatArgument(va_arg(list, T)); }

/// How the argument that the conversion takes is taken.
TakeArgument TakeFor(const FormatConversion& conversion) {
    switch (conversion.kind) {
    case Kind::Integer:
        return BitsOf(conversion.length) == 64 ? &Take<long long> : &Take<int>;
    case Kind::Text:
        return &Take<const char*>;
    case Kind::Character:
        return &Take<int>;
    case Kind::Pointer:
        return &Take<const void*>;
    default:
        return conversion.length == Length::LongDouble ? &Take<long double> : &Take<double>;
    }
}

/// Calls `use` with the place of each argument that a conversion takes, in the order of C's lists.
template <class Use> void ForEachPlace(const FormatConversion& conversion, const Use& use) {
    if (conversion.width.isArgument)
        use(conversion.width.place, &Take<int>);
    if (conversion.precision.isArgument)
        use(conversion.precision.place, &Take<int>);
    if (conversion.kind != Kind::Percent)
        use(conversion.place, TakeFor(conversion));
}

/// Hands each literal part of a format to `onText` and each conversion to `onConversion`. Throws `FormatError` when
/// some conversions name their arguments by position and others do not.
template <class OnText, class OnConversion>
void Walk(std::u16string_view format, const OnText& onText, const OnConversion& onConversion) {
    std::optional<bool> hasPositions;
    while (!format.empty()) {
        if (format.front() != u'%') {
            const std::u16string_view literal = format.substr(0, format.find(u'%'));
            onText(literal);
            format.remove_prefix(literal.size());
            continue;
        }
        const FormatConversion conversion = TakeConversion(format);
        ForEachPlace(conversion, [&](const ArgumentPlace& place, TakeArgument) {
            if (hasPositions.value_or(place.has_value()) != place.has_value())
                throw FormatError("the format mixes positions with plain conversions");
            hasPositions = place.has_value();
        });
        onConversion(conversion);
    }
}

/// How the arguments are taken, in the order of C's list, as the format tells; null for a position that it leaves out.
std::vector<TakeArgument> ListedArguments(std::u16string_view format) {
    constexpr std::size_t kMostArguments = 4096;  // C promises 127 to a call
    std::vector<TakeArgument> list;
    const auto note = [&](const ArgumentPlace& place, TakeArgument take) {
        const std::size_t index = place.value_or(list.size());
        if (index >= kMostArguments)
            throw FormatError("the format names too many arguments");
        list.resize(std::max(list.size(), index + 1));
        if (list[index] != nullptr && list[index] != take)
            throw FormatError("the format takes one argument as two kinds");
        list[index] = take;
    };
    Walk(
        format, [](std::u16string_view) {},
        [&](const FormatConversion& conversion) { ForEachPlace(conversion, note); });
    return list;
}

}  // namespace

void RenderFormat(std::u16string_view format, std::span<const FormatArgument> arguments, TextBuilder& output) {
    ArgumentList list(arguments);
    Walk(
        format, [&](std::u16string_view literal) { output.Append(literal); },
        [&](const FormatConversion& conversion) {
            const Layout layout = ReadLayout(conversion, list);
            if (conversion.kind == Kind::Percent)
                output.Append(u'%');
            else
                AppendArgument(output, conversion, layout, list.At(conversion.place));
        });
}

std::vector<FormatArgument> CollectArguments(std::u16string_view format, std::va_list list) {
    const std::vector<TakeArgument> taking = ListedArguments(format);
    if (std::ranges::count(taking, nullptr) > 0)
        throw FormatError("the format leaves out a position, so that its kind cannot be told");
    std::vector<FormatArgument> arguments;
    arguments.reserve(taking.size());
    std::va_list rest;  // the parameter is a pointer on some processors
    va_copy(rest, list);
    for (const TakeArgument take : taking)
        arguments.push_back(take(rest));
    va_end(rest);
    return arguments;
}

}  // namespace rk
