#include "mindmap/program/Settings.h"

#include "mindmap/program/Options.h"
#include "mindmap/read/Placeholders.h"

#include <RkUtilities/foundation/NativePath.h>
#include <RkUtilities/paths/CrkPathUtilities.h>
#include <RkUtilities/preferences/CrkRegistry.h>
#include <RkUtilities/preferences/PreferenceState.h>
#include <RkUtilities/preferences/SECRegistry.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <filesystem>
#include <span>
#include <string>
#include <string_view>
#include <system_error>

namespace mindmap {

namespace {

constexpr std::uint32_t kAnyMachine = 0;
constexpr std::uint32_t kThisMachine = 1;
constexpr char16_t kKeyPath[] = u"mindmap";

struct Rule {
    std::string_view name;
    std::span<const std::string_view> values;  // empty for a folder
    std::uint32_t rootKey;
};
constexpr std::array<Rule, 3> kRules = {{
    {"theme", kThemeNames, kAnyMachine},
    {"shapes", kShapesNames, kAnyMachine},
    {"folder", {}, kThisMachine},
}};

const Rule& RuleOf(const CString& name) {
    const auto* const rule =
        std::find_if(kRules.begin(), kRules.end(), [&](const Rule& r) { return CString(r.name) == name; });
    if (rule == kRules.end())
        throw UsageError{u"no setting is called " + name};
    return *rule;
}

/// The position of a value among those that a setting may have; their count for any other value.
std::size_t IndexOf(std::span<const std::string_view> values, const CString& value) {
    return static_cast<std::size_t>(std::find(values.begin(), values.end(), value.ToUtf8()) - values.begin());
}

CString Remembered(std::string_view name) { return CrkRegistry::GetRegKeyString(kAnyMachine, kKeyPath, CString(name)); }

/// The absolute path without links and "..".
CString CanonicalFolder(const CString& folder) {
    std::error_code error;
    const std::filesystem::path path = std::filesystem::canonical(rk::NativePath(folder), error);
    return error || !std::filesystem::is_directory(path, error) ? CString() : rk::PathText(path.string());
}

CString Checked(const Rule& rule, const CString& value) {
    if (rule.values.empty()) {
        if (value.IsEmpty())
            return value;
        CString folder = CanonicalFolder(ExpandPlaceholders(value));
        if (folder.IsEmpty())
            throw UsageError{u"no such folder: " + value};
        return folder;
    }
    if (IndexOf(rule.values, value) < rule.values.size())
        return value;
    CString names;
    for (const std::string_view name : rule.values)
        names += CString(names.IsEmpty() ? u" is " : u" or ") + name;
    throw UsageError{CString(rule.name) + names + u", not " + (value.IsEmpty() ? CString(u"empty") : value)};
}

template <class Value, std::size_t kCount>
Value Choice(std::string_view setting, const std::array<std::string_view, kCount>& names, Value standard) {
    const std::size_t index = IndexOf(names, Remembered(setting));
    return index < kCount ? static_cast<Value>(index) : standard;
}

}  // namespace

SettingList ReadSettings(const std::vector<CString>& assignments) {
    SettingList changes;
    for (const CString& assignment : assignments) {
        const CString name = assignment.SpanExcluding(u"=");
        if (name.GetLength() == assignment.GetLength())
            throw UsageError{u"--set takes a name and a value, as theme=dark, not " + assignment};
        changes.emplace_back(name, Checked(RuleOf(name), assignment.Mid(name.GetLength() + 1)));
    }
    return changes;
}

void ChangeSettings(const SettingList& changes) {
    for (const auto& [name, value] : changes) {
        SECRegistry registry;
        registry.Connect(RuleOf(name).rootKey, nullptr, false);
        registry.Open(kKeyPath, {});
        registry.SetStringValue(name, value);
        registry.Close();
    }
}

SettingList AllSettings() {
    const Design design = ChosenDesign();
    return {{u"theme", kThemeNames[static_cast<std::size_t>(design.theme)]},
            {u"shapes", kShapesNames[static_cast<std::size_t>(design.shapes)]},
            {u"folder", LastFolder()}};
}

Design ChosenDesign() {
    const Design standard;
    return {Choice("theme", kThemeNames, standard.theme), Choice("shapes", kShapesNames, standard.shapes)};
}

CString LastFolder() { return Remembered("folder"); }

void RememberFolderOf(const CString& path) {
    const CString folder = CanonicalFolder(CrkPathUtilities::PathFromFilename(CrkPathUtilities::GetAbsolutePath(path)));
    if (!folder.IsEmpty() && folder != LastFolder())
        ChangeSettings({{u"folder", folder}});
}

CString PlaceOfSettings() { return rk::PathText(rk::GetPreferenceState().database); }

CString TroubleWithSettings() {
    const rk::PreferenceState state = rk::GetPreferenceState();
    if (!state.lastFailure.empty())
        return u"the settings cannot be kept: " + CString(state.lastFailure);
    if (state.damagedDatabase.empty())
        return {};
    return u"the settings were damaged and begin anew; the old ones are in " + rk::PathText(state.damagedDatabase);
}

}  // namespace mindmap
