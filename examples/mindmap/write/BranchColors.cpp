#include "mindmap/write/BranchColors.h"

#include <RkUtilities/color/CrkColorConverter.h>
#include <RkUtilities/foundation/StringTables.h>

#include <filesystem>
#include <system_error>

namespace mindmap {

namespace {

class BranchColorTable final : public CrkBaseColorTable {
public:
    ColorEntry const* GetColorEntries() override { return kBranchColors.data(); }
    int GetColorCount() override { return static_cast<int>(kBranchColors.size()); }
};

/// The folder of the program; "" when the system does not tell.
std::filesystem::path ProgramFolder() {
    std::error_code error;
    return std::filesystem::read_symlink("/proc/self/exe", error).parent_path();
}

}  // namespace

unsigned int ShadeOfRgb(unsigned int rgb, int percent) {
    const unsigned int shade = CrkColorConverter::ShadeOf(CrkColorConverter::ARGBToCOLORREF(rgb), percent);
    return CrkColorConverter::COLORREFToARGB(shade) & 0xFFFFFF;
}

CString NameOfRgb(unsigned int rgb) { return CrkBaseColorTable::GetColorText(CrkColorConverter::ARGBToCOLORREF(rgb)); }

ScopedColorNames::ScopedColorNames() {
    static BranchColorTable table;
    CrkBaseColorTable::Set(&table);
    m_areThere = rk::SetStringTables((ProgramFolder() / MINDMAP_TEXTS).lexically_normal().string());
}

ScopedColorNames::~ScopedColorNames() {
    CrkBaseColorTable::Set(nullptr);
    rk::SetStringTables("");
}

}  // namespace mindmap
