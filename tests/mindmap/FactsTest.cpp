#include "mindmap/measure/BranchSums.h"
#include "mindmap/measure/Dates.h"
#include "mindmap/read/Link.h"
#include "mindmap/read/OpmlReader.h"
#include "mindmap/write/TopicFacts.h"
#include "mindmap/write/TopicIds.h"
#include "tests/support/Test.h"

#include <set>
#include <unicode/gregocal.h>

using namespace mindmap;

namespace {

Topic With(CString Topic::* field, const CString& value) {
    Topic topic;
    topic.*field = value;
    return topic;
}

/// The figure in a locale; "?" where the text is no figure.
CString Told(const CString& written, const char* locale) {
    const ScopedUserLocale scope(locale);
    const std::optional<Figure> figure = ReadFigure(written);
    return figure ? ShownFigure(*figure) : CString(u"?");
}

}  // namespace

TEST(Figure, IsReadAlikeAndShownInTheUsersLocale) {
    constexpr std::array<const char16_t*, 3> kCases[] = {
        {u"€ 1 284", u"€ 1,284.00", u"1.284,00 €"},
        {u"1.284.000,50 EUR", u"1,284,000.50 €", u"1.284.000,50 €"},
        {u" \u2212EUR\u202F1\u202F284.5 ", u"-€ 1,284.50", u"-1.284,50 €"},
        {u"US$-1’284.005", u"-US$1,284.005", u"-1.284,005 US$"},
        {u"JPY 1,284", u"¥ 1,284", u"1.284 ¥"},      // a group, no decimals
        {u"0.125 CHF", u"0.125 CHF", u"0,125 CHF"},  // decimals, no group
        {u"-$0.10", u"-$0.10", u"-0,10 $"},
        {u"-1.125 %", u"-1.125%", u"-1,125%"},
        {u"9 999 999 999 999.9999", u"9,999,999,999,999.9999", u"9.999.999.999.999,9999"},
    };
    for (const auto& [written, english, german] : kCases) {
        EXPECT_EQ(Told(written, "en_US"), english) << CString(written);
        EXPECT_EQ(Told(written, "de_DE"), german) << CString(written);
    }
    for (const char16_t* none :
         {u"", u"€", u"about 200", u"200 each", u"€ 5 EUR", u"1 28 000", u"1.284,000.5", u"1,2345,678", u"12 34",
          u"1e308", u"10000000000000", u"1.23456 €", u"5-", u"--5", u"2027-06-01", u"٥"})
        EXPECT_EQ(Told(none, "en_US"), u"?") << CString(none);
}

TEST(BranchSums, AddUpPerUnitAndStopAtATopicsOwnFigure) {
    const ScopedUserLocale english("en_US");
    const Outline outline = ReadOpml(R"(<opml><body><outline>
        <outline><outline cost='€ 0.10'/><outline cost='0,2 EUR'/><outline cost='$5'/><outline cost='some'/></outline>
        <outline cost='€ 100'><outline cost='€ 70'/></outline>
        <outline cost='to be shared'><outline cost='9.99 %'/><outline cost='9.99 %'/><outline cost='9.99 %'/></outline>
        <outline><outline cost='AAA 1'/><outline cost='BBB 1'/><outline cost='CCC 1'/><outline cost='DDD 1'/>
            <outline cost='EEE 1'/><outline cost='FFF 1'/><outline cost='GGG 1'/></outline></outline></body></opml>)",
                                     u"");
    const std::vector<BranchSum> sums = SumBranches(outline);
    constexpr std::pair<std::size_t, const char16_t*> kCases[] = {
        {0, u"|"},  // ten units
        {1, u"Σ € 0.30 + $5.00|Σ € 0.30 + $5.00"},
        {6, u"€ 100.00|Σ € 70.00"},
        {8, u"to be shared|Σ 29.97%"},
    };
    for (const auto& [i, shown] : kCases)
        EXPECT_EQ(ShownAmount(outline.topics[i], sums[i]) + u"|" + ShownSum(sums[i]), shown) << i;
    EXPECT_EQ(ShownSum(sums[12]).Right(8), u"GGG 1.00");
}

TEST(Dates, AreTextsOfTheLibraryWithWeeksOfTheUsersLocale) {
    const CString first = CrkDateUtilities::ShortDateString(CTime(2027, 6, 1, 0, 0, 0));
    const CString last = CrkDateUtilities::ShortDateString(CTime(2028, 2, 29, 0, 0, 0));
    EXPECT_EQ(ShownDate(u"from 2027-06-01 to 2028-02-29!"), u"from " + first + u" – " + last + u"!");
    for (const char16_t* none :
         {u"", u"2027-02-29", u"2027-13-01", u"0000-01-01", u"12027-06-01", u"2027-06-011", u"2027-6-1"})
        EXPECT_EQ(ShownDate(none) + ShownWeeks(none), none);
    // For every day, week numbers are those of ICU.
    UErrorCode status = U_ZERO_ERROR;
    for (const char* locale : {"de_DE", "en_US", "ar_EG"}) {
        const ScopedUserLocale scope(locale);
        icu::GregorianCalendar calendar(*icu::TimeZone::getGMT(), icu::Locale(locale), status);
        calendar.set(1990, UCAL_JANUARY, 1, 12, 0);
        for (int day = 0; day < 15'000; ++day, calendar.add(UCAL_DATE, 1, status)) {
            const auto field = [&](UCalendarDateFields f) { return calendar.get(f, status); };
            CString date;
            date.Format(u"%d-%02d-%02d", field(UCAL_YEAR), field(UCAL_MONTH) + 1, field(UCAL_DATE));
            ASSERT_EQ(ShownWeeks(date), u"W" + CString(std::to_string(field(UCAL_WEEK_OF_YEAR)))) << date << locale;
        }
    }
    const ScopedUserLocale german("de_DE");
    EXPECT_EQ(ShownWeeks(u"2027-06-01/2027-07-20"), u"W22–W29");
    EXPECT_EQ(ShownWeeks(u"2027-06-01 - 2027-06-03"), u"W22");
    EXPECT_EQ(ShownWeeks(u"9998-12-31"), u"W53");
}

TEST(Link, IsShownReadablyAndFollowedWhereThatIsSafe) {
    // As written, and as "address|parameters|target".
    constexpr std::pair<const char16_t*, const char16_t*> kCases[] = {
        {u" https://x.org/ ", u"x.org||https://x.org/"},
        {u"HTTP://x.org/a%20b ö?q=ship%20crew&lang=n+b#top",
         u"x.org/a b ö#top|lang: n b · q: ship crew|HTTP://x.org/a%20b%20%C3%B6?q=ship%20crew&lang=n+b#top"},
        {u"https://x.org?a=&b=2", u"x.org?a=&b=2||https://x.org?a=&b=2"},
        {u"http://x.org/#a=1&a=2", u"x.org|a: 2|http://x.org/#a=1&a=2"},
        {u"https://x.org/50%", u"x.org/50%||https://x.org/50%25"},
        {u"www.x.org/a?b=c", u"www.x.org/a|b: c|https://www.x.org/a?b=c"},
        {u"a@x.org", u"a@x.org||mailto:a@x.org"},
        {u"javascript:alert('http://x')", u"javascript:alert('http://x')||"},
        {u"data:text/html,<script>", u"data:text/html,<script>||"},
        {u"java\nscript:alert(1)", u"java\nscript:alert(1)||java%0Ascript:alert(1)"},  // relative
        {u"file:///etc/a b", u"/etc/a b||file:///etc/a%20b"},
        {u"plans/a b.svg?v=2#end", u"plans/a b.svg#end|v: 2|plans/a%20b.svg?v=2#end"},
        {u"/", u"/||/"},
    };
    for (const auto& [written, told] : kCases) {
        const Link link = ReadLink(written);
        EXPECT_EQ(link.address + u"|" + link.parameters + u"|" + link.target, told);
    }
}

TEST(TopicIds, AreNamesAndDifferWhateverTheTextsAre) {
    TopicIds ids;
    EXPECT_EQ(ids.Make(u"a: b"), u"topic-a__b");
    EXPECT_EQ(ids.Make(u"a, b"), u"topic-a__b-2");
    EXPECT_EQ(ids.Make(u"a__b-2"), u"topic-a__b-2-2");
    std::set<CString> seen;
    std::mt19937 random(5);
    for (int i = 0; i < 20'000; ++i) {
        constexpr char16_t kUnits[] = {u'a', u'-', u'2', u'3', u'<', 0xD83D, 0, u'é'};
        const CString id = ids.Make(AnyText(random, {kUnits, std::size(kUnits)}, 5));
        ASSERT_EQ(std::pair(CrkXmlUtilities::IsValidNCName(id), seen.insert(id).second), std::pair(true, true)) << id;
    }
}

TEST(Tooltip, TellsEverythingCleanedAndWrapped) {
    OutlineBuilder builder;
    Topic topic = With(&Topic::note, u"first<br>second\tend\x01");
    topic.text = u"🚢\fship\x7F\xD83D" + CString(std::u16string(70, u'x'));
    topic.link = u"https://x.org/?post=7";
    builder.Add(builder.Add(0, {}), topic);
    EXPECT_EQ(ComposeTooltip(builder.Finish(u"").topics[1], {}),
              u"🚢\nship  \n" + CString(std::u16string(63, u'x')) + u"\nxxxxxxx\nfirst\nsecond    end\nx.org\npost: 7");
    // Lines are cut at an odd place of many pairs; no pair is cut apart.
    std::u16string pairs = u"x";
    for (int i = 0; i < 3000; ++i)
        pairs += u"🐻";
    for (const CString& shown :
         {ComposeTooltip(With(&Topic::text, pairs), {}), ComposeTooltip(With(&Topic::note, pairs), {})})
        EXPECT_EQ(CString(shown.ToUtf8()), shown);
}
