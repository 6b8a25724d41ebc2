#include "tests/support/Test.h"

#include <libxml/chvalid.h>

namespace {

using Xml = CrkXmlUtilities;

TEST(XmlCharacters, AreThoseOfAppendixBForEveryCodeUnit) {
    for (unsigned unit = 0; unit < 0x10000; ++unit) {
        const auto u = static_cast<unsigned short>(unit);
        const bool surrogate = unit >= 0xD800 && unit <= 0xDFFF;
        const bool letter = xmlIsBaseCharQ(unit) || xmlIsIdeographicQ(unit);
        const bool ncName = letter || xmlIsDigitQ(unit) || xmlIsCombiningQ(unit) || xmlIsExtenderQ(unit) ||
                            unit == '.' || unit == '-' || unit == '_';
        ASSERT_EQ(Xml::IsChar(u), xmlIsCharQ(unit) && !surrogate) << std::hex << unit;
        ASSERT_EQ(Xml::IsBaseChar(u), static_cast<bool>(xmlIsBaseCharQ(unit))) << std::hex << unit;
        ASSERT_EQ(Xml::IsIdeographic(u), static_cast<bool>(xmlIsIdeographicQ(unit))) << std::hex << unit;
        ASSERT_EQ(Xml::IsCombiningChar(u), static_cast<bool>(xmlIsCombiningQ(unit))) << std::hex << unit;
        ASSERT_EQ(Xml::IsDigit(u), static_cast<bool>(xmlIsDigitQ(unit))) << std::hex << unit;
        ASSERT_EQ(Xml::IsExtender(u), static_cast<bool>(xmlIsExtenderQ(unit))) << std::hex << unit;
        ASSERT_EQ(Xml::IsLetter(u), letter) << std::hex << unit;
        ASSERT_EQ(Xml::IsNCNameChar(u), ncName) << std::hex << unit;
        ASSERT_EQ(Xml::IsNameChar(u), ncName || unit == ':') << std::hex << unit;
        const CString first(u);
        ASSERT_EQ(Xml::IsValidNCName(first + u"a"), letter || unit == '_') << std::hex << unit;
        ASSERT_EQ(Xml::IsValidName(u"a" + first), ncName || unit == ':') << std::hex << unit;
    }
}

/// A text, and the names by replacing with "-": without colons and inserting, the same in place, with both.
constexpr const char16_t* kRepairRows[][4] = {{u"1abc", u"_1abc", u"_abc", u"_1abc"},
                                              {u":", u"_-", u"_", u":"},
                                              {u"a b\u00D7c", u"a-b-c", u"a-b-c", u"a-b-c"},
                                              {u"\U0001F600", u"_--", u"_-", u"_--"},
                                              {u"", u"_", u"", u"_"},
                                              {u"Größe.1-x_", u"Größe.1-x_", u"Größe.1-x_", u"Größe.1-x_"}};

TEST(XmlNames, AreRepairedOnceAndForAll) {
    for (const auto& [text, ncName, ncNameInPlace, name] : kRepairRows) {
        SCOPED_TRACE(CString(text).ToUtf8());
        EXPECT_EQ(Xml::StringToNCName(text, u'-', true), ncName);
        EXPECT_EQ(Xml::StringToNCName(text, u'-', false), ncNameInPlace);
        EXPECT_EQ(Xml::StringToName(text, u'-', true), name);
        EXPECT_TRUE(Xml::IsValidNCName(ncName));
        EXPECT_TRUE(Xml::IsValidName(name));
    }
    EXPECT_EQ(Xml::StringToNCName(u"a b", u' ', true), u"a b");  // the replacement is taken as it is
    EXPECT_EQ(Xml::StringToXmlString(u"a\x01\uFFFE\U0001F600\t", u'?'), u"a????\t");
    EXPECT_TRUE(Xml::IsValidUri(u"\t<x>"));
    for (const CString text : {u"", u"abcdef ", u"abc def"})
        EXPECT_EQ(std::tuple(text, Xml::IsValidName(text), Xml::IsValidNCName(text), Xml::IsValidUri(text)),
                  std::tuple(text, false, false, false));
    EXPECT_FALSE(Xml::IsValidNCName(u"abc:def"));
    const CString uri = Xml::GenerateUniqueUri();
    EXPECT_EQ(std::pair(uri.GetLength(), uri[14]), std::pair(36, u'4'));  // of version 4
    EXPECT_NE(uri, Xml::GenerateUniqueUri());
}

}  // namespace
