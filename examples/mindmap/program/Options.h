#pragma once

#include <RkUtilities/foundation/CString.h>

#include <string_view>
#include <vector>

namespace mindmap {

/// What a command asks for. Paths that it does not name are empty; in the others, placeholders are expanded
/// (ExpandPlaceholders).
struct Options {
    CString outlinePath;
    CString mapPath;
    CString logFolder;
    CString locale;                    ///< "" for that of the environment
    std::vector<CString> assignments;  ///< what is to be set: "theme=dark"
    bool mayReplaceMap = false;
    bool wantsSettings = false;
    bool wantsHelp = false;
    bool expandsLinks = false;  ///< placeholders in the links of the outline
};

/// The outline or map that stands for standard input or output.
inline constexpr char16_t kStandardStream[] = u"-";

/// A command that is not understood.
struct UsageError {
    CString reason;
};

/// Reads the arguments, as the shell gave them and without the program's name. Options may stand anywhere; after "--"
/// nothing is an option. "--help" ends the reading.
///
/// @throws UsageError
Options ReadOptions(const std::vector<std::string_view>& arguments);

/// What "--help" prints: one screen of 24 lines of 80 characters.
extern const char kHelp[];

}  // namespace mindmap
