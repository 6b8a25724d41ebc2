#include "rklog/Pattern.h"

#include <limits>
#include <stdexcept>

namespace rklog {

Pattern::Pattern(const std::string& expression, bool ignoreCase) {
    const int flags = REG_EXTENDED | REG_NOSUB | REG_NEWLINE | (ignoreCase ? REG_ICASE : 0);
    const int error = regcomp(&m_compiled, expression.c_str(), flags);
    if (error == 0)
        return;
    char reason[256];
    regerror(error, &m_compiled, reason, sizeof reason);
    throw std::invalid_argument(expression + ": " + reason);
}

Pattern::~Pattern() { regfree(&m_compiled); }

bool Pattern::IsIn(std::string_view text) const {
    constexpr auto kMost = static_cast<std::size_t>(std::numeric_limits<regoff_t>::max());
    regmatch_t bounds{.rm_so = 0, .rm_eo = static_cast<regoff_t>(text.substr(0, kMost).size())};
    return regexec(&m_compiled, text.data(), 1, &bounds, REG_STARTEND) == 0;
}

}  // namespace rklog
