#include "tests/faults/Workload.h"

namespace faults {
namespace {

using Dates = CrkDateUtilities;
using Numbers = CrkStringConversionUtilities;

const CTime moment = CTime::FromCFAbsoluteTime(816555125);  // 16 November 2026, 20:52:05 UTC

void Begin(Scene& scene) {
    rk::SetUserLocale("de_DE");
    scene.text = u"1234567,891";
    scene.other = u"der Rest";
}

const Workload kRows[] = {
    GIVES("numbers: an amount", Numbers::DoubleStringToFormattedCurrency(s.text, u"€", 2, 0, 0, Numbers::MinusSign)),
    GIVES("numbers: to text", Numbers::DoubleToString(-1234.5678)),
    GIVES("numbers: decimal point",
          CrkLocaleUtilities::GetDecimalPoint() + CrkLocaleUtilities::GetDigitGroupingSymbol()),
    GIVES("numbers: read a number", Numbers::StringToDouble(u"1234567,25 Meter", s.number)),
    {"numbers: split", &Begin,
     [](Scene& s) {
         bool isNegative = false;
         Numbers::SplitNumberString(u"-1234567,891234567891234567", s.text, s.other, isNegative);
         return Shown(isNegative);
     },
     "", Keeps::Nothing},
    GIVES("dates: short", Dates::ShortDateString(moment)),
    GIVES("dates: date and time", Dates::DateTimeString(moment)),
    GIVES("dates: by a format", moment.Format(u"%d %B %Y %H:%M")),
    GIVES("dates: in Bengali", (rk::SetUserLocale("bn_BD"), Dates::ShortDateTimeString(moment))),
    AFTER(nullptr, "dates: local fields", moment.GetHour() * 100 + moment.GetMinute(), "2052", Keeps::Before,
          /*readsZone=*/true),
    {"dates: calendar", nullptr,
     [](Scene&) {
         CAtlArray<bool> days;
         CAtlMap<double, bool> dates;
         Dates::ParsePtmCalendarString(Dates::DefaultWorkweekString() + u";2026-12-24=0;2026-12-25=0", days, dates);
         return Shown(Dates::CreatePtmCalendarString(days, dates));
     },
     "CAtlException"},
    GIVES("locale: formats made early",
          (rk::PrepareFormats(), Dates::ShortDateString(moment) +
                                     Numbers::DoubleStringToFormattedNumber(u"1234,5", true, 1, Numbers::MinusSign))),
    GIVES("locale: another user's",
          (rk::SetUserLocale("fr_FR"), Dates::LongDateString(moment) + CrkLocaleUtilities::GetDecimalPoint())),
    DOES("locale: order of names",
         (s.list = {u"Zebra", u"Äpfel", u"apfel", u"Öl"},
          CrkStringUtilities::SortStringList(s.list, /*ascending=*/true)),
         "CAtlException", Keeps::Nothing),
    GIVES("locale: same names", CrkPathUtilities::AreFilenamesEqual(u"Übersicht Straße", u"U\u0308BERSICHT STRASSE")),
    GIVES("locale: string table", (s.number = rk::SetStringTables(s.Path("tables")), s.text.LoadString("key"), s.text)),
};

}  // namespace

constinit const std::span<const Workload> kLocaleWorkloads(kRows);

}  // namespace faults
