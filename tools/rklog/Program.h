#pragma once

#include <iosfwd>
#include <string_view>
#include <vector>

namespace rklog {

/// Does what the arguments ask for, which are as the shell gave them and without the program's name.
///
/// @param isTerminal  `out` is a terminal
/// @return the exit status: 0 when entries were found, 1 when no entry was, 2 when something failed or is not
/// understood
int RunProgram(const std::vector<std::string_view>& arguments, bool isTerminal, std::ostream& out, std::ostream& err);

}  // namespace rklog
