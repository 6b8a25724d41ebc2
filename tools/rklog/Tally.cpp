#include "rklog/Tally.h"

#include <algorithm>

namespace rklog {

void Tally::Count(std::string_view text) {
    const auto found = m_counts.find(text);
    if (found != m_counts.end()) {
        ++found->second;
        return;
    }
    if (m_counts.size() == m_mostTexts)
        ForgetRarer();
    m_counts.emplace(text, 1);
}

void Tally::ForgetRarer() {
    std::vector<std::uint64_t> counts;
    counts.reserve(m_counts.size());
    for (const auto& [text, count] : m_counts)
        counts.push_back(count);
    const auto middle = counts.begin() + static_cast<std::ptrdiff_t>(counts.size() / 2);
    std::nth_element(counts.begin(), middle, counts.end());
    std::erase_if(m_counts, [&](const auto& row) { return row.second <= *middle; });
    m_possibleError += *middle;
}

std::vector<Tally::Row> Tally::Highest(std::size_t rowCount) const {
    std::vector<Row> rows(m_counts.begin(), m_counts.end());
    const auto end = rows.begin() + static_cast<std::ptrdiff_t>(std::min(rowCount, rows.size()));
    std::partial_sort(rows.begin(), end, rows.end(), [](const Row& a, const Row& b) {
        return a.second != b.second ? a.second > b.second : a.first < b.first;
    });
    rows.erase(end, rows.end());
    return rows;
}

}  // namespace rklog
