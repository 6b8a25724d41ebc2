#include "RkUtilities/platform/storage/PreferenceValues.h"

namespace rk::platform {

void PreferenceValues::Find(std::u16string_view name,
                            const std::function<void(const PreferenceValue& value)>& use) const
{
    const std::lock_guard lock(m_mutex);
    const auto found = m_values.find(name);
    if (found == m_values.end())
        return;
    for (const char* const scope : kScopeTexts) {
        if (const auto held = found->second.find(scope); held != found->second.end())
            return use(held->second.value);
    }
}

void PreferenceValues::Set(PreferenceScope scope, std::u16string_view name, PreferenceValue&& value)
{
    const char* const scopeText = kScopeTexts[static_cast<std::size_t>(scope)];
    const std::lock_guard lock(m_mutex);
    auto found = m_values.find(name);
    if (found == m_values.end())
        found = m_values.try_emplace(std::u16string(name)).first;
    found->second.insert_or_assign(scopeText, Held{std::move(value), State::Waiting});
}

PreferenceMap PreferenceValues::BeginStoring()
{
    PreferenceMap waiting;
    const std::lock_guard lock(m_mutex);
    for (auto& [name, scopes] : m_values) {
        for (auto& [scope, held] : scopes) {
            if (held.state == State::Stored)
                continue;
            waiting.emplace(PreferenceKey(scope, name), held.value);
            held.state = State::Storing;
        }
    }
    return waiting;
}

void PreferenceValues::EndStoring(bool areStored) noexcept
{
    const std::lock_guard lock(m_mutex);
    for (auto& [name, scopes] : m_values) {
        for (auto& [scope, held] : scopes) {
            if (held.state == State::Storing)
                held.state = areStored ? State::Stored : State::Waiting;
        }
    }
}

void PreferenceValues::Take(PreferenceMap&& read, bool isAnotherDatabase)
{
    const std::lock_guard lock(m_mutex);
    decltype(m_values) taken;
    for (auto& [key, value] : read)
        taken[key.second].emplace(key.first, Held{std::move(value), State::Stored});
    for (const auto& [name, scopes] : m_values) {
        for (const auto& [scope, held] : scopes) {
            if (held.state != State::Stored)
                taken[name].insert_or_assign(scope, held);
            else if (isAnotherDatabase)
                taken[name].try_emplace(scope, Held{held.value, State::Waiting});
        }
    }
    m_values.swap(taken);
}

}  // namespace rk::platform
