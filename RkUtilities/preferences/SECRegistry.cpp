#include "RkUtilities/preferences/SECRegistry.h"

#include "RkUtilities/foundation/CAtlArray.h"
#include "RkUtilities/foundation/detail/SpelledNumber.h"
#include "RkUtilities/platform/storage/PreferenceStore.h"

#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <utility>

namespace {

using rk::platform::PreferenceScope;
using rk::platform::PreferenceValue;

constexpr std::uint32_t kThisHostRootKey = 1;

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNoNumber = std::numeric_limits<double>::quiet_NaN();
/// The doubles that are written without digits.
constexpr std::pair<std::u16string_view, double> kNumbersInWords[] = {
    {u"inf", kInfinity}, {u"-inf", -kInfinity}, {u"nan", kNoNumber}, {u"-nan", -kNoNumber}};

void Write(std::uint32_t rootKey, rk::TextView name, PreferenceValue value) {
    if (rootKey == kThisHostRootKey) {
        rk::platform::SetPreference(PreferenceScope::ThisHost, name, value);
        if (rk::platform::SynchronizePreferences())
            return;
    }
    rk::platform::SetPreference(PreferenceScope::AnyHost, name, std::move(value));
}

/// A value as the wanted type; only a number becomes something else, a boolean.
std::optional<SECRegistry::Value> As(SECRegistry::ErkValueType type, const PreferenceValue& value) {
    const auto* const boolean = std::get_if<bool>(&value);
    const auto* const number = std::get_if<std::int64_t>(&value);
    const auto* const text = std::get_if<std::u16string>(&value);
    if (type == SECRegistry::Boolean && (boolean != nullptr || number != nullptr))
        return boolean != nullptr ? *boolean : *number != 0;
    if (type == SECRegistry::Number && number != nullptr)
        return static_cast<std::int32_t>(*number);
    if (type == SECRegistry::String && text != nullptr)
        return CString(*text);
    return std::nullopt;
}

template <class Held, class Output> bool Give(std::optional<SECRegistry::Value> found, Output& output) {
    if (!found)
        return false;
    output = static_cast<Output>(std::get<Held>(*std::move(found)));
    return true;
}

}  // namespace

SECRegistry::~SECRegistry() = default;

bool SECRegistry::Open(rk::TextView keyPath, CreatePermissions permissions) {
    Create(keyPath, nullptr, {}, permissions, nullptr);
    rk::platform::SynchronizePreferences();
    return true;
}

bool SECRegistry::Create(rk::TextView keyPath, rk::TextView /*className*/, CreateOptions /*options*/,
                         CreatePermissions permissions, CreationDisposition* /*disposition*/) {
    m_keyName = keyPath;
    m_permissions = permissions;
    return true;
}

bool SECRegistry::Close() {
    rk::platform::SynchronizePreferences();
    return true;
}

bool SECRegistry::GetValue(rk::TextView name, bool& value) const {
    return Give<bool>(GetValueFromSystem(name, Boolean), value);
}

bool SECRegistry::GetValue(rk::TextView name, double& value) const {
    if (std::int32_t number = 0; Give<std::int32_t>(GetValueFromSystem(name, Number), number)) {
        value = number;
        return true;
    }
    CString text;
    if (!GetStringValue(name, text))
        return false;
    for (const auto& [word, number] : kNumbersInWords) {
        if (text == word) {
            value = number;
            return true;
        }
    }
    double read = 0;
    std::u16string_view rest;
    if (!rk::ReadSpelledDouble(text, rk::NumberSpelling(), read, &rest) || !rest.empty())
        return false;
    value = read;
    return true;
}

bool SECRegistry::GetValue(rk::TextView name, CAtlArray<CString>& texts) const {
    CString joined;
    if (!GetStringValue(name, joined))
        return false;
    CAtlArray<CString> read;
    std::u16string text;
    for (std::size_t i = 0; i < joined.size(); ++i) {
        if (joined[i] == u'\n')
            read.Add(std::exchange(text, {}));
        else if (joined[i] == u'\\')
            text += joined[++i] == u'n' ? u'\n' : joined[i];
        else
            text += joined[i];
    }
    if (!text.empty())  // no line feed ends it
        return false;
    texts = std::move(read);
    return true;
}

bool SECRegistry::GetDoubleWordValue(rk::TextView name, std::uint32_t& value) const {
    return Give<std::int32_t>(GetValueFromSystem(name, Number), value);
}

bool SECRegistry::GetValue(rk::TextView name, std::int32_t& value) const {
    return Give<std::int32_t>(GetValueFromSystem(name, Number), value);
}

bool SECRegistry::GetStringValue(rk::TextView name, CString& value) const {
    return Give<CString>(GetValueFromSystem(name, String), value);
}

bool SECRegistry::SetDouble(rk::TextView name, double value) {
    if (std::isnan(value))  // `std::to_chars` of libc++ writes "-nan(ind)"
        return SetStringValue(name, std::signbit(value) ? "-nan" : "nan");
    std::array<char, 32> text{};  // the longest has 24
    const char* const end = std::to_chars(text.data(), text.data() + text.size(), value).ptr;
    return SetStringValue(name, std::string_view(text.data(), end));
}

bool SECRegistry::SetValue(rk::TextView name, const CAtlArray<CString>& texts) {
    CString joined;
    for (CString text : texts) {
        text.Replace(u"\\", u"\\\\");
        text.Replace(u"\n", u"\\n");
        joined += text + u"\n";
    }
    return SetStringValue(name, joined);
}

bool SECRegistry::DeleteValue(rk::TextView name) {
    bool isThere = false;
    rk::platform::FindPreference(name, [&](const PreferenceValue& /*value*/) { isThere = true; });
    if (!isThere)
        return false;
    rk::platform::SetPreference(PreferenceScope::AnyHost, name, std::monostate());
    rk::platform::SetPreference(PreferenceScope::ThisHost, name, std::monostate());
    if (m_rootKey == kThisHostRootKey)
        rk::platform::SynchronizePreferences();
    return true;
}

CAtlArray<CString> SECRegistry::GetValueNames() const {
    CAtlArray<CString> names;
    for (const std::u16string& name : rk::platform::PreferenceNames())
        names.Add(name);
    return names;
}

bool SECRegistry::SetDoubleWordValue(rk::TextView name, std::uint32_t value) {
    WriteValueToSystem(name, static_cast<std::int32_t>(value));
    return true;
}

bool SECRegistry::SetStringValue(rk::TextView name, CString const& value) {
    Write(m_rootKey, name, std::u16string(value.View()));
    return true;
}

std::optional<SECRegistry::Value> SECRegistry::GetValueFromSystem(rk::TextView name, ErkValueType type) const {
    std::optional<Value> result;
    rk::platform::FindPreference(name, [&](const PreferenceValue& value) { result = As(type, value); });
    return result;
}

void SECRegistry::WriteValueToSystem(rk::TextView name, const Value& value) {
    if (const auto* const boolean = std::get_if<bool>(&value))
        Write(m_rootKey, name, *boolean);
    else if (const auto* const number = std::get_if<std::int32_t>(&value))
        Write(m_rootKey, name, std::int64_t{*number});
    else
        Write(m_rootKey, name, std::u16string(std::get<CString>(value).View()));
}
