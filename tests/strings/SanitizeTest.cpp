#include "tests/support/Test.h"

namespace {

using Strings = CrkStringUtilities;

/// The replacements one after the other, each over the whole text, as they are defined.
struct StepByStep {
    static CString Notes(CString text) {
        std::u16string units(text);
        std::erase_if(units, [](char16_t unit) {
            return unit == 0x7F || (unit < 0x20 && unit != u'\t' && unit != u'\n' && unit != u'\r');
        });
        return units;
    }
    static CString Tooltip(CString text) {
        text.Replace(u"\x18", u" ");
        text.Replace(u"\t", u"    ");
        text.Replace(u"<br>", u"\n");
        text.Remove(u'\r');
        return Notes(text);
    }
    static CString PlainTooltip(CString text) {
        text.Replace(u"<", u"<<");
        text.Replace(u"\x18", u" ");
        text.Replace(u"\t", u"    ");
        return text;
    }
    static CString Topic(CString text) {
        text.Replace(u"\x7F", u" ");
        text.Replace(u"\f", u"\r\n");
        for (int i = 0; i < text.GetLength(); ++i)
            text.SetAt(i, CrkXmlUtilities::IsChar(text.GetAt(i)) ? text.GetAt(i) : u' ');
        return text;
    }
    static CString CrLf(CString text) {
        text.Replace(u"\n", u"\r\n");
        text.Replace(u"\r\r\n", u"\r\n");
        return text;
    }
};

TEST(Sanitisers, GiveInOnePassWhatTheirStepsGive) {
    const auto changed = [](void (*change)(CString&), CString text) {
        change(text);
        return text;
    };
    std::mt19937 random(12);
    const std::u16string_view alphabet(u"a<br>b<r \t\n\r\r\n\f\0\x01\x18\x1F\x7F\x80\uFFFD\uFFFE\xD83D\xDE00<", 26);
    for (int round = 0; round < 20000; ++round) {
        const CString text(AnyText(random, alphabet, 40) + static_cast<char16_t>(random()) +
                           AnyText(random, alphabet, 9));
        ASSERT_EQ(changed(Strings::RemoveInvalidNotesCharacters, text), StepByStep::Notes(text));
        ASSERT_EQ(changed(Strings::RemoveInvalidTooltipCharacters, text), StepByStep::Tooltip(text));
        ASSERT_EQ(changed(Strings::FixInvalidUnformattedTooltipCharacters, text), StepByStep::PlainTooltip(text));
        ASSERT_EQ(Strings::ReplaceInvalidTopicTextCharacters(text), StepByStep::Topic(text));
        ASSERT_EQ(Strings::ConvertLFsToCRLFPairs(text), StepByStep::CrLf(text));
    }
}

TEST(Sanitisers, KeepToTheirExamples) {
    EXPECT_EQ(Strings::RemoveCRLF(u"a\r\nb\r"), u"ab");
    EXPECT_EQ(Strings::CondenseString(u" leading"), u"...");
    EXPECT_EQ(Strings::CondenseString(u"one\ttwo"), u"one...");
    EXPECT_EQ(Strings::CondenseString(u"Hello"), u"Hello");
    for (const auto& [unit, isPrintable] :
         {std::pair(u'\x1F', false), {u'\x7F', false}, {u' ', true}, {u'\xD800', true}})
        EXPECT_EQ(Strings::IsCharPrintable(unit), isPrintable) << std::hex << int{unit};
}

}  // namespace
