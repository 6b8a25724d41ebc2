#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>

/// Unicode's data about single UTF-16 code units, from ICU except for white space. Safe from any thread. Surrogates are
/// neither cased nor letters nor blanks.
namespace rk::platform {

/// The code units that a table maps to the same unit.
struct CaseSources {
    static constexpr std::size_t kMost = 8;  // Unicode 15 has at most 4
    std::array<char16_t, kMost> units{};
    std::size_t count = 0;
};

/// A mapping of code units to code units, in blocks: blocks without case share a block. Made by the first call that
/// needs it, in its own memory, so that making it does not fail while a text is being changed; constant afterwards.
class CaseTable {
public:
    constexpr explicit CaseTable(std::int32_t (*mapping)(std::int32_t codePoint)) noexcept : m_mapping(mapping) {}
    const CaseTable& Made() noexcept;  ///< The table with its content.

    char16_t operator[](char16_t unit) const noexcept {
        return static_cast<char16_t>(unit + m_offsets[m_blocks[unit / kBlockUnits]][unit % kBlockUnits]);
    }
    [[nodiscard]] CaseSources SourcesOf(char16_t mapped) const noexcept;  ///< Every unit that maps to `mapped`.

private:
    struct Change {
        char16_t mapped;
        char16_t unit;
    };
    static constexpr unsigned kBlockUnits = 128;
    static constexpr std::size_t kMostBlocks = 145;    // the blocks that may have case, and the shared block
    static constexpr std::size_t kMostChanged = 4096;  // Unicode 15 has fewer than 1500

    void Make() noexcept;

    std::int32_t (*m_mapping)(std::int32_t codePoint);
    std::atomic<bool> m_isMade = false;
    std::array<std::uint8_t, 0x10000 / kBlockUnits> m_blocks{};
    std::array<std::array<char16_t, kBlockUnits>, kMostBlocks> m_offsets{};  // modulo 65,536
    std::array<Change, kMostChanged> m_changed{};  // the units that change, ascending by what they map to
    std::size_t m_changedCount = 0;
};

const CaseTable& UpperCase() noexcept;
const CaseTable& LowerCase() noexcept;
/// Simple case folding: texts whose folded units are equal differ in case only.
const CaseTable& FoldedCase() noexcept;

/// Categories L* and Nd.
bool IsAlphaNumeric(char16_t unit) noexcept;

constexpr bool IsAsciiDigit(char16_t unit) noexcept { return unit >= u'0' && unit <= u'9'; }

/// The property White_Space.
constexpr bool IsWhiteSpace(char16_t unit) noexcept {
    if (unit < 0x80)
        return unit == u' ' || (unit >= u'\t' && unit <= u'\r');
    return unit == 0x85 || unit == 0xA0 || unit == 0x1680 || (unit >= 0x2000 && unit <= 0x200A) || unit == 0x2028 ||
           unit == 0x2029 || unit == 0x202F || unit == 0x205F || unit == 0x3000;
}

}  // namespace rk::platform
