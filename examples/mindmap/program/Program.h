#pragma once

#include <iosfwd>
#include <string_view>
#include <vector>

namespace mindmap {

/// The whole program: reads an outline, draws the map and logs the run, as its "--help" says.
///
/// @param arguments  as the shell gave them, without the program's name.
/// @param in, out    standard input and output, for an outline or a map "-".
/// @return the exit status.
int RunProgram(const std::vector<std::string_view>& arguments, std::istream& in, std::ostream& out, std::ostream& err);

}  // namespace mindmap
