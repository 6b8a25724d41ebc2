#include "RkUtilities/foundation/TextSearch.h"

#include "RkUtilities/foundation/UnitBlock.h"

#include <vector>

namespace rk {

namespace {

constexpr std::size_t kNotFound = std::u16string_view::npos;

/// How units compare: as they are.
struct ExactUnits {
    char16_t operator[](char16_t unit) const noexcept { return unit; }
    [[nodiscard]] platform::CaseSources SourcesOf(char16_t unit) const noexcept { return {{unit}, 1}; }
};

/// The units that may stand for one unit of the text sought, for eight units of the text at once.
class Candidates {
public:
    explicit Candidates(const platform::CaseSources& sources) noexcept : m_count(sources.count)
    {
        for (std::size_t i = 0; i < m_count; ++i)
            m_blocks[i] = FilledBlock(sources.units[i]);
    }
    [[nodiscard]] UnitMask In(UnitBlock block) const noexcept
    {
        UnitMask mask = block == m_blocks[0];
        for (std::size_t i = 1; i < m_count; ++i)
            mask |= block == m_blocks[i];
        return mask;
    }

private:
    std::size_t m_count;
    UnitBlock m_blocks[platform::CaseSources::kMost]{};
};

/// Knuth, Morris and Pratt: linear for every text, used where candidates turn out to be many and false.
template <class Map>
std::size_t FindLinear(std::u16string_view text, std::u16string_view sought, std::size_t start, const Map& map)
{
    std::vector<std::size_t> border(sought.size() + 1,
                                    0);  // of the first i units, the longest that begins and ends them
    for (std::size_t i = 1, length = 0; i < sought.size(); ++i) {
        while (length > 0 && map[sought[i]] != map[sought[length]])
            length = border[length];
        if (map[sought[i]] == map[sought[length]])
            ++length;
        border[i + 1] = length;
    }
    for (std::size_t i = start, matched = 0; i < text.size(); ++i) {
        const char16_t unit = map[text[i]];
        while (matched > 0 && unit != map[sought[matched]])
            matched = border[matched];
        if (unit == map[sought[matched]])
            ++matched;
        if (matched == sought.size())
            return i + 1 - matched;
    }
    return kNotFound;
}

template <class Map>
class Search {
public:
    Search(std::u16string_view text, std::u16string_view sought, const Map& map) noexcept
        : m_text(text), m_sought(sought), m_map(map), m_first(map[sought.front()]), m_last(map[sought.back()])
    {}

    std::size_t From(std::size_t start)
    {
        const std::size_t lastOffset = m_sought.size() - 1;
        const std::size_t end = m_text.size() - lastOffset;  // of the places where a match may begin
        const Candidates first(m_map.SourcesOf(m_first));
        const Candidates last(m_map.SourcesOf(m_last));
        std::size_t at = start;
        for (; at + kBlockUnits <= end; at += kBlockUnits) {
            const char16_t* units = m_text.data() + at;
            if (!AnyLane(first.In(LoadBlock(units)) & last.In(LoadBlock(units + lastOffset))))
                continue;
            const std::size_t found = Among(at, at + kBlockUnits);
            if (found != kNotFound)
                return found;
            if (m_compared > 8 * (at - start) + kFreeUnits)
                return FindLinear(m_text, m_sought, at + kBlockUnits, m_map);
        }
        return Among(at, end);
    }

private:
    static constexpr std::size_t kFreeUnits = 4096;

    std::size_t Among(std::size_t begin, std::size_t end)
    {
        for (std::size_t at = begin; at < end; ++at) {
            if (m_map[m_text[at]] == m_first && Matches(at))
                return at;
        }
        return kNotFound;
    }

    bool Matches(std::size_t at)
    {
        for (std::size_t i = 1; i < m_sought.size(); ++i) {
            if (m_map[m_text[at + i]] != m_map[m_sought[i]]) {
                m_compared += i;
                return false;
            }
        }
        return true;
    }

    std::u16string_view m_text;
    std::u16string_view m_sought;
    const Map& m_map;
    char16_t m_first;
    char16_t m_last;
    std::size_t m_compared = 0;  // units looked at in vain
};

template <class Map>
std::size_t FindWith(std::u16string_view text, std::u16string_view sought, std::size_t start, const Map& map)
{
    if (start > text.size() || sought.size() > text.size() - start)
        return kNotFound;
    return sought.empty() ? start : Search<Map>(text, sought, map).From(start);
}

}  // namespace

std::size_t FindUnits(std::u16string_view text, std::u16string_view sought, std::size_t start)
{
    return FindWith(text, sought, start, ExactUnits());
}

std::size_t FindMappedUnits(std::u16string_view text, std::u16string_view sought, std::size_t start,
                            const platform::CaseTable& table)
{
    return FindWith(text, sought, start, table);
}

}  // namespace rk
