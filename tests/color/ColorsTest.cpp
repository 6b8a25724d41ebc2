#include "RkUtilities/color/CrkBaseColorTable.h"
#include "RkUtilities/color/CrkColorConverter.h"
#include "RkUtilities/platform/StringTables.h"
#include "RkUtilities/platform/UserLocale.h"

#include "tests/support/ScopedFolder.h"

#include <climits>
#include <cstdlib>
#include <gtest/gtest.h>

namespace {

using Colors = CrkColorConverter;

TEST(Colors, ChangeTheirForm)
{
    EXPECT_EQ(Colors::COLORREFToARGB(0x00332211), 0xFF112233U);
    EXPECT_EQ(Colors::COLORREFToARGB(0xFF000000), 0xFF000000U);
    EXPECT_EQ(Colors::ARGBToCOLORREF(0x80112233), 0x00332211U);
    EXPECT_EQ(Colors::ARGBToCOLORREF(Colors::COLORREFToARGB(0x00123456)), 0x00123456U);
}

TEST(Colors, HaveTheExactShadeForEveryChannelValueAndPercentage)
{
    for (int percent = -100; percent <= 100; ++percent) {
        for (int x = 0; x < 256; ++x) {
            // Half up, from the exact fraction: twice the numerator and the denominator, no intermediate rounding.
            const int way = percent > 0 ? (255 - x) * percent : x * -percent;
            int moved = way / 100;
            moved += static_cast<int>(2 * (way - 100 * moved) >= 100);
            const auto channel = static_cast<unsigned int>(percent > 0 ? x + moved : x - moved);
            const auto value = static_cast<unsigned int>(x);
            ASSERT_EQ(Colors::ShadeOf(0x5A000000U | value << 16U | value << 8U | value, percent),
                      0x02000000U | channel << 16U | channel << 8U | channel)
                << x << ' ' << percent;
        }
    }
    EXPECT_EQ(Colors::ShadeOf(0x00000064, 50), 0x028080B2U);  // each channel by itself
    for (const int percent : {101, -101, INT_MAX, INT_MIN})
        EXPECT_EQ(Colors::ShadeOf(0xFF123456, percent), 0x02123456U);
}

class Table : public CrkBaseColorTable {
public:
    explicit Table(int count) : m_count(count) {}
    ColorEntry const* GetColorEntries() override { return m_entries; }
    int GetColorCount() override { return m_count; }

private:
    ColorEntry m_entries[4] = {
        {0x80FF8000, "Never"}, {0xFFFF8000, "Orange"}, {0xFFFF8000, "Second"}, {0xFF000000, nullptr}};
    int m_count;
};

TEST(Colors, AreNamedInTheUsersLanguage)
{
    const ScopedFolder folder;
    folder.Write("root.txt", "root { Orange { \"Orange\" } Second { \"Second\" } Never { \"Never\" } }");
    folder.Write("de.txt", "de { Orange { \"Apfelsine\" } }");
    const std::string path = folder.Path();
    ASSERT_EQ(std::system(("cd '" + path + "' && genrb -q root.txt de.txt > /dev/null").c_str()), 0);
    EXPECT_EQ(CrkBaseColorTable::GetColorText(0x000080FF), u"{FF,80,00}");
    rk::platform::SetStringTables(path.substr(0, path.size() - 1));
    rk::platform::SetUserLocale("de_DE");
    Table table(4);
    CrkBaseColorTable::Set(&table);
    EXPECT_EQ(CrkBaseColorTable::Get(), &table);
    EXPECT_EQ(CrkBaseColorTable::GetColorText(0x770080FF), u"Apfelsine");
    EXPECT_EQ(CrkBaseColorTable::GetColorText(0x00000000), u"{00,00,00}");
    Table empty(-1);
    CrkBaseColorTable::Set(&empty);
    EXPECT_EQ(CrkBaseColorTable::GetColorText(0x000080FF), u"{FF,80,00}");
    CrkBaseColorTable::Set(nullptr);
    rk::platform::SetUserLocale("");
    rk::platform::SetStringTables("");
}

}  // namespace
