#pragma once

#include <RkUtilities/color/CrkBaseColorTable.h>
#include <RkUtilities/foundation/CString.h>

#include <array>
#include <cstddef>

namespace mindmap {

/// The colors that branches take in turn, and the keys of their names in the string tables ("texts/"). Each is dark
/// enough for white text on it, with a contrast of 4.5 or more.
inline constexpr std::array<CrkBaseColorTable::ColorEntry, 8> kBranchColors = {{
    {0xFF2B6CB0, "Blue"},
    {0xFFC2452D, "Brick"},
    {0xFF2F7D4F, "Green"},
    {0xFF7A4AA8, "Violet"},
    {0xFFA1640A, "Ochre"},
    {0xFF0F7C82, "Teal"},
    {0xFFB03A6B, "Raspberry"},
    {0xFF4E6072, "Slate"},
}};

/// The position in kBranchColors of a branch's color. Branches count from 0.
constexpr std::size_t ColorIndexOf(int branch) { return static_cast<std::size_t>(branch) % kBranchColors.size(); }

/// A color as 0xRRGGBB, made lighter (percent above 0) or darker as `CrkColorConverter::ShadeOf` does.
unsigned int ShadeOfRgb(unsigned int rgb, int percent);

/// A color's name in the user's language, English where there is no table for that; its hexadecimal bytes for a color
/// that has no name.
CString NameOfRgb(unsigned int rgb);

/// While it lives, the branches' colors are the library's color table, and the string tables are those that came with
/// the program: they are found from where the program itself lies, built or installed.
class ScopedColorNames {
public:
    ScopedColorNames();
    ~ScopedColorNames();
    ScopedColorNames(const ScopedColorNames&) = delete;
    ScopedColorNames& operator=(const ScopedColorNames&) = delete;

    /// False when the string tables are missing, damaged or made for another processor: the map misses their words.
    [[nodiscard]] bool AreThere() const { return m_areThere; }

private:
    bool m_areThere;
};

}  // namespace mindmap
