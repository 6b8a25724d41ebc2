#include "RkUtilities/foundation/TextSearch.h"

#include <algorithm>
#include <vector>

namespace rk {

namespace {

constexpr std::size_t kNotFound = std::u16string_view::npos;

}  // namespace

template <class Map>
TextSearch<Map>::TextSearch(std::u16string_view text, std::u16string_view sought, const Map& map) noexcept
    : m_text(text), m_sought(sought), m_map(map)
{
    if (sought.empty())
        return;
    m_first = Candidates(map.SourcesOf(map[sought.front()]));
    m_last = Candidates(map.SourcesOf(map[sought.back()]));
}

template <class Map>
std::size_t TextSearch<Map>::From(std::size_t start)
{
    if (start > m_text.size() || m_sought.size() > m_text.size() - start)
        return kNotFound;
    if (m_sought.empty())
        return start;
    m_origin = std::min(m_origin, start);
    const Candidates first = m_first;  // for the loop to keep in registers
    const Candidates last = m_last;
    const std::size_t lastOffset = m_sought.size() - 1;
    const std::size_t end = m_text.size() - lastOffset;  // of the places where a match may begin
    std::size_t at = start;
    for (; at + kBlockUnits <= end; at += kBlockUnits) {
        const char16_t* const units = m_text.data() + at;
        const UnitMask candidates = first.In(LoadBlock(units)) & last.In(LoadBlock(units + lastOffset));
        if (!AnyLane(candidates))
            continue;
        const std::size_t found = AmongLanes(at, candidates);
        if (found != kNotFound)
            return found;
        if (m_compared > 8 * (at - m_origin) + kFreeUnits)
            return FindLinear(at + kBlockUnits);
    }
    return Among(at, end);
}

template <class Map>
std::size_t TextSearch<Map>::AmongLanes(std::size_t at, UnitMask candidates)
{
    for (std::size_t lane = FirstLane(candidates); lane < kBlockUnits; lane = FirstLane(candidates)) {
        if (MatchesBetweenEnds(at + lane))
            return at + lane;
        candidates[lane] = 0;
    }
    return kNotFound;
}

template <class Map>
std::size_t TextSearch<Map>::Among(std::size_t begin, std::size_t end)
{
    for (std::size_t at = begin; at < end; ++at) {
        if (m_map[m_text[at]] == m_map[m_sought.front()] &&
            m_map[m_text[at + m_sought.size() - 1]] == m_map[m_sought.back()] && MatchesBetweenEnds(at))
            return at;
    }
    return kNotFound;
}

template <class Map>
bool TextSearch<Map>::MatchesBetweenEnds(std::size_t at)
{
    for (std::size_t i = 1; i + 1 < m_sought.size(); ++i) {
        if (m_map[m_text[at + i]] != m_map[m_sought[i]]) {
            m_compared += i;
            return false;
        }
    }
    return true;
}

/// Knuth, Morris and Pratt: linear for every text, used where candidates turn out to be many and false.
template <class Map>
std::size_t TextSearch<Map>::FindLinear(std::size_t start) const
{
    std::vector<std::size_t> border(m_sought.size() + 1,
                                    0);  // of the first i units, the longest that begins and ends them
    for (std::size_t i = 1, length = 0; i < m_sought.size(); ++i) {
        while (length > 0 && m_map[m_sought[i]] != m_map[m_sought[length]])
            length = border[length];
        if (m_map[m_sought[i]] == m_map[m_sought[length]])
            ++length;
        border[i + 1] = length;
    }
    for (std::size_t i = start, matched = 0; i < m_text.size(); ++i) {
        const char16_t unit = m_map[m_text[i]];
        while (matched > 0 && unit != m_map[m_sought[matched]])
            matched = border[matched];
        if (unit == m_map[m_sought[matched]])
            ++matched;
        if (matched == m_sought.size())
            return i + 1 - matched;
    }
    return kNotFound;
}

template class TextSearch<ExactUnits>;
template class TextSearch<platform::CaseTable>;

std::size_t FindUnits(std::u16string_view text, std::u16string_view sought, std::size_t start)
{
    return TextSearch(text, sought, kExactUnits).From(start);
}

std::size_t FindMappedUnits(std::u16string_view text, std::u16string_view sought, std::size_t start,
                            const platform::CaseTable& table)
{
    return TextSearch(text, sought, table).From(start);
}

}  // namespace rk
