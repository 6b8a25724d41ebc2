#pragma once

#include "RkUtilities/RkExport.h"

#include <string>

namespace rk::platform {

/// Loads at once what calls of the shared library would load when they first need it: the modules on ICU (case of
/// letters, white space, order of names, numbers and dates of a locale, string tables), on expat (log settings) and on
/// SQLite (preferences). They stand beside the library's own file and are looked for nowhere else.
///
/// Without this call each is loaded by the first call that needs it, which then takes some milliseconds longer. A module
/// that is missing then, of another version, or cannot be loaded for lack of memory, ends the program with a line on
/// standard error (`std::abort`). An application calls this
///
/// - at its start, to check its installation, or whenever it waits for something else, to choose where the time goes;
/// - before it shuts itself off from the file system (`chroot`, a sandbox), and where an update may replace the
///   library's files while it runs;
/// - before it forks while other threads may be using the library for the first time: what a child inherits half loaded
///   it cannot load.
///
/// @return "" when everything is there; else which file is at fault and why, in one line. With the static library always
/// "". May be called again. Throws `std::bad_alloc` only. Safe from any thread, also in static initialisers.
[[nodiscard]] RK_EXPORT std::string LoadServices();

}  // namespace rk::platform
