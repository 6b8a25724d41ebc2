#pragma once

#include <cstdint>
#include <string>
#include <system_error>

namespace rk::platform {

enum class TakenBy { Anything, Folders };

/// The parts of a name with a number: `start` + `end`, then `start` + " (2)" + `end`, " (3)" and so on. In a name of
/// more than 255 bytes, the start is cut between characters.
struct NumberedName {
    std::string start;
    std::string end;

    /// How many bytes of the start the name with a number has.
    [[nodiscard]] std::size_t StartByteCount(std::int64_t number) const;
    [[nodiscard]] std::string WithNumber(std::int64_t number) const;
    [[nodiscard]] static std::string Suffix(std::int64_t number);  ///< What stands between the parts; "" for 1.
};

/// The least number whose name nothing, or no folder, in the folder has; 1 stands for the name without a number. Links
/// are followed for folders; a link that leads nowhere takes its name. Time is linear in the entries of the folder.
/// With `error` set there is no free name: the folder may not be entered, say, or nothing is left of the start.
std::int64_t FirstFreeNumber(const std::string& folder, const NumberedName& name, TakenBy takenBy,
                             std::error_code& error);

}  // namespace rk::platform
