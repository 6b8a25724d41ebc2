#include "tests/support/Test.h"

#include <atomic>
#include <unicode/calendar.h>
#include <unicode/dcfmtsym.h>
#include <unicode/decimfmt.h>

namespace {

using Locale = CrkLocaleUtilities;
using Conversion = CrkStringConversionUtilities;
using Symbols = icu::DecimalFormatSymbols;

CString TextOf(const icu::UnicodeString& text) {
    return std::u16string_view(text.getBuffer(), static_cast<std::size_t>(text.length()));
}

CString Symbol(const icu::DecimalFormat& format, Symbols::ENumberFormatSymbol symbol) {
    return TextOf(format.getDecimalFormatSymbols()->getSymbol(symbol));
}

std::unique_ptr<icu::DecimalFormat> FormatOf(const icu::Locale& locale, UNumberFormatStyle style) {
    UErrorCode error = U_ZERO_ERROR;
    return std::unique_ptr<icu::DecimalFormat>(
        dynamic_cast<icu::DecimalFormat*>(icu::NumberFormat::createInstance(locale, style, error)));
}

TEST(LocaleQueries, AgreeWithIcuInEveryLocale) {
    std::mt19937 random(6);
    std::int32_t count = 0;
    const icu::Locale* const locales = icu::Locale::getAvailableLocales(count);
    for (std::int32_t i = 0; i < count; ++i) {
        const icu::Locale& locale = locales[i];
        SCOPED_TRACE(locale.getName());
        const ScopedUserLocale user(locale.getName());
        const auto money = FormatOf(locale, UNUM_CURRENCY);
        const auto plain = FormatOf(locale, UNUM_DECIMAL);
        EXPECT_EQ(Locale::GetDecimalPoint(), Symbol(*money, Symbols::kMonetarySeparatorSymbol));
        EXPECT_EQ(Locale::GetDigitGroupingSymbol(), Symbol(*money, Symbols::kMonetaryGroupingSeparatorSymbol));
        EXPECT_EQ(Conversion::DoubleToString(-2.5e6), u"-2" + Locale::GetDecimalPoint() + u"5e+06");
        EXPECT_EQ(Locale::GetCurrencySymbol(), Symbol(*money, Symbols::kCurrencySymbol));
        EXPECT_EQ(Locale::GetCurrencyNumberOfDecimalDigits(), money->getMinimumFractionDigits());
        EXPECT_EQ(Locale::GetListSeparator(), Symbol(*plain, Symbols::kDecimalSeparatorSymbol));
        UErrorCode error = U_ZERO_ERROR;
        const std::unique_ptr<icu::Calendar> calendar(icu::Calendar::createInstance(locale, error));
        EXPECT_EQ(Locale::GetFirstDayOfWeek(), calendar->getFirstDayOfWeek(error));
        EXPECT_EQ(Locale::GetPositiveCurrencyFormat() + Locale::GetNegativeCurrencyFormat(), 0);

        // What ICU writes is what the scanners read, signs and digits of the locale included.
        plain->setGroupingUsed(0);
        for (int round = 0; round < 20; ++round) {
            const double expected = static_cast<int>(random()) / 8.0;
            icu::UnicodeString written;
            plain->format(expected, written);
            double number = 0;
            int whole = 0;
            const CString text = TextOf(written);
            EXPECT_TRUE(Conversion::StringToDouble(text, number)) << text;
            EXPECT_TRUE(Conversion::StringToInteger(text, whole)) << text;
            EXPECT_EQ(number, expected);
            EXPECT_EQ(whole, static_cast<int>(expected));
        }
        const CString group = Locale::GetDigitGroupingSymbol();
        EXPECT_EQ(Conversion::DoubleStringToFormattedNumber(u"-1234567", true, 0, Conversion::MinusSign),
                  u"-1" + group + u"234" + group + u"567");
    }
    CString prefix = u"before", suffix = u"after";
    Locale::GetNegativeNumberPrefixSuffix(prefix, suffix);
    EXPECT_EQ(prefix + u"|" + suffix, u"-|");
}

TEST(LocaleQueries, FollowEachCategoryOfTheProcessAtOnce) {
    const auto facts = [] {
        const CString now = CrkLogWriter::CurrentTimeString(kCFDateFormatterShortStyle);
        return Locale::GetDecimalPoint() + Locale::GetListSeparator() +
               Conversion::LongToString(Locale::GetFirstDayOfWeek()) + (now.Find(u'.') == 2 ? u"German" : u"");
    };
    EXPECT_EQ(facts(), u"..1");
    {
        const ScopedGermanProcess money(LC_MONETARY);
        for (const auto& [category, germanFacts] :
             {std::pair(LC_MONETARY, u",.1"), {LC_NUMERIC, u",,1"}, {LC_TIME, u",,2German"}}) {
            ScopedGermanProcess::Add(category);
            EXPECT_EQ(facts(), germanFacts);
            const ScopedUserLocale chosen("en_US");
            EXPECT_EQ(facts(), u"..1");
        }
    }
    EXPECT_EQ(facts(), u"..1");
}

TEST(LocaleQueries, SurviveHostileNames) {
    const std::string names[] = {
        "../../../../tmp/evil",   "/etc/passwd",  std::string(100, 'a'), std::string(5000, '@'),
        std::string("de\0DE", 5), "\xFF\xFE\x80", std::string(101, '_'), "%s%n"};
    for (const std::string& name : names) {  // all taken for the root locale, of which a date begins with the year
        rk::SetUserLocale(name);
        EXPECT_EQ(CrkLogWriter::CurrentTimeString(kCFDateFormatterShortStyle).Left(2), u"20") << name;
    }
    std::istringstream words("xx_YY @ @numbers= en_US@numbers=hebr;currency=XYZ _ en@calendar=nonsense "
                             "zh@numbers=hansfin ta@numbers=taml de_DE@numbers=\xFF");
    for (std::string name; words >> name;) {
        const ScopedUserLocale user(name.c_str());
        for (const auto& text : {Locale::GetDecimalPoint(), Locale::GetListSeparator(), Locale::GetCurrencySymbol()})
            EXPECT_NE(text, u"") << name;
        double value = 0;
        EXPECT_TRUE(Conversion::StringToDouble(Conversion::DoubleToString(12), value)) << name;
        EXPECT_EQ(value, 12) << name;
    }
}

TEST(LocaleQueries, StayWholeWhileAnotherThreadChangesTheLocale) {
    std::atomic<bool> stop = false;
    std::vector<std::jthread> readers;
    for (int i = 0; i < 3; ++i) {
        readers.emplace_back([&stop] {
            while (!stop) {
                const auto text =
                    Conversion::DoubleStringToFormattedNumber(u"1234567e-2", true, 2, Conversion::MinusSign);
                EXPECT_THAT(text, testing::AnyOf(CString(u"12,345.67"), CString(u"12.345,67")));
                double value = 0;
                EXPECT_TRUE(Conversion::StringToDouble(u"1.5", value));
                EXPECT_THAT(value, testing::AnyOf(1.5, 1));
            }
        });
    }
    for (int i = 0; i < 3000; ++i)
        const ScopedUserLocale user(std::vector{"en_US", "de_DE", "ja_JP"}[static_cast<std::size_t>(i % 3)]);
    stop = true;
}

}  // namespace
