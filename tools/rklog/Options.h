#pragma once

#include "rklog/Filter.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace rklog {

/// What a command asks for.
struct Options {
    enum class Format { Text, Json, Csv, Html, Xml };
    enum class Colors { Automatic, Always, Never };

    std::vector<std::string> paths;  ///< native; "-" for standard input
    Filter filter;
    std::optional<std::size_t> last;
    Format format = Format::Text;
    Colors colors = Colors::Automatic;
    std::string locale;  ///< of the dates; "" when it is to be recognised
    bool counts = false;
    bool wantsStats = false;
    bool follows = false;
    bool wantsHelp = false;
    bool wantsVersion = false;
};

/// Reads the arguments, as the shell gave them and without the program's name. Options may stand anywhere, with their
/// values behind "=" or as the next argument; after "--" nothing is an option. "--help" ends the reading.
///
/// @param nowUtc  for times that are told from now: "2h", "21:52"
/// @throws std::invalid_argument  whose text tells what is not understood
[[nodiscard]] Options ReadOptions(const std::vector<std::string_view>& arguments, Seconds nowUtc);

/// What "--help" prints.
extern const std::string_view kHelp;

}  // namespace rklog
