#pragma once

#include <regex.h>
#include <string>
#include <string_view>

namespace rklog {

/// A POSIX extended regular expression, as `grep -E` takes them.
///
/// The C library matches it: the regular expressions of the C++ standard library recurse once for each character of the
/// text and so overflow the stack on a long message.
class Pattern {
public:
    /// @throws std::invalid_argument  not a regular expression; the text says why
    Pattern(const std::string& expression, bool ignoreCase);
    Pattern(const Pattern&) = delete;
    Pattern& operator=(const Pattern&) = delete;
    ~Pattern();

    /// Whether it matches somewhere in the text, which may hold any bytes. "^" and "$" match at the ends of lines too.
    [[nodiscard]] bool IsIn(std::string_view text) const;

private:
    regex_t m_compiled{};
};

}  // namespace rklog
