#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

/// Unicode's data about single UTF-16 code units, from ICU, as tables that cost one look-up. Built by the first call
/// that needs them, never changed afterwards, safe from any thread. Surrogates are neither cased nor letters nor
/// blanks.
namespace rk::platform {

/// The code units that a table maps to one.
struct CaseSources {
    static constexpr std::size_t kMost = 8;  // Unicode 15 has at most 4
    std::array<char16_t, kMost> units{};
    std::size_t count = 0;
};

/// A mapping of code units to code units.
class CaseTable {
public:
    explicit CaseTable(std::int32_t (*mapping)(std::int32_t codePoint)) noexcept;

    char16_t operator[](char16_t unit) const noexcept { return m_mapped[unit]; }
    /// Every unit that maps to `mapped`.
    [[nodiscard]] CaseSources SourcesOf(char16_t mapped) const noexcept;

private:
    struct Change {
        char16_t mapped;
        char16_t unit;
    };
    static constexpr std::size_t kMostChanged = 4096;  // Unicode 15 has fewer than 1500

    std::array<char16_t, 0x10000> m_mapped{};      // one load a unit, for 128 KB
    std::array<Change, kMostChanged> m_changed{};  // the units that change, ascending by what they map to
    std::size_t m_changedCount = 0;
};

// A table takes no memory from the heap, so that making one does not fail while a text is being changed.
const CaseTable& UpperCase();
const CaseTable& LowerCase();
/// Simple case folding: texts whose folded units are equal differ in case only.
const CaseTable& FoldedCase();

/// Categories L* and Nd.
bool IsAlphaNumeric(char16_t unit);
/// The property White_Space, of units from 0x80 on.
bool IsWhiteSpaceBeyondAscii(char16_t unit);
/// The property White_Space.
inline bool IsWhiteSpace(char16_t unit)
{
    return unit < 0x80 ? unit == u' ' || (unit >= u'\t' && unit <= u'\r') : IsWhiteSpaceBeyondAscii(unit);
}

}  // namespace rk::platform
