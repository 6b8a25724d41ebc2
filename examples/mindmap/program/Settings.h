#pragma once

#include "mindmap/write/Theme.h"

#include <RkUtilities/foundation/CString.h>

#include <utility>
#include <vector>

namespace mindmap {

/// What the program remembers from run to run: "theme", "shapes" and "folder", the last outline's folder. They are
/// the library's preferences of the application "mindmap", the folder for this machine and the others for any.
///
/// Storage that fails costs the memory alone: what is set then holds as long as the program runs.

/// Names of settings and their values.
using SettingList = std::vector<std::pair<CString, CString>>;

/// Takes "theme=dark" and the like apart. "folder=" forgets the folder.
///
/// @throws UsageError for an unknown name or value.
SettingList ReadSettings(const std::vector<CString>& assignments);
void ChangeSettings(const SettingList& changes);

SettingList AllSettings();
/// What was never set, or is no such value any more, is as in a new Design.
Design ChosenDesign();
/// Absolute; "" when no folder was remembered.
CString LastFolder();
/// Remembers the folder that a file is in.
void RememberFolderOf(const CString& path);

/// Where all this is kept; "" when there is no place for it.
CString PlaceOfSettings();
/// What went wrong with keeping it, in a line; "" when nothing did.
CString TroubleWithSettings();

}  // namespace mindmap
