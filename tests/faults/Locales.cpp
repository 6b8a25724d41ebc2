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

#define MAKES(name, expression) {name, &InGerman, []([[maybe_unused]] Scene& s) { return Shown(expression); }}

const Workload kRows[] = {
    MAKES("numbers: grouped", Numbers::DoubleStringToFormattedNumber(s.text, true, 2, Numbers::MinusSign)),
    MAKES("numbers: an amount", Numbers::DoubleStringToFormattedCurrency(s.text, u"€", 2, 0, 0, Numbers::MinusSign)),
    MAKES("numbers: a percentage", Numbers::DoubleStringToFormattedPercentage(u"0,241", 1)),
    MAKES("numbers: to text", Numbers::DoubleToString(-1234.5678)),
    MAKES("numbers: decimal point",
          CrkLocaleUtilities::GetDecimalPoint() + CrkLocaleUtilities::GetDigitGroupingSymbol()),
    MAKES("numbers: currency", CrkLocaleUtilities::GetCurrencySymbol()),
    MAKES("numbers: first day", CrkLocaleUtilities::GetFirstDayOfWeek()),
    {"numbers: read a number", &InGerman,
     [](Scene& s) { return Shown(Numbers::StringToDouble(u"1234567,25 Meter", s.number)); }},
    {"numbers: read an integer", &InBengali,
     [](Scene& s) {
         int value = 0;
         const bool isRead = Numbers::StringToInteger(u"১২৩৪", value);
         s.number = value;
         return Shown(isRead);
     }},
    {"numbers: read a percentage", &InGerman,
     [](Scene& s) { return Shown(Numbers::StringToPercentageDouble(u"24,1 %", s.number)); }},
    {"numbers: split", &InGerman,
     [](Scene& s) {
         bool isNegative = false;
         Numbers::SplitNumberString(u"-1234567,891234567891234567", s.text, s.other, isNegative);
         return Shown(isNegative);
     },
     "", Keeps::Nothing},
    MAKES("numbers: words", Numbers::BoolToString(true, /*asWords=*/true)),
    MAKES("dates: short", Dates::ShortDateString(Moment())),
    MAKES("dates: long", Dates::LongDateString(Moment())),
    MAKES("dates: short time", Dates::ShortTimeString(Moment())),
    MAKES("dates: long time", Dates::LongTimeString(Moment())),
    MAKES("dates: date and time", Dates::DateTimeString(Moment())),
    MAKES("dates: by a format", Moment().Format(u"%d %B %Y %H:%M")),
    {"dates: in Bengali", &InBengali, [](Scene&) { return Shown(Dates::ShortDateTimeString(Moment())); }},
    {"dates: local fields", nullptr, [](Scene&) { return Shown(Moment().GetHour() * 100 + Moment().GetMinute()); },
     "2052", Keeps::Before, /*readsZone=*/true},
    {"dates: start of a week", &InGerman,
     [](Scene&) { return Shown(Dates::GetWeekStart(COleDateTime(2026, 11, 18, 9, 30, 0)).GetDay()); }, "15"},
    {"dates: calendar", nullptr,
     [](Scene&) {
         CAtlArray<bool> days;
         CAtlMap<double, bool> dates;
         Dates::ParsePtmCalendarString(Dates::DefaultWorkweekString() + u";2026-12-24=0;2026-12-25=0", days, dates);
         return Shown(Dates::CreatePtmCalendarString(days, dates));
     },
     "CAtlException"},
    {"locale: formats made early", &InGerman,
     [](Scene&) {
         rk::PrepareFormats();
         return Shown(Dates::ShortDateString(Moment())) +
                Shown(Numbers::DoubleStringToFormattedNumber(u"1234,5", true, 1, Numbers::MinusSign));
     }},
    {"locale: another user's", &InGerman,
     [](Scene&) {
         rk::SetUserLocale("fr_FR");
         return Shown(Dates::LongDateString(Moment())) + Shown(CrkLocaleUtilities::GetDecimalPoint());
     }},
    {"locale: order of names", &InGerman,
     [](Scene& s) {
         s.list = {u"Zebra", u"Äpfel", u"apfel", u"Öl"};
         CrkStringUtilities::SortStringList(s.list, /*ascending=*/true);
         return std::string("sorted");
     },
     "CAtlException", Keeps::Nothing},
    MAKES("locale: same names", CrkPathUtilities::AreFilenamesEqual(u"Übersicht Straße", u"U\u0308BERSICHT STRASSE")),
    MAKES("locale: order of two", s.other.Collate(u"Öl") < 0),
    {"locale: string table", nullptr,
     [](Scene& s) {
         CString text;
         const bool isTable = rk::SetStringTables(s.Path("tables"));
         text.LoadString("key");
         return Shown(isTable) + Shown(text);
     }},
};

}  // namespace

constinit const std::span<const Workload> kLocaleWorkloads(kRows);

}  // namespace faults
