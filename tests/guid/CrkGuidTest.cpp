#include "RkUtilities/guid/CrkGuid.h"

#include <gtest/gtest.h>

#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <bit>
#include <string>
#include <string_view>
#include <thread>
#include <unordered_set>
#include <vector>

namespace {

using ByteArray = std::array<std::uint8_t, 16>;

constexpr CFUUIDBytes kBytes = {0x33, 0x22, 0x11, 0x00, 0x55, 0x44, 0x77, 0x66,
                                0x88, 0x99, 0xAA, 0xBB, 0xCC, 0xDD, 0xEE, 0xFF};
constexpr std::u16string_view kText = u"00112233-4455-6677-8899-AABBCCDDEEFF";

struct TextCase {
    std::u16string_view text;
    bool isGuid;
};
constexpr TextCase kTextCases[] = {
    {kText, true},
    {u"00112233-4455-6677-8899-aabbccddeeff", true},
    {u"00112233-4455-6677-8899-aAbBcCdDeEfF", true},
    {u"{00112233-4455-6677-8899-AABBCCDDEEFF}", true},
    {u"{00112233-4455-6677-8899-AABBCCDDEEFF]", true},     // the last unit asked to be "}"
    {u"00112233-4455-6677-8899-AABBCCDDEEFF}", false},     // a closing brace taken without an opening one
    {u"{00112233-4455-6677-8899-AABBCCDDEEFF", false},     // the last digit taken for a brace, but kept
    {u"{{00112233-4455-6677-8899-AABBCCDDEEFF}}", false},  // braces stripped twice
    {u"", false},
    {u"{", false},  // first and last unit the same one
    {u"{}", false},
    {u" 00112233-4455-6677-8899-AABBCCDDEEFF", false},
    {u"00112233-4455-6677-8899-AABBCCDDEEFF ", false},
    {u"00112233445566778899AABBCCDDEEFF", false},
    {u"0011-22334455-6677-8899-AABBCCDDEEFF", false},  // hyphens counted, not placed
};

TEST(Guid, IsReadFromTheDocumentedTextsAndNoOthers)
{
    for (const auto& [text, isGuid] : kTextCases) {
        SCOPED_TRACE(CString(text));
        EXPECT_EQ(CrkGuid::StringToGuid(text), isGuid ? kBytes : CrkGuid::c_nullGuid);
        EXPECT_EQ(CrkGuid(CString(text)).IsNull(), !isGuid);
    }
}

TEST(Guid, TakesExactlyTheDigitsAndHyphensInEveryPlaceWhateverTheUnit)
{
    constexpr std::u16string_view kDigits = u"0123456789abcdefABCDEF";
    for (std::size_t place = 0; place < kText.size(); ++place) {
        const bool isHyphen = kText[place] == u'-';
        const unsigned int unitEnd = place == 7 || place == 8 ? 0x10000 : 0x200;  // all units once in a digit's place
        for (unsigned int unit = 0; unit < unitEnd; ++unit) {
            std::u16string text(kText);
            text[place] = static_cast<char16_t>(unit);
            const bool isAllowed = isHyphen ? unit == u'-' : kDigits.find(text[place]) != std::u16string_view::npos;
            ASSERT_EQ(CrkGuid::StringToGuid(text) != CrkGuid::c_nullGuid, isAllowed) << place << ", unit " << unit;
        }
    }
}

TEST(Guid, IsWrittenInUpperCaseWithOrWithoutBraces)
{
    EXPECT_EQ(CrkGuid::GuidToString(kBytes), kText);
    EXPECT_EQ(CString(CrkGuid(kBytes)), kText);
    EXPECT_EQ(CrkGuid::GuidToStringWithBraces(kBytes), u"{" + CString(kText) + u"}");
    EXPECT_EQ(CrkGuid::GuidToString(CrkGuid::c_nullGuid), u"00000000-0000-0000-0000-000000000000");
}

TEST(Guid, ComesBackFromItsTextWithEveryValueInEveryByte)
{
    for (std::size_t place = 0; place < 16; ++place) {
        for (unsigned int value = 1; value <= 0xFF; ++value) {
            ByteArray bytes = {};
            bytes[place] = static_cast<std::uint8_t>(value);
            const auto guid = std::bit_cast<CFUUIDBytes>(bytes);
            ASSERT_EQ(CrkGuid::StringToGuid(CrkGuid::GuidToString(guid)), guid);
            ASSERT_FALSE(CrkGuid(guid).IsNull());
            ASSERT_FALSE(CrkGuid::AreGuidsEqual(guid, CrkGuid::c_nullGuid));
            ASSERT_NE(std::hash<CrkGuid>()(guid), std::hash<CrkGuid>()(CrkGuid::c_nullGuid));
        }
    }
}

TEST(Guid, IsVersionFourInTheOrderOfTheBytesWithEveryOtherBitInUse)
{
    ByteArray everSet = {}, everClear = {};
    for (int i = 0; i < 1000; ++i) {
        const auto bytes = std::bit_cast<ByteArray>(CrkGuid().Bytes());
        ASSERT_EQ(bytes[6] & 0xF0, 0x40);
        ASSERT_EQ(bytes[8] & 0xC0, 0x80);
        for (std::size_t b = 0; b < 16; ++b) {
            everSet[b] = static_cast<std::uint8_t>(everSet[b] | bytes[b]);
            everClear[b] = static_cast<std::uint8_t>(everClear[b] | ~bytes[b]);
        }
    }
    for (std::size_t b = 0; b < 16; ++b) {
        EXPECT_EQ(everSet[b], b == 6 ? 0x4F : b == 8 ? 0xBF : 0xFF) << b;
        EXPECT_EQ(everClear[b], b == 6 ? 0xBF : b == 8 ? 0x7F : 0xFF) << b;
    }
}

TEST(Guid, IsNewInEveryThread)
{
    constexpr std::size_t kThreadCount = 4, kGuidCount = 2000;
    std::array<std::vector<CrkGuid>, kThreadCount> made;
    {
        std::vector<std::jthread> threads;
        threads.reserve(kThreadCount);
        for (auto& guids : made)
            threads.emplace_back([&guids] { guids = std::vector<CrkGuid>(kGuidCount); });
    }
    std::unordered_set<CrkGuid> all;
    for (const auto& guids : made)
        all.insert(guids.begin(), guids.end());
    EXPECT_EQ(all.size(), kThreadCount * kGuidCount);
}

/// The texts of `count` GUIDs made in a forked child, and in a child of that.
std::vector<std::string> GuidsOfChildren(int count)
{
    std::array<int, 2> ends = {};
    if (pipe(ends.data()) != 0)
        return {};
    const pid_t child = fork();
    if (child == 0) {
        const pid_t grandchild = fork();
        for (int i = 0; i < count; ++i) {
            const std::string line = CrkGuid::GuidToString(CrkGuid::CreateGuid()).ToUtf8();
            if (write(ends[1], line.data(), line.size()) != static_cast<ssize_t>(line.size()))
                _exit(1);
        }
        if (grandchild != 0)
            waitpid(grandchild, nullptr, 0);
        _exit(0);
    }
    close(ends[1]);
    std::vector<std::string> texts;
    std::string text(kText.size(), '\0');
    while (read(ends[0], text.data(), text.size()) == static_cast<ssize_t>(text.size()))
        texts.push_back(text);
    close(ends[0]);
    waitpid(child, nullptr, 0);
    return texts;
}

TEST(Guid, IsNewOnBothSidesOfAFork)
{
    constexpr int kGuidCount = 20;
    const CrkGuid stocksThisThread;
    std::vector<std::string> all = GuidsOfChildren(kGuidCount);
    EXPECT_EQ(all.size(), 2u * kGuidCount);
    for (int i = 0; i < kGuidCount; ++i)
        all.push_back(CString(CrkGuid()).ToUtf8());
    EXPECT_EQ(std::unordered_set<std::string>(all.begin(), all.end()).size(), 3u * kGuidCount);
}

}  // namespace
