#include "rklog/Process.h"

#include <RkUtilities/logging/CrkLogTypes.h>

#include <charconv>

namespace rklog {

namespace {

constexpr std::string_view kStart = "LogStart time=\"";

constexpr struct {
    std::string_view key;
    std::string Process::* value;
} kTexts[] = {
    {"zone", &Process::zone},       {"pid", &Process::id},          {"host", &Process::host},
    {"program", &Process::program}, {"library", &Process::library}, {"system", &Process::system},
};

/// "%22" is a quotation mark again.
std::string Decoded(std::string_view value) {
    std::string text;
    while (!value.empty()) {
        unsigned byte = 0;
        const char* const digits = value.data() + 1;
        if (value[0] == '%' && value.size() > 2 && std::from_chars(digits, digits + 2, byte, 16).ptr == digits + 2) {
            text += static_cast<char>(byte);
            value.remove_prefix(3);
        } else {
            text += value[0];
            value.remove_prefix(1);
        }
    }
    return text;
}

/// The value behind `key="`, as it stands; "" when the key is not there.
std::string_view ValueOf(std::string_view message, std::string_view key) {
    const std::string opening = " " + std::string(key) + "=\"";
    const std::size_t at = message.find(opening);
    if (at == std::string_view::npos)
        return {};
    message.remove_prefix(at + opening.size());
    return message.substr(0, message.find('"'));
}

}  // namespace

std::string Process::Name() const { return (host.empty() ? "" : host + ":") + program + "[" + id + "]"; }

std::optional<Process> ReadLogStart(const Entry& entry) {
    static const std::string category = CrkLogTypes::LogTypeApplicationStart.ToUtf8();
    if (!entry.message.starts_with(kStart) || entry.category != category)
        return {};
    const std::optional<IsoTime> loaded = ReadIsoTime(ValueOf(entry.message, "loaded"));
    if (!loaded || !loaded->zoneOffset)
        return {};
    Process process;
    process.loadedUtc = loaded->wall - *loaded->zoneOffset;
    process.zoneOffset = *loaded->zoneOffset;
    for (const auto& [key, value] : kTexts)
        process.*value = Decoded(ValueOf(entry.message, key));
    return process;
}

}  // namespace rklog
