#pragma once

#include <optional>

namespace rk::platform {

/// A value that is made again only when it is asked for by another key than the last time.
template <class Key, class Value> class SameAsLast {
public:
    /// `asked` may be of another type than `Key` where the two compare and one is assigned to the other.
    template <class Asked, class Make> const Value& For(const Asked& asked, const Make& make) {
        if (!m_value || !(m_key == asked)) {
            m_value.reset();
            m_key = asked;
            m_value.emplace(make());
        }
        return *m_value;
    }
    /// The next time counts as another key; the value stays where it is until then.
    void AskAgain() { m_key = Key(); }

private:
    Key m_key{};
    std::optional<Value> m_value;
};

}  // namespace rk::platform
