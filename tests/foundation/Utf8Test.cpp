#include "tests/support/Test.h"

#include <unicode/unistr.h>

namespace {

std::string IcuEncoded(const std::u16string& units) {
    std::string bytes;
    return icu::UnicodeString(units.data(), static_cast<std::int32_t>(units.size())).toUTF8String(bytes);
}

void CheckDecoding(const std::string& bytes) {
    // Exactly its own memory, so that a byte read past the end is found by the address sanitizer.
    const std::vector<char> exact(bytes.begin(), bytes.end());
    const icu::UnicodeString expected = icu::UnicodeString::fromUTF8(bytes);
    ASSERT_EQ(CString(std::string_view(exact.data(), exact.size())),
              std::u16string_view(expected.getBuffer(), static_cast<std::size_t>(expected.length())))
        << testing::PrintToString(bytes);
}

void CheckEncoding(const std::u16string& units) {
    const CString text = units;
    const std::string bytes = text.ToUtf8(), expected = IcuEncoded(units);
    ASSERT_EQ(bytes, expected);
    ASSERT_LT(bytes.capacity(), expected.size() + 31);  // std::string would take twice what a long text needs
    ASSERT_STREQ(static_cast<const char*>(StUTF8Buffer(text)), expected.c_str());  // in memory of exactly its size
    std::string appended = "before ";
    text.AppendUtf8To(appended);
    ASSERT_EQ(appended, "before " + expected);
}

template <class Text> Text Times(std::size_t count, const Text& piece) {
    Text text;
    while (text.size() < count)
        text += piece;
    return text;
}

TEST(Utf8, GoesThereAndBackForEveryCodePoint) {
    icu::UnicodeString points;
    for (UChar32 c = 0; c <= 0x10FFFF; c += c == 0xD7FF ? 0x801 : 1)
        points.append(c);
    const std::u16string all(points.getBuffer(), static_cast<std::size_t>(points.length()));
    const CString text = all;
    const std::string bytes = text.ToUtf8();
    EXPECT_EQ(bytes, IcuEncoded(all));
    EXPECT_EQ(CString(bytes), text);
    std::string again = "what stood here";
    GetStdStringFromCString(text, again);
    EXPECT_EQ(again, bytes);
}

TEST(Utf8, AgreesWithIcuWhereverAnErrorStands) {
    using namespace std::string_literals;
    const std::string errors[] = {
        "\x80",         "\xBF\xBF", "\xC0\xAF",         "\xC1\xBF",     "\xC2", "\xE0\x80\xAF",
        "\xE0\x9F\xBF", "\xE1\x80", "\xED\xA0\x80",     "\xED\xBF\xBF", "\xEF", "\xF0\x8F\xBF\xBF",
        "\xF0\x90\x80", "\xF1\x80", "\xF4\x90\x80\x80", "\xF5\x80",     "\xFF", "\xC3" + std::string(130, '\x80')};
    for (const auto& filler : {"a"s, "é"s, "語"s, "😀"s, "aé"s, "n語é😀"s})
        for (const std::string& error : errors)
            for (std::size_t before = 0; before < 200; ++before) {
                const std::string start = std::string(before % 4, 'a') + Times(before, filler) + error;
                ASSERT_NO_FATAL_FAILURE(CheckDecoding(start));
                ASSERT_NO_FATAL_FAILURE(CheckDecoding(start + Times(100, filler)));
            }
    for (const auto& filler : {u"a"s, u"é"s, u"語"s, u"😀"s, u"aé"s, u"n語é😀"s})
        for (const auto& error : {u"\xD800"s, u"\xDFFF"s, u"\xDBFF\xD800\xDC00"s, u"\xD800\xDC00\xDC00"s, u"ÿ\uFFFF"s})
            for (std::size_t before = 0; before < 200; ++before) {
                const std::u16string start = std::u16string(before % 2, u'a') + Times(before, filler) + error;
                for (const std::size_t after : {0U, 1U, 2U, 3U, 9U, 100U})
                    ASSERT_NO_FATAL_FAILURE(CheckEncoding(start + Times(after, filler)));
            }
}

}  // namespace
