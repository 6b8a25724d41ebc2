#include "tests/support/Test.h"

#include <map>

namespace {

struct Calendar {
    CAtlArray<bool> days;
    CAtlMap<double, bool> dates;
};

/// Flags as written, then the dates in ascending order.
std::string Content(const Calendar& calendar) {
    std::string text;
    for (const bool day : calendar.days)
        text += day ? '1' : '0';
    std::map<double, bool> dates;
    for (const auto& [date, value] : calendar.dates)
        dates[date] = value;
    for (const auto& [date, value] : dates)
        text += ' ' + std::to_string(std::llround(date)) + (value ? "" : " without the value");
    return text;
}

/// What is read into a calendar with the flags 101000011 and the dates 1 and 2.
constexpr std::pair<std::u16string_view, const char*> kReadCases[] = {
    {u"", "101000011 1 2"},  // nothing changes
    {u"0111110;45000.25;45000.75", "0111110 45000"},
    {u";45000.000000", "1100010"},             // the first piece holds the flags, whatever it is
    {u";;;", "1010000"},                       // no piece: the flags stay, the map does not
    {u"x2 0\u0660\U0001F600;3", "1110111 3"},  // "0" alone is a day off, and a unit is a day
    {u"0000000111;3", "0000000 3"},            // units past the seventh are ignored
    {u"01;3", "0100000 3"},                    // missing flags are days off
    {u"1111111;x;;3y; 4;-5;-5.5;", "1111111 -6 -5 3 4"},
    {u"1111111;.;e;nan;inf;7", "1111111 7"},  // no numbers are skipped, and end nothing
};

TEST(CalendarText, IsReadPieceByPiece) {
    for (const auto& [text, content] : kReadCases) {
        Calendar calendar{{true, false, true, false, false, false, false, true, true}, {{1, true}, {2, true}}};
        CrkDateUtilities::ParsePtmCalendarString(text, calendar.days, calendar.dates);
        EXPECT_EQ(Content(calendar), content) << CString(text);
    }
}

TEST(CalendarText, IsWrittenInTheOrderOfTheMap) {
    EXPECT_EQ(CrkDateUtilities::DefaultWorkweekString(), u"0111110");
    CAtlMap<double, bool> dates;
    for (const double date : {45001.0, 45000.0, -0.5, 0.0000005, -1.7976931348623157e308, HUGE_VAL, -HUGE_VAL})
        dates.SetAt(date, false);  // the values are not looked at
    std::string expected = "1111111";
    for (const auto& [date, unused] : dates) {
        char text[400];
        std::snprintf(text, sizeof text, ";%f", date);
        expected += text;
    }
    EXPECT_EQ(CrkDateUtilities::CreatePtmCalendarString({true, true, true, true, true, true, true, false, true}, dates)
                  .ToUtf8(),
              expected);
}

TEST(CalendarText, GivesTheSameWholeDatesInEveryLocale) {
    Calendar written{{false, true, true, false, true, true, true}, {}};
    for (int date = -3; date < 60000; date += 101)
        written.dates.SetAt(date, true);
    for (const char* const locale : {"en_US", "de_DE", "fr_CH", "ar_EG", "fa_IR", "hi_IN", "my_MM"}) {
        const ScopedUserLocale user(locale);
        Calendar read;
        CrkDateUtilities::ParsePtmCalendarString(CrkDateUtilities::CreatePtmCalendarString(written.days, written.dates),
                                                 read.days, read.dates);
        EXPECT_EQ(Content(read), Content(written)) << locale;
    }
    const ScopedGermanProcess german;
    EXPECT_EQ(CrkDateUtilities::CreatePtmCalendarString({}, {{45000.5, true}}), u"0000000;45000.500000");
}

}  // namespace
