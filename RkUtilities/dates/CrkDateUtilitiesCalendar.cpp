#include "RkUtilities/dates/CrkDateUtilities.h"
#include "RkUtilities/numbers/CrkStringConversionUtilities.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>

namespace {

constexpr std::size_t kDaysAWeek = 7;
constexpr char16_t kSeparator = u';';
constexpr char16_t kDayOff = u'0';
constexpr char16_t kWorkingDay = u'1';

/// The number as C's "%f" prints it in the "C" locale.
void AppendDate(std::u16string& text, double date) {
    if (std::isnan(date)) {  // the standard libraries differ in the words for a NaN
        text += std::signbit(date) ? u"-nan" : u"nan";
        return;
    }
    constexpr int kDecimals = 6;
    // Digits before and behind the point, the point and a sign.
    std::array<char, std::numeric_limits<double>::max_exponent10 + 1 + kDecimals + 2> digits;
    const auto end = std::to_chars(digits.begin(), digits.end(), date, std::chars_format::fixed, kDecimals).ptr;
    text.append(digits.begin(), end);
}

/// Takes the next piece that is not empty off the front; "" without such a piece.
std::u16string_view TakePiece(std::u16string_view& text) {
    text.remove_prefix(std::min(text.find_first_not_of(kSeparator), text.size()));
    const std::u16string_view piece = text.substr(0, text.find(kSeparator));
    text.remove_prefix(piece.size());
    return piece;
}

}  // namespace

CString CrkDateUtilities::CreatePtmCalendarString(const CAtlArray<bool>& workingDays,
                                                  const CAtlMap<double, bool>& dates) {
    std::u16string text;
    for (std::size_t day = 0; day < kDaysAWeek; ++day)
        text += day < workingDays.GetCount() && workingDays[day] ? kWorkingDay : kDayOff;
    for (const auto& [date, unused] : dates) {
        text += kSeparator;
        AppendDate(text, date);
    }
    return text;
}

void CrkDateUtilities::ParsePtmCalendarString(CString text, CAtlArray<bool>& workingDays,
                                              CAtlMap<double, bool>& dates) {
    if (text.IsEmpty())
        return;
    workingDays.SetCount(kDaysAWeek);
    dates.RemoveAll();
    std::u16string_view rest = text;
    const std::u16string_view flags = TakePiece(rest);
    if (flags.empty())
        return;
    for (std::size_t day = 0; day < kDaysAWeek; ++day)
        workingDays[day] = day < flags.size() && flags[day] != kDayOff;
    for (std::u16string_view piece = TakePiece(rest); !piece.empty(); piece = TakePiece(rest)) {
        double date = 0;
        if (CrkStringConversionUtilities::StringToDouble(piece, date))
            dates.SetAt(std::floor(date), true);
    }
}

CString CrkDateUtilities::DefaultWorkweekString() { return u"0111110"; }
