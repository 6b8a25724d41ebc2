#include "tests/support/Test.h"

#include <bit>
#include <cstdlib>

namespace {

using Colors = CrkColorConverter;

TEST(Colors, ChangeTheirFormAndHaveTheExactShadeForEveryChannelValueAndPercentage) {
    EXPECT_EQ(Colors::COLORREFToARGB(0x7F332211), 0xFF112233U);
    EXPECT_EQ(Colors::ARGBToCOLORREF(0x80112233), 0x00332211U);
    for (int percent = -100; percent <= 100; ++percent) {
        for (int x = 0; x < 256; ++x) {
            const int way = percent > 0 ? (255 - x) * percent : x * -percent;
            const auto moved = static_cast<int>(std::lround(way / 100.0));  // a half is exact, and goes up
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

CString Loaded(const char* key, const char* bundle = nullptr) {
    CString text = u"before";
    text.LoadString(key, bundle);
    return text;
}

TEST(Colors, AreNamedInTheUsersLanguage) {
    const ScopedFolder folder;
    folder.Write("root.txt", R"(root { Orange { "Orange" } Second { "Second" } Sky { "Sky blue" } })");
    folder.Write("de.txt", R"(de { Orange { "Apfel\u0000sine" } })");
    const std::string path = folder.Path(".");
    // In the byte order of this processor (genrb may write another order), and in the other order.
    const std::string orders = std::endian::native == std::endian::little ? "own=l other=b" : "own=b other=l";
    const std::string make = "cd '" + path + "' && " + orders + R"( PATH=$PATH:/usr/sbin
        genrb -q root.txt de.txt > /dev/null && mkdir other && for table in root.res de.res; do
            icupkg -t$other $table other/$table && icupkg -t$own $table $table || exit
        done && mkdir mixed && cp root.res other/de.res mixed)";
    ASSERT_EQ(std::system(make.c_str()), 0);
    Table table(4), empty(-1);
    CrkBaseColorTable::Set(&table);
    const ScopedUserLocale austrian("de_AT");
    EXPECT_EQ(CrkBaseColorTable::GetColorText(0x000080FF), u"{FF,80,00}");  // no tables named
    EXPECT_EQ(Loaded("Sky", path.c_str()), u"Sky blue");                    // ICU's fallback to the root
    EXPECT_TRUE(rk::SetStringTables(path));
    EXPECT_EQ(CrkBaseColorTable::GetColorText(0x770080FF), std::u16string_view(u"Apfel\0sine", 10));
    EXPECT_EQ(CrkBaseColorTable::GetColorText(0x00000000), u"{00,00,00}");
    EXPECT_EQ(Loaded("No such key"), u"");
    EXPECT_EQ(Loaded(nullptr), u"");
    EXPECT_EQ(Loaded("Sky", "/none"), u"");
    for (Table* none : {&empty, static_cast<Table*>(nullptr)}) {
        CrkBaseColorTable::Set(none);
        EXPECT_EQ(CrkBaseColorTable::GetColorText(0x000080FF), u"{FF,80,00}");
    }
    EXPECT_FALSE(rk::SetStringTables(path + "/other"));
    EXPECT_FALSE(rk::SetStringTables(path + "/mixed"));  // the root's table alone can be read
    EXPECT_FALSE(rk::SetStringTables("/none"));
    EXPECT_EQ(Loaded("Sky"), u"");
    EXPECT_TRUE(rk::SetStringTables(""));
}

}  // namespace
