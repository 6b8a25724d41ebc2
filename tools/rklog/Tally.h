#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace rklog {

/// Counts texts in constant memory: when there are too many different texts, the rarer half is forgotten.
class Tally {
public:
    using Row = std::pair<std::string, std::uint64_t>;

    explicit Tally(std::size_t mostTexts = 200'000) : m_mostTexts(mostTexts) {}

    void Count(std::string_view text);
    /// The rows with the highest counts, the highest first, then by text.
    [[nodiscard]] std::vector<Row> Highest(std::size_t rowCount) const;
    /// By how much a count may be too low, and how often a text without a row may have been counted.
    [[nodiscard]] std::uint64_t PossibleError() const { return m_possibleError; }
    [[nodiscard]] std::size_t RowCount() const { return m_counts.size(); }

private:
    void ForgetRarer();

    std::size_t m_mostTexts;
    std::map<std::string, std::uint64_t, std::less<>> m_counts;
    std::uint64_t m_possibleError = 0;
};

}  // namespace rklog
