#include "RkUtilities/platform/storage/PreferenceValues.h"

#include <algorithm>

namespace rk::platform {

void PreferenceValues::Find(std::u16string_view name,
                            const std::function<void(const PreferenceValue& value)>& use) const {
    const std::lock_guard lock(m_mutex);
    const auto found = m_values.find(name);
    if (found == m_values.end())
        return;
    for (const std::string_view scope : kScopeTexts) {
        for (const auto& [heldScope, held] : found->second) {
            if (heldScope == scope && !std::holds_alternative<std::monostate>(held.value))
                return use(held.value);
        }
    }
}

std::vector<std::u16string> PreferenceValues::Names() const {
    std::vector<std::u16string> names;
    const std::lock_guard lock(m_mutex);
    for (const auto& [name, scopes] : m_values) {
        if (std::any_of(scopes.begin(), scopes.end(), [](const auto& entry) {
                return std::find(kScopeTexts.begin(), kScopeTexts.end(), entry.first) != kScopeTexts.end() &&
                       !std::holds_alternative<std::monostate>(entry.second.value);
            }))
            names.push_back(name);
    }
    return names;
}

/// The value of a scope, made when it is missing.
PreferenceValues::Held& PreferenceValues::At(Scopes& scopes, std::string_view scope) {
    for (auto& [heldScope, held] : scopes) {
        if (heldScope == scope)
            return held;
    }
    return scopes.emplace_back(scope, Held()).second;
}

void PreferenceValues::Set(PreferenceScope scope, std::u16string_view name, PreferenceValue&& value) {
    const std::string_view scopeText = kScopeTexts[static_cast<std::size_t>(scope)];
    const std::lock_guard lock(m_mutex);
    auto found = m_values.find(name);
    if (found == m_values.end())
        found = m_values.try_emplace(std::u16string(name)).first;
    At(found->second, scopeText) = {std::move(value), State::Waiting, m_forks};
}

PreferenceMap PreferenceValues::BeginStoring() {
    PreferenceMap waiting;
    const std::lock_guard lock(m_mutex);
    for (auto& [name, scopes] : m_values) {
        for (auto& [scope, held] : scopes) {
            if (!Waits(held))
                continue;
            waiting.emplace(PreferenceKey(scope, name), held.value);
            held.state = State::Storing;
        }
    }
    return waiting;
}

void PreferenceValues::EndStoring(bool areStored) noexcept {
    const std::lock_guard lock(m_mutex);
    for (auto& [name, scopes] : m_values) {
        for (auto& [scope, held] : scopes) {
            if (held.state == State::Storing)
                held.state = areStored ? State::Stored : State::Waiting;
        }
    }
}

void PreferenceValues::Take(PreferenceMap&& read, bool isAnotherDatabase) {
    const std::lock_guard lock(m_mutex);
    decltype(m_values) taken;
    for (auto& [key, value] : read)
        At(taken[key.second], key.first) = {std::move(value), State::Stored};
    for (const auto& [name, scopes] : m_values) {
        for (const auto& [scope, held] : scopes) {
            const bool isMissing = !read.contains(PreferenceKey(scope, name));
            if (Waits(held) || (isMissing && held.state != State::Stored))  // perhaps a parent's, still to be stored
                At(taken[name], scope) = held;
            else if (isMissing && isAnotherDatabase)
                At(taken[name], scope) = {held.value, State::Waiting, m_forks};
        }
    }
    m_values.swap(taken);
}

}  // namespace rk::platform
