#include "RkUtilities/platform/storage/PreferenceValues.h"

#include <algorithm>

namespace rk::platform {

namespace {

PreferenceValue Owned(const PreferenceView& value)
{
    if (const auto* const text = std::get_if<std::u16string_view>(&value))
        return std::u16string(*text);
    const auto* const number = std::get_if<std::int64_t>(&value);
    return number != nullptr ? PreferenceValue(*number) : std::get<bool>(value);
}

/// A text takes the place of a text without a new allocation where it fits.
void Assign(PreferenceValue& target, const PreferenceView& value)
{
    auto* const old = std::get_if<std::u16string>(&target);
    const auto* const text = std::get_if<std::u16string_view>(&value);
    if (old != nullptr && text != nullptr)
        old->assign(*text);
    else
        target = Owned(value);
}

template <class Index>
auto& PlaceIn(Index& index, std::u16string_view name, std::size_t scope)
{
    const auto found = index.find(name);
    return (found != index.end() ? found : index.try_emplace(std::u16string(name)).first)->second[scope];
}

}  // namespace

void PreferenceValues::Find(std::u16string_view name, const std::function<void(const PreferenceView& value)>& use)
{
    const std::lock_guard lock(m_mutex);
    const auto found = m_index.find(name);
    if (found == m_index.end())
        return;
    const auto place = std::find_if(found->second.begin(), found->second.end(),
                                    [](const Place& candidate) { return candidate.value != nullptr; });
    if (place != found->second.end())
        use(std::visit([](const auto& held) { return PreferenceView(held); }, *place->value));
}

void PreferenceValues::Set(PreferenceScope scope, std::u16string_view name, const PreferenceView& value)
{
    const auto scopeIndex = static_cast<std::size_t>(scope);
    const std::lock_guard lock(m_mutex);
    Place& place = PlaceIn(m_index, name, scopeIndex);
    if (place.round == m_round) {
        Assign(*place.value, value);  // set again and again, it costs neither a search nor memory
    } else {
        const auto set = m_waiting.insert_or_assign(PreferenceKey(kScopeTexts[scopeIndex], name), Owned(value));
        place = {&set.first->second, m_round};
    }
}

const PreferenceMap& PreferenceValues::BeginStoring() noexcept
{
    const std::lock_guard lock(m_mutex);
    m_storing.swap(m_waiting);
    ++m_round;
    return m_storing;
}

void PreferenceValues::EndStoring(bool areStored) noexcept
{
    const std::lock_guard lock(m_mutex);
    if (areStored) {
        for (const auto& [key, value] : m_storing)
            m_stored.erase(key);
        m_stored.merge(m_storing);
    } else {
        m_waiting.merge(m_storing);
    }
    m_storing.clear();
}

void PreferenceValues::Take(PreferenceMap read, bool isAnotherDatabase)
{
    const std::lock_guard lock(m_mutex);
    Index index;
    if (isAnotherDatabase)
        Add(index, m_stored, 0);
    Add(index, read, 0);
    Add(index, m_waiting, m_round);
    // Nothing below can fail, and a value of a map keeps its address.
    if (isAnotherDatabase) {
        for (const auto& [key, value] : read)
            m_stored.erase(key);
        m_waiting.merge(m_stored);
    }
    m_stored = std::move(read);
    m_index.swap(index);
}

void PreferenceValues::Add(Index& index, PreferenceMap& values, std::uint64_t round)
{
    for (auto& [key, value] : values) {
        const auto scope = std::find(kScopeTexts.begin(), kScopeTexts.end(), key.first) - kScopeTexts.begin();
        if (const auto scopeIndex = static_cast<std::size_t>(scope); scopeIndex < kScopeTexts.size())
            PlaceIn(index, key.second, scopeIndex) = {&value, round};
    }
}

}  // namespace rk::platform
