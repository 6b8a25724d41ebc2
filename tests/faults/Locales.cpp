#include "tests/faults/Workload.h"

namespace faults {
namespace {

using Dates = CrkDateUtilities;
using Numbers = CrkStringConversionUtilities;

const CTime& Moment() {
    static const CTime moment = CTime::FromCFAbsoluteTime(816555125);  // 16 November 2026, 20:52:05 UTC
    return moment;
}

void InGerman(Scene& scene) {
    rk::SetUserLocale("de_DE");
    scene.text = u"1234567,891";
    scene.other = u"der Rest";
}

void InBengali(Scene& scene) {
    InGerman(scene);
    rk::SetUserLocale("bn_BD");
}

const Workload kRows[] = {
    GIVES("numbers: grouped", &InGerman, Numbers::DoubleStringToFormattedNumber(s.text, true, 2, Numbers::MinusSign)),
    GIVES("numbers: an amount", &InGerman,
          Numbers::DoubleStringToFormattedCurrency(s.text, u"€", 2, 0, 0, Numbers::MinusSign)),
    GIVES("numbers: a percentage", &InGerman, Numbers::DoubleStringToFormattedPercentage(u"0,241", 1)),
    GIVES("numbers: to text", &InGerman, Numbers::DoubleToString(-1234.5678)),
    GIVES("numbers: decimal point", &InGerman,
          CrkLocaleUtilities::GetDecimalPoint() + CrkLocaleUtilities::GetDigitGroupingSymbol()),
    GIVES("numbers: currency", &InGerman, CrkLocaleUtilities::GetCurrencySymbol()),
    GIVES("numbers: first day", &InGerman, CrkLocaleUtilities::GetFirstDayOfWeek()),
    GIVES("numbers: read a number", &InGerman, Numbers::StringToDouble(u"1234567,25 Meter", s.number)),
    {"numbers: read an integer", &InBengali,
     [](Scene& s) {
         int value = 0;
         const bool isRead = Numbers::StringToInteger(u"১২৩৪", value);
         s.number = value;
         return Shown(isRead);
     }},
    GIVES("numbers: read a percentage", &InGerman, Numbers::StringToPercentageDouble(u"24,1 %", s.number)),
    {"numbers: split", &InGerman,
     [](Scene& s) {
         bool isNegative = false;
         Numbers::SplitNumberString(u"-1234567,891234567891234567", s.text, s.other, isNegative);
         return Shown(isNegative);
     },
     "", Keeps::Nothing},
    GIVES("numbers: words", &InGerman, Numbers::BoolToString(true, /*asWords=*/true)),
    GIVES("dates: short", &InGerman, Dates::ShortDateString(Moment())),
    GIVES("dates: long", &InGerman, Dates::LongDateString(Moment())),
    GIVES("dates: short time", &InGerman, Dates::ShortTimeString(Moment())),
    GIVES("dates: long time", &InGerman, Dates::LongTimeString(Moment())),
    GIVES("dates: date and time", &InGerman, Dates::DateTimeString(Moment())),
    GIVES("dates: by a format", &InGerman, Moment().Format(u"%d %B %Y %H:%M")),
    GIVES("dates: in Bengali", &InBengali, Dates::ShortDateTimeString(Moment())),
    GIVES("dates: local fields", nullptr, Moment().GetHour() * 100 + Moment().GetMinute(), "2052", Keeps::Before,
          /*readsZone=*/true),
    GIVES("dates: start of a week", &InGerman, Dates::GetWeekStart(COleDateTime(2026, 11, 18, 9, 30, 0)).GetDay(),
          "15"),
    {"dates: calendar", nullptr,
     [](Scene&) {
         CAtlArray<bool> days;
         CAtlMap<double, bool> dates;
         Dates::ParsePtmCalendarString(Dates::DefaultWorkweekString() + u";2026-12-24=0;2026-12-25=0", days, dates);
         return Shown(Dates::CreatePtmCalendarString(days, dates));
     },
     "CAtlException"},
    GIVES("locale: formats made early", &InGerman,
          (rk::PrepareFormats(), Dates::ShortDateString(Moment()) +
                                     Numbers::DoubleStringToFormattedNumber(u"1234,5", true, 1, Numbers::MinusSign))),
    GIVES("locale: another user's", &InGerman,
          (rk::SetUserLocale("fr_FR"), Dates::LongDateString(Moment()) + CrkLocaleUtilities::GetDecimalPoint())),
    {"locale: order of names", &InGerman,
     [](Scene& s) {
         s.list = {u"Zebra", u"Äpfel", u"apfel", u"Öl"};
         CrkStringUtilities::SortStringList(s.list, /*ascending=*/true);
         return std::string("sorted");
     },
     "CAtlException", Keeps::Nothing},
    GIVES("locale: same names", &InGerman,
          CrkPathUtilities::AreFilenamesEqual(u"Übersicht Straße", u"U\u0308BERSICHT STRASSE")),
    GIVES("locale: order of two", &InGerman, s.other.Collate(u"Öl") < 0),
    GIVES("locale: string table", nullptr,
          (s.number = rk::SetStringTables(s.Path("tables")), s.text.LoadString("key"), s.text)),
};

}  // namespace

constinit const std::span<const Workload> kLocaleWorkloads(kRows);

}  // namespace faults
