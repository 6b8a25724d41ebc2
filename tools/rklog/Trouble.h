#pragma once

#include <ostream>
#include <string_view>

namespace rklog {

/// Where the program says what went wrong, or is to be known; it remembers whether anything did go wrong.
class Trouble {
public:
    explicit Trouble(std::ostream& out) : m_out(out) {}

    void Say(std::string_view reason) {
        m_happened = true;
        Note(reason);
    }
    void Note(std::string_view text) { m_out << "rklog: " << text << '\n' << std::flush; }
    [[nodiscard]] bool Happened() const { return m_happened; }

private:
    std::ostream& m_out;
    bool m_happened = false;
};

}  // namespace rklog
