#pragma once

#include "RkUtilities/RkExport.h"

#include <string>

namespace rk::platform {

/// Loads at once what calls of the shared library would load when they first need it: the modules on ICU (case of
/// letters, order of names, numbers and dates of a locale), on expat (log settings) and on SQLite (preferences).
///
/// Without this call each is loaded by the first call that needs it, which then takes some milliseconds longer. A module
/// that is missing then, or of another version, ends the program with a line on standard error (`std::abort`), since
/// that is an incomplete installation. An application calls this
///
/// - at its start, to check its installation, or while it waits for something else, to choose where the time goes;
/// - before it shuts itself off from the file system (`chroot`, a sandbox), and before an update may replace the files
///   of the library under a running process.
///
/// @return "" when everything is there; else which file is at fault and why, in one line. With the static library always
/// "". May be called again. Throws `std::bad_alloc` only. Safe from any thread, also in static initialisers.
[[nodiscard]] RK_EXPORT std::string LoadServices();

}  // namespace rk::platform
