#include "RkUtilities/foundation/CString.h"
#include "RkUtilities/foundation/StUTF8Buffer.h"

#include <gtest/gtest.h>
#include <random>
#include <unicode/unistr.h>
#include <vector>

namespace {

std::u16string IcuDecoded(const std::string& bytes)
{
    const icu::UnicodeString text = icu::UnicodeString::fromUTF8(bytes);
    return {text.getBuffer(), static_cast<std::size_t>(text.length())};
}

std::string IcuEncoded(const std::u16string& units)
{
    std::string bytes;
    return icu::UnicodeString(units.data(), static_cast<std::int32_t>(units.size())).toUTF8String(bytes);
}

TEST(Utf8, GoesThereAndBackForEveryCodePoint)
{
    std::u16string all;
    for (char32_t c = 0; c <= 0x10FFFF; ++c) {
        if (c >= 0xD800 && c <= 0xDFFF)
            continue;
        if (c > 0xFFFF)
            all += static_cast<char16_t>(0xD7C0 + (c >> 10));
        all += static_cast<char16_t>(c > 0xFFFF ? 0xDC00 | (c & 0x3FF) : c);
    }
    const CString text = all;
    const std::string bytes = text.ToUtf8();
    EXPECT_EQ(bytes, IcuEncoded(all));
    EXPECT_EQ(CString(bytes), text);
    std::string again = "what stood here";
    GetStdStringFromCString(text, again);
    EXPECT_EQ(again, bytes);
}

TEST(Utf8, AgreesWithIcuOnRandomTextsWithErrors)
{
    std::mt19937 random(11);
    const std::string_view likely = "\x80\xBF\xA0\x9F\x90\x8F\xC2\xE0\xED\xEF\xF0\xF4\xF5\xC1"
                                    "ab";
    for (int round = 0; round < 3000; ++round) {
        std::string bytes;
        std::u16string units;
        for (std::size_t left = random() % (round % 50 == 0 ? 5000 : 40); left > 0; --left) {
            bytes += random() % 3 == 0 ? likely[random() % likely.size()] : static_cast<char>(random() % 128);
            units += random() % 3 == 0 ? static_cast<char16_t>(0xD780 + random() % 0x900)
                                       : static_cast<char16_t>(random() % 0x900);
        }
        // Exactly its own memory, so that a byte read past the end is found by the address sanitizer.
        const std::vector<char> exact(bytes.begin(), bytes.end());
        ASSERT_EQ(CString(std::string_view(exact.data(), exact.size())), IcuDecoded(bytes))
            << testing::PrintToString(bytes);
        ASSERT_EQ(CString(units).ToUtf8(), IcuEncoded(units));
    }
}

}  // namespace
