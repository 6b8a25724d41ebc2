#include "mindmap/read/Figure.h"

#include <RkUtilities/numbers/CrkLocaleUtilities.h>
#include <RkUtilities/numbers/CrkStringConversionUtilities.h>

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <string>
#include <string_view>

namespace mindmap {

namespace {

using Conversion = CrkStringConversionUtilities;

constexpr std::u16string_view kDigits = u"0123456789";
constexpr std::u16string_view kGroupMarks = u" '.,";
constexpr std::u16string_view kPercent = u"%";
constexpr std::size_t kMaximumDigitCount = 13;
constexpr std::size_t kMaximumDecimalCount = 4;
static_assert(Figure::kScale == 10'000, "4 decimals");

struct UnitName {
    std::u16string_view written;
    std::u16string_view unit;
};
constexpr UnitName kUnitNames[] = {
    {u"EUR", u"€"}, {u"USD", u"$"}, {u"GBP", u"£"}, {u"JPY", u"¥"}, {u"RUB", u"₽"},
    {u"kr", u"kr"}, {u"zł", u"zł"}, {u"Kč", u"Kč"}, {u"Ft", u"Ft"}, {u"%", kPercent},
};

/// Currencies without minor units (ISO 4217). All others have hundredths.
constexpr std::u16string_view kWholeUnits[] = {u"¥", u"₩", u"₫", u"CLP", u"ISK", u"KRW", u"VND"};

bool IsAllOf(std::u16string_view text, std::u16string_view set) {
    return text.find_first_not_of(set) == std::u16string_view::npos;
}

bool IsCapital(char16_t c) { return c >= u'A' && c <= u'Z'; }

bool IsCurrencySign(char16_t c) {
    return (c >= 0x20A0 && c <= 0x20CF) || CString(Conversion::CurrencySymbols).View().find(c) != std::u16string::npos;
}

/// The unit that a text names, or nothing.
std::optional<CString> UnitOf(std::u16string_view written) {
    for (const UnitName& name : kUnitNames)
        if (written == name.written)
            return name.unit;
    if (written.size() > 3)
        return std::nullopt;
    const auto signCount = std::count_if(written.begin(), written.end(), IsCurrencySign);
    const auto capitalCount = std::count_if(written.begin(), written.end(), IsCapital);
    const bool isSign = signCount == 1 && capitalCount == std::ssize(written) - 1;
    return isSign || capitalCount == 3 ? std::optional<CString>(written) : std::nullopt;
}

/// The digits of "1 284 000"; nothing when the groups are no groups of three.
std::optional<std::u16string> Ungrouped(std::u16string_view number) {
    const std::size_t firstSize = std::min(number.find_first_not_of(kDigits), number.size());
    std::u16string digits(number.substr(0, firstSize));
    const std::u16string allowed = std::u16string(kDigits).append(kGroupMarks);
    if (digits.empty() || !IsAllOf(number, allowed) || (firstSize < number.size() && firstSize > 3))
        return std::nullopt;
    for (std::u16string_view rest = number.substr(firstSize); !rest.empty(); rest.remove_prefix(4)) {
        const std::u16string_view group = rest.substr(1, 3);
        if (rest[0] != number[firstSize] || group.size() < 3 || !IsAllOf(group, kDigits))
            return std::nullopt;
        digits += group;
    }
    return digits;
}

bool IsDecimalPoint(std::u16string_view number, std::size_t mark, bool isAmount) {
    const std::u16string_view before = number.substr(0, mark);
    if (before.find(number[mark]) != std::u16string_view::npos)
        return false;
    const bool looksGrouped =
        number.size() - mark == 4 && before.size() <= 3 && before != u"0" && IsAllOf(before, kDigits);
    return !isAmount || !looksGrouped;
}

bool ReadNumber(std::u16string_view number, Figure& figure) {
    const std::size_t mark = number.find_last_of(u".,");
    const bool hasDecimals =
        mark != std::u16string_view::npos && IsDecimalPoint(number, mark, figure.unit.View() != kPercent);
    const std::u16string_view decimals = hasDecimals ? number.substr(mark + 1) : std::u16string_view();
    std::optional<std::u16string> digits = Ungrouped(number.substr(0, hasDecimals ? mark : number.size()));
    if (!digits || digits->size() > kMaximumDigitCount || decimals.size() > kMaximumDecimalCount ||
        !IsAllOf(decimals, kDigits))
        return false;
    *digits += decimals;
    digits->append(kMaximumDecimalCount - decimals.size(), u'0');
    for (const char16_t digit : *digits)
        figure.value = figure.value * 10 + (digit - u'0');
    return true;
}

/// The text with one kind of minus, blank and apostrophe, without blanks at its ends.
std::u16string Plain(const CString& text) {
    constexpr std::u16string_view kBlanks = u"\u00A0\u2007\u2009\u202F\t";
    std::u16string plain(CString(text).Trim().View());
    for (char16_t& unit : plain) {
        if (kBlanks.find(unit) != std::u16string_view::npos)
            unit = u' ';
        else if (unit == u'\u2212')
            unit = u'-';
        else if (unit == u'’')
            unit = u'\'';
    }
    return plain;
}

/// Takes a sign off one of the ends, and the blanks with it; returns whether it was a minus.
bool TakeSign(CString& prefix) {
    for (const CString& sign : {CString(u"-"), CString(u"+")}) {
        const bool isFirst = prefix.Left(1) == sign;
        if (!isFirst && prefix.Right(1) != sign)
            continue;
        prefix = isFirst ? prefix.Mid(1) : prefix.Left(prefix.GetLength() - 1);
        prefix.Trim();
        return sign == u"-";
    }
    return false;
}

int DecimalCount(const Figure& figure) {
    int count = kMaximumDecimalCount;
    for (std::int64_t value = figure.value; count > 0 && value % 10 == 0; value /= 10)
        --count;
    constexpr int kCents = 2;
    const std::u16string_view unit = figure.unit.View();
    const bool isWhole = std::find(std::begin(kWholeUnits), std::end(kWholeUnits), unit) != std::end(kWholeUnits);
    return unit.empty() || unit == kPercent || isWhole ? count : std::max(count, kCents);
}

CString NumberText(const Figure& figure) {
    const std::int64_t magnitude = std::abs(figure.value);
    CString text = figure.value < 0 ? u"-" : u"";
    text += Conversion::LongToString(magnitude / Figure::kScale);
    text += CrkLocaleUtilities::GetDecimalPoint();
    return text + Conversion::LongToString(Figure::kScale + magnitude % Figure::kScale).Mid(1);
}

/// For each UnitPlace, the negative currency format with the symbol there and a minus in front.
constexpr int kNegativeFormats[] = {1, 5, 9, 8};

}  // namespace

std::optional<Figure> ReadFigure(const CString& text) {
    const std::u16string plain = Plain(text);
    const std::size_t first = plain.find_first_of(kDigits);
    if (first == std::u16string::npos)
        return std::nullopt;
    const std::size_t end = plain.find_last_of(kDigits) + 1;
    CString before = plain.substr(0, first);
    CString behind = plain.substr(end);
    const bool isSpaced = before.Find(u" ") >= 0 || behind.Left(1) == u" ";
    before.Trim();
    behind.Trim();
    const bool isNegative = TakeSign(before);
    if (!before.IsEmpty() && !behind.IsEmpty())
        return std::nullopt;

    Figure figure;
    const CString& written = before.IsEmpty() ? behind : before;
    const std::optional<CString> unit = written.IsEmpty() ? CString() : UnitOf(written);
    if (!unit)
        return std::nullopt;
    figure.unit = *unit;
    figure.place = before.IsEmpty() ? (isSpaced ? UnitPlace::BehindBlank : UnitPlace::Behind)
                                    : (isSpaced ? UnitPlace::BeforeBlank : UnitPlace::Before);
    if (!ReadNumber(std::u16string_view(plain).substr(first, end - first), figure))
        return std::nullopt;
    if (isNegative)
        figure.value = -figure.value;
    return figure;
}

CString ShownFigure(const Figure& figure) {
    const CString number = NumberText(figure);
    const int decimalCount = DecimalCount(figure);
    if (figure.unit.View() == kPercent)
        return Conversion::DoubleStringToFormattedPercentage(number + u"e-2", decimalCount);
    if (figure.unit.IsEmpty())
        return Conversion::DoubleStringToFormattedNumber(number, /*groupThousands=*/true, decimalCount,
                                                         Conversion::MinusSign);
    const UnitPlace place = CrkLocaleUtilities::GetDecimalPoint() == u"," ? UnitPlace::BehindBlank : figure.place;
    return Conversion::DoubleStringToFormattedCurrency(number, figure.unit, decimalCount, static_cast<int>(place),
                                                       kNegativeFormats[static_cast<std::size_t>(place)],
                                                       Conversion::MinusSign);
}

}  // namespace mindmap
