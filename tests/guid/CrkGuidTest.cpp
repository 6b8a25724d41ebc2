#include "tests/support/InChild.h"
#include "tests/support/Test.h"

#include <bit>
#include <iterator>
#include <set>
#include <span>
#include <unordered_set>

namespace {

using ByteArray = std::array<std::uint8_t, 16>;

constexpr CFUUIDBytes kBytes = {0x33, 0x22, 0x11, 0x00, 0x55, 0x44, 0x77, 0x66,
                                0x88, 0x99, 0xAA, 0xBB, 0xCC, 0xDD, 0xEE, 0xFF};
constexpr std::u16string_view kText = u"00112233-4455-6677-8899-AABBCCDDEEFF";

static_assert(CrkGuid::Parse(u"{00112233-4455-6677-8899-aAbBcCdDeEfF]") == kBytes);  // the last unit asked to be "}"
static_assert(CrkGuid::Parse(u"00112233-4455-6677-8899-AABBCCDDEEFF}") == CrkGuid::c_nullGuid);
static_assert(CrkGuid::Parse(u"{00112233-4455-6677-8899-AABBCCDDEEFF") == CrkGuid::c_nullGuid);
static_assert(CrkGuid::Parse(u"{") == CrkGuid::c_nullGuid && CrkGuid::Parse(u"") == CrkGuid::c_nullGuid);
static_assert(CrkGuid::Literal(u"{00112233-4455-6677-8899-aabbccddeeff}").Bytes() == kBytes);
static_assert(CrkGuid(CrkGuid::c_nullGuid) < CrkGuid(kBytes) &&
              CrkGuid(kBytes) >= CrkGuid::Literal(u"FF112222-4455-6677-8899-AABBCCDDEEFF"));

TEST(Guid, TakesExactlyTheDigitsAndHyphensInEveryPlaceWhateverTheUnit) {
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

TEST(Guid, IsWrittenInUpperCaseAndComesBackWithEveryValueInEveryByte) {
    EXPECT_EQ(CrkGuid(kBytes) + CrkGuid::GuidToStringWithBraces(kBytes), CString(kText) + u"{" + kText + u"}");
    for (unsigned int place = 0; place < 16; ++place) {
        for (unsigned int value = 1; value <= 0xFF; ++value) {
            ByteArray bytes = {};
            bytes[place] = static_cast<std::uint8_t>(value);
            const CrkGuid guid = std::bit_cast<CFUUIDBytes>(bytes), null = CrkGuid::c_nullGuid;
            ASSERT_EQ(CrkGuid(CString(guid)), guid);
            ASSERT_EQ(std::pair(guid.IsNull(), CrkGuid::AreGuidsEqual(guid.Bytes(), {})), std::pair(false, false));
            ASSERT_NE(std::hash<CrkGuid>()(guid), std::hash<CrkGuid>()(null));
        }
    }
}

TEST(Guid, IsNewInEveryThreadAndVersionFourWithEveryOtherBitInUse) {
    constexpr std::size_t kThreadCount = 4, kGuidCount = 2000;
    std::vector<CrkGuid> guids(kThreadCount * kGuidCount, CrkGuid::c_nullGuid);
    std::vector<std::jthread> threads;
    for (std::size_t first = 0; first < guids.size(); first += kGuidCount)
        threads.emplace_back([part = std::span(guids).subspan(first, kGuidCount)] {
            std::ranges::generate(part, [] { return CrkGuid(); });
        });
    threads.clear();
    const std::unordered_set<CrkGuid> all(guids.begin(), guids.end());
    ByteArray everSet = {}, everClear = {};
    for (const CrkGuid& guid : guids) {
        const auto bytes = std::bit_cast<ByteArray>(guid.Bytes());
        for (std::size_t b = 0; b < 16; ++b) {
            everSet[b] = static_cast<std::uint8_t>(everSet[b] | bytes[b]);
            everClear[b] = static_cast<std::uint8_t>(everClear[b] | ~bytes[b]);
        }
    }
    EXPECT_EQ(all.size(), kThreadCount * kGuidCount);
    for (std::size_t b = 0; b < 16; ++b) {
        EXPECT_EQ(everSet[b], b == 6 ? 0x4F : b == 8 ? 0xBF : 0xFF) << b;
        EXPECT_EQ(everClear[b], b == 6 ? 0xBF : b == 8 ? 0x7F : 0xFF) << b;
    }
}

TEST(Guid, IsNewOnEverySideOfAFork) {
    constexpr int kGuidCount = 20;
    const auto make = [] {
        std::string texts;
        for (int i = 0; i < kGuidCount; ++i)
            texts += CString(CrkGuid()).ToUtf8() + '\n';
        return texts;
    };
    const CrkGuid stocksThisThread;
    std::istringstream all(InChild([&] { return InChild(make) + make(); }) + make());
    const std::set<std::string> different(std::istream_iterator<std::string>(all), {});
    EXPECT_EQ(different.size(), 3U * kGuidCount);
}

}  // namespace
