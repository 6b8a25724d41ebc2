#include "mindmap/measure/Dates.h"

#include <RkUtilities/dates/CrkDateUtilities.h>
#include <RkUtilities/foundation/CharacterTypes.h>
#include <RkUtilities/numbers/CrkLocaleUtilities.h>
#include <RkUtilities/strings/CrkStringUtilities.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <string_view>
#include <vector>

namespace mindmap {

namespace {

constexpr std::size_t kMaximumUnits = 1000;  // a longer text is no date, and takes long to read as dates
constexpr std::size_t kDateUnits = 10;       // "2027-06-01"
/// The years of dates: the weeks at both ends lie in years that the library knows.
constexpr int kFirstYear = 1000;
constexpr int kLastYear = 9998;
constexpr char16_t kRangeDash[] = u" – ";

struct DatePlace {
    std::size_t begin;
    COleDateTime date;
};

const COleDateTimeSpan kHalfADay(0, 12, 0, 0);

COleDateTimeSpan Days(int count) { return {count, 0, 0, 0}; }

int NumberAt(std::u16string_view digits) {
    int number = 0;
    for (const char16_t digit : digits)
        number = number * 10 + (digit - u'0');
    return number;
}

/// The date that the text begins with.
std::optional<COleDateTime> DateAt(std::u16string_view text) {
    constexpr std::u16string_view kForm = u"0000-00-00";
    if (text.size() < kDateUnits)
        return std::nullopt;
    for (std::size_t i = 0; i < kDateUnits; ++i)
        if (kForm[i] == u'-' ? text[i] != u'-' : text[i] < u'0' || text[i] > u'9')
            return std::nullopt;
    const int year = NumberAt(text.substr(0, 4));
    const int month = NumberAt(text.substr(5, 2));
    const int day = NumberAt(text.substr(8, 2));
    const COleDateTime date(year, month, day, 0, 0, 0);
    if (year < kFirstYear || year > kLastYear || date.GetYear() != year || date.GetMonth() != month ||
        date.GetDay() != day)
        return std::nullopt;
    return date;
}

bool IsPartOfAWord(std::u16string_view text, std::size_t index) {
    return index < text.size() && (text[index] == u'-' || IsCharAlphaNumeric(text[index]));
}

std::vector<DatePlace> FindDates(std::u16string_view text) {
    std::vector<DatePlace> places;
    if (text.size() > kMaximumUnits)
        return places;
    for (std::size_t i = 0; i + kDateUnits <= text.size(); ++i) {
        if ((i > 0 && IsPartOfAWord(text, i - 1)) || IsPartOfAWord(text, i + kDateUnits))
            continue;
        if (const std::optional<COleDateTime> date = DateAt(text.substr(i))) {
            places.push_back({i, *date});
            i += kDateUnits - 1;
        }
    }
    return places;
}

bool JoinsARange(const CString& between) {
    constexpr std::array<std::u16string_view, 6> kWords = {u"to", u"until", u"/", u"-", u"–", u"—"};
    const CString word = CString(between).Trim();
    return std::find(kWords.begin(), kWords.end(), word.View()) != kWords.end();
}

using DateWriter = CString (*)(const CTime&);

CString Written(COleDateTime date, DateWriter write) {
    return write(CrkDateUtilities::COleDateTimeToCTime(date + kHalfADay));  // no clock changes at noon
}

CString WithDates(std::u16string_view text, const std::vector<DatePlace>& places, DateWriter write) {
    CString shown;
    std::size_t done = 0;
    for (const DatePlace& place : places) {
        const CString between = text.substr(done, place.begin - done);
        shown += done > 0 && JoinsARange(between) ? CString(kRangeDash) : between;
        shown += Written(place.date, write);
        done = place.begin + kDateUnits;
    }
    return shown + text.substr(done);
}

struct Week {
    COleDateTime start;
    int number;
};

Week WeekOf(COleDateTime date) {
    const int firstDay = CrkLocaleUtilities::GetFirstDayOfWeek();
    const COleDateTimeSpan shift = Days(firstDay > 0 ? firstDay - 1 : 0);
    const auto startOf = [&](const COleDateTime& day) { return CrkDateUtilities::GetWeekStart(day - shift) + shift; };
    constexpr int kMonday = 2;
    const int dayOfFirstWeek = firstDay == kMonday ? 4 : 1;
    const COleDateTime start = startOf(date);
    int year = date.GetYear() + 1;
    COleDateTime firstStart = startOf(COleDateTime(year, 1, dayOfFirstWeek, 0, 0, 0));
    while (start < firstStart)
        firstStart = startOf(COleDateTime(--year, 1, dayOfFirstWeek, 0, 0, 0));
    return {start, static_cast<int>(std::lround((start.m_dt - firstStart.m_dt) / 7)) + 1};
}

/// The weeks of the first and the last date: two weeks, one week when they are the same, or no week without a date.
std::vector<Week> WeeksOf(const std::vector<DatePlace>& places) {
    std::vector<Week> weeks;
    if (!places.empty())
        weeks.push_back(WeekOf(places.front().date));
    if (places.size() > 1) {
        const Week last = WeekOf(places.back().date);
        if (last.start != weeks.front().start)
            weeks.push_back(last);
    }
    return weeks;
}

CString NameOf(const Week& week) { return CrkStringUtilities::Format(u"W%d", week.number); }

}  // namespace

CString ShownDate(const CString& written) {
    return WithDates(written, FindDates(written), CrkDateUtilities::ShortDateString);
}

CString ShownWeeks(const CString& written) {
    CString weeks;
    for (const Week& week : WeeksOf(FindDates(written)))
        weeks = CrkStringUtilities::Combine(u"–", weeks, NameOf(week), /*skipEmptyParts=*/true);
    return weeks;
}

CString DateTooltip(const CString& written) {
    const std::vector<DatePlace> places = FindDates(written);
    CString tooltip = WithDates(written, places, CrkDateUtilities::LongDateString);
    for (const Week& week : WeeksOf(places))
        tooltip += u"\n" + NameOf(week) + u": " + Written(week.start, CrkDateUtilities::LongDateString) + kRangeDash +
                   Written(week.start + Days(6), CrkDateUtilities::LongDateString);
    return tooltip;
}

}  // namespace mindmap
