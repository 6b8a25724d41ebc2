#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <utility>

namespace rk::platform {

/// Values that are made once and kept by a name. Static and never destroyed, since the destructors of other objects may
/// still ask; the caller holds a lock. More names than `kMost` are hostile: all values are let go together.
template <class Value, std::size_t kMost> class KeptByName {
public:
    template <class Make> Value& Of(const std::string& name, const Make& make) {
        if (m_values == nullptr)
            m_values = new std::map<std::string, Value>;
        if (const auto kept = m_values->find(name); kept != m_values->end())
            return kept->second;
        Value made = make();
        if (m_values->size() >= kMost)
            m_values->clear();
        return m_values->emplace(name, std::move(made)).first->second;
    }

private:
    std::map<std::string, Value>* m_values = nullptr;
};

}  // namespace rk::platform
