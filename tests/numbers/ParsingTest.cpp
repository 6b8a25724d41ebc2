#include "tests/support/Test.h"

#include <optional>
#include <unicode/decimfmt.h>

namespace {

using Conversion = CrkStringConversionUtilities;
constexpr double kInfinity = INFINITY, kUntouched = 4711;

template <class Value> std::optional<Value> Read(bool (*parse)(const CString&, Value&), const CString& text) {
    Value value = static_cast<Value>(kUntouched);
    if (parse(text, value))
        return value;
    EXPECT_EQ(value, static_cast<Value>(kUntouched)) << text;
    return std::nullopt;
}

constexpr std::nullopt_t kNone = std::nullopt;
using ScanRow = std::tuple<const char16_t*, std::optional<double>, std::optional<int>>;
constexpr ScanRow kScanRows[] = {
    {u"+5", 5, 5},     {u"\u221255", -55, -55},         {u"\r\n\u2003\t-7 apples", -7, -7},
    {u"1E+x", 1, 1},   {u".50e0", 0.5, kNone},          {u"-10000000000", -1e10, INT_MIN},
    {u"0x10", 0, 0},   {u"1e\u22123", 0.001, 1},        {u"0e99999999999999999999", 0, 0},
    {u"5.e2", 500, 5}, {u"10000000000", 1e10, INT_MAX}, {u"-1e9999999999999999999", -kInfinity, -1}};
/// A digit of another locale, digits beyond the BMP and their halves. LocaleTest reads what every locale writes.
constexpr std::pair<const char*, ScanRow> kLocaleRows[] = {
    {"ar_EG@numbers=arab", {u"12\u066B5", 12.5, 12}},
    {"fa_IR", {u"\u2212\u06F1\u06F2e\u06F2", -1200, -12}},
    {"fa_IR", {u"\u0661", kNone, kNone}},
    {"en_US@numbers=hanidec", {u"\u4E8C\u3007.\u4E00", 20.1, 20}},
    {"en_US@numbers=mathbold", {u"\U0001D7CF\xD835", 1, 1}}};

constexpr const char16_t* kNoNumberAhead[] = {u"days 7", u"", u" - 5", u"--5", u".", u".e5", u"inf", u"nan", u"\u0663"};

void CheckScan(const ScanRow& row) {
    const auto& [units, number, integer] = row;
    const CString text(units);
    EXPECT_EQ(Read(Conversion::StringToDouble, text), number) << text;
    EXPECT_EQ(Read(Conversion::StringToInteger, text), integer) << text;
    EXPECT_EQ(Conversion::IsStringDouble(text), number.has_value()) << text;
    EXPECT_EQ(Conversion::IsStringInteger(text), integer.has_value()) << text;
}

TEST(Scanning, ReadsTheLongestPrefixThatIsANumberOfTheLocale) {
    for (const auto& [locale, row] : kLocaleRows) {
        const ScopedUserLocale user(locale);
        CheckScan(row);
    }
    for (const ScanRow& row : kScanRows)
        CheckScan(row);
    for (const char16_t* const text : kNoNumberAhead)
        CheckScan({text, kNone, kNone});
    EXPECT_TRUE(std::signbit(*Read(Conversion::StringToDouble, u"-0")));
}

TEST(Scanning, RoundsLikeTheCLibraryToTheLastBit) {
    std::mt19937_64 random(42);
    for (int round = 0; round < 200'000; ++round) {
        std::string text;
        for (std::size_t digits = random() % 25 + 1; text.size() < digits;)
            text += static_cast<char>('0' + random() % 10);
        text.insert(random() % (text.size() + 1), ".");
        text += 'e' + std::to_string(static_cast<int>(random() % 700) - 350);
        ASSERT_EQ(Read(Conversion::StringToDouble, CString(text)), std::strtod(text.c_str(), nullptr)) << text;
    }
    for (const char* text : {"1.7976931348623159e308", "1.7976931348623158e308", "2.4703282292062327e-324",
                             "2.4703282292062328e-324", "1,234.5", "1.2.3", "-.5"})
        EXPECT_EQ(Read(Conversion::StringToDouble, CString(text)), std::strtod(text, nullptr)) << text;
}

TEST(Scanning, TakesAMillionDigits) {
    const std::string zeros(1'000'000, '0');
    const auto read = [](const std::string& text) { return Read(Conversion::StringToDouble, CString(text)); };
    EXPECT_EQ(read("1" + zeros + "e-1000000"), 1);
    EXPECT_EQ(read("0." + zeros + "25e1000001"), 2.5);
    EXPECT_EQ(read("9007199254740993." + zeros), 9007199254740992);        // a tie, to even
    EXPECT_EQ(read("9007199254740993." + zeros + "1"), 9007199254740994);  // told by the last digit alone
    EXPECT_EQ(Read(Conversion::StringToInteger, CString(zeros + "7")), 7);
    EXPECT_EQ(Read(Conversion::StringToLong, CString("-" + std::string(1'000'000, '9'))), LONG_MIN);
    EXPECT_EQ(Read(Conversion::StringToLong, CString("1." + zeros)), std::nullopt);  // beyond what is handed to ICU
}

constexpr std::tuple<const char16_t*, long, unsigned long> kWholeRows[] = {
    {u"1E-99999999999", 0, 0},
    {u"-1E999999999999", LONG_MIN, 0},
    {u"4294967296", UINT_MAX + 1L, UINT_MAX + 1L},
    {u"9223372036854775806.9", LONG_MAX - 1, LONG_MAX - 1},
    {u"-9223372036854775808", LONG_MIN, 0},
    {u"18446744073709551614.5", LONG_MAX, ULONG_MAX - 1},
    {u"18446744073709551610", LONG_MAX, ULONG_MAX - 5},
    {u"18446744073709551616", LONG_MAX, ULONG_MAX}};

constexpr const char16_t* kNoWholeNumbers[] = {u"", u"ff", u"NaN", u"-\u221E", u"12\xD800"};

TEST(WholeTexts, AreNumbersWithinTheirTypes) {
    const ScopedUserLocale user("en_US");
    for (const auto& [text, number, natural] : kWholeRows) {
        unsigned long value = 0;
        EXPECT_TRUE(Conversion::StringToULong(text, 16, value)) << CString(text);
        EXPECT_TRUE(Conversion::IsStringULong(text)) << CString(text);
        EXPECT_EQ(value, natural);
        EXPECT_EQ(Read(Conversion::StringToLong, text), number);
        EXPECT_EQ(Read<unsigned long>(Conversion::StringToULong, text), natural);
        EXPECT_EQ(Read<unsigned>(Conversion::StringToUInteger, text), std::min<unsigned long>(natural, UINT_MAX));
    }
    for (const CString text : kNoWholeNumbers) {
        EXPECT_EQ(Read(Conversion::StringToLong, text), kNone) << text;
        EXPECT_FALSE(Conversion::IsStringULong(text)) << text;
    }
}

TEST(WholeTexts, AgreeWithIcuOnWhatIsANumber) {
    std::mt19937 random(5);
    std::istringstream locales(
        "en_US de_CH hi_IN fa_IR ar_EG sv_SE he_IL bn_BD my_MM es_ES et_EE xx ff_Adlm en_US_POSIX");
    for (std::string locale; locales >> locale;) {
        const ScopedUserLocale user(locale.c_str());
        UErrorCode error = U_ZERO_ERROR;
        const std::unique_ptr<icu::NumberFormat> format(icu::NumberFormat::createInstance(locale.c_str(), error));
        for (int round = 0; round < 3000; ++round) {
            std::u16string text = AnyText(random, u"0123456789-.,eE  \u00A0\u2019\u06F5\u2212+%", 7);
            text.insert(random() % (text.size() + 1), AnyText(random, u"0123456789", 4));
            icu::Formattable number;
            icu::ParsePosition position;
            const icu::UnicodeString all(text.data(), static_cast<std::int32_t>(text.size()));
            format->parse(all, number, position);
            const bool whole = !text.empty() && position.getErrorIndex() < 0 && position.getIndex() == all.length();
            const std::optional<long> read = Read(Conversion::StringToLong, text);
            ASSERT_EQ(read.has_value(), whole) << locale << ' ' << CString(text);
            if (whole && std::abs(number.getDouble(error)) < 1e15) {
                ASSERT_EQ(*read, static_cast<long>(number.getDouble(error))) << locale << ' ' << CString(text);
            }
        }
    }
}

constexpr std::tuple<const char16_t*, bool, double> kPercentRows[] = {
    {u"50%", true, 0.5},  {u" 50 % ", true, 0.5},      {u"50%%", true, 0.5},      {u"%50", false, 0},
    {u"abc%", false, 0},  {u"0.5", true, 0.5},         {u"57%", true, 57 * 0.01}, {u"", false, 0},
    {u"5%x", false, 0.0}, {u"1e400%", true, kInfinity}};

TEST(Words, AreReadAsFractionsAndTruthValues) {
    const ScopedUserLocale user("en_US");
    for (const auto& [text, isPercentage, expected] : kPercentRows) {
        double value = kUntouched;
        EXPECT_EQ(Conversion::StringToPercentageDouble(text, value), isPercentage) << CString(text);
        EXPECT_EQ(value, expected) << CString(text);
    }
    for (const CString text : {u"TRUE", u" true", u"true ", u"1", u"", u"truefalse"})
        EXPECT_EQ(Read(Conversion::StringToBool, text), std::nullopt) << text;
    for (const bool value : {false, true}) {
        const CString word = Conversion::BoolToString(value, /*asWords=*/true);
        EXPECT_EQ(word, value ? u"true" : u"false");
        EXPECT_EQ(Read(Conversion::StringToBool, word), value);
        EXPECT_EQ(Conversion::BoolToString(value, /*asWords=*/false), value ? u"1" : u"0");
    }
    EXPECT_EQ(Conversion::ULongToString(ULONG_MAX), u"18446744073709551615");
}

}  // namespace
