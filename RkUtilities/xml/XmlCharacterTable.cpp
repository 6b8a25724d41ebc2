#include "RkUtilities/xml/XmlCharacterTable.h"

#include "RkUtilities/xml/XmlCharacterRanges.h"

#include <iterator>

namespace rk {

namespace {

constexpr std::size_t kBlockUnits = XmlCharacterTable::kBlockUnits;

struct Classes {
    std::uint8_t of[0x10000]{};
};

template <std::size_t N>
constexpr void Mark(Classes& classes, const CodeUnitRange (&ranges)[N], XmlCharacterClass mark)
{
    for (const CodeUnitRange& range : ranges) {
        for (std::uint32_t unit = range.first; unit <= range.last; ++unit)
            classes.of[unit] = static_cast<std::uint8_t>(classes.of[unit] | mark);
    }
}

constexpr Classes MarkAll()
{
    constexpr CodeUnitRange kPunctuation[] = {{'-', '-'}, {'.', '.'}, {'_', '_'}};
    constexpr CodeUnitRange kColon[] = {{':', ':'}};
    Classes classes{};
    Mark(classes, kBaseChar, XmlBaseChar);
    Mark(classes, kIdeographic, XmlIdeographic);
    Mark(classes, kCombiningChar, XmlCombiningChar);
    Mark(classes, kDigit, XmlDigit);
    Mark(classes, kExtender, XmlExtender);
    Mark(classes, kPunctuation, XmlNcNamePunctuation);
    Mark(classes, kColon, XmlColon);
    return classes;
}

constexpr bool IsSameBlock(const XmlCharacterTable& table, std::size_t known, const Classes& all, std::size_t first)
{
    for (std::size_t i = 0; i < kBlockUnits; ++i) {
        if (table.classes[known * kBlockUnits + i] != all.of[first + i])
            return false;
    }
    return true;
}

constexpr XmlCharacterTable Folded(const Classes& all)
{
    XmlCharacterTable table;
    std::size_t count = 0;
    for (std::size_t block = 0; block < std::size(table.blocks); ++block) {
        const std::size_t first = block * kBlockUnits;
        std::size_t known = 0;
        while (known < count && !IsSameBlock(table, known, all, first))
            ++known;
        table.blocks[block] = static_cast<std::uint8_t>(known);
        if (known < count)
            continue;
        for (std::size_t i = 0; i < kBlockUnits; ++i)
            table.classes[known * kBlockUnits + i] = all.of[first + i];  // past the most different blocks: no constant
        ++count;
    }
    return table;
}

}  // namespace

constinit const XmlCharacterTable kXmlCharacters = Folded(MarkAll());

}  // namespace rk
