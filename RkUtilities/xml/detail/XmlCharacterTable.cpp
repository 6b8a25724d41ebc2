#include "RkUtilities/xml/detail/XmlCharacterTable.h"

#include "RkUtilities/xml/detail/XmlCharacterRanges.h"

namespace rk {

namespace {

using Classes = std::array<std::uint8_t, 0x10000>;

template <std::size_t N>
constexpr void Mark(Classes& classes, const CodeUnitRange (&ranges)[N], int marks)
{
    for (const CodeUnitRange& range : ranges) {
        for (std::uint32_t unit = range.first; unit <= range.last; ++unit)
            classes[unit] = static_cast<std::uint8_t>(classes[unit] | marks);
    }
}

constexpr Classes MarkAll()
{
    constexpr CodeUnitRange kPunctuation[] = {{'-', '.'}, {'_', '_'}}, kUnderscore[] = {{'_', '_'}},
                            kColon[] = {{':', ':'}};
    constexpr int kFollows = XmlNcNameChar | XmlNameChar;
    Classes classes{};
    Mark(classes, kBaseChar, XmlBaseChar | XmlNcNameStart | kFollows);
    Mark(classes, kIdeographic, XmlIdeographic | XmlNcNameStart | kFollows);
    Mark(classes, kCombiningChar, XmlCombiningChar | kFollows);
    Mark(classes, kDigit, XmlDigit | kFollows);
    Mark(classes, kExtender, XmlExtender | kFollows);
    Mark(classes, kPunctuation, kFollows);
    Mark(classes, kUnderscore, XmlNcNameStart);
    Mark(classes, kColon, XmlNameChar);
    return classes;
}

}  // namespace

constinit const Classes kXmlClasses = MarkAll();

}  // namespace rk
