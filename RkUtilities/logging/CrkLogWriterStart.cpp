#include "RkUtilities/foundation/Version.h"
#include "RkUtilities/logging/CrkLogTypes.h"
#include "RkUtilities/logging/CrkLogWriter.h"
#include "RkUtilities/platform/process/ApplicationName.h"
#include "RkUtilities/platform/process/LocalTime.h"
#include "RkUtilities/platform/process/Machine.h"

#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

namespace {

/// With escapes for characters that end a value, mean something in XML, or steer a terminal.
std::string Escaped(std::string_view value) {
    constexpr char kDigits[] = "0123456789ABCDEF";
    std::string text;
    for (const char character : value) {
        const auto byte = static_cast<unsigned char>(character);
        if (byte < 0x20 || byte == 0x7F || std::string_view("\"%<>&").find(character) != std::string_view::npos)
            text.append({'%', kDigits[byte >> 4], kDigits[byte & 0xF]});
        else
            text += character;
    }
    return text;
}

/// Local time by ISO 8601; `fraction` stands behind the seconds.
std::string IsoTime(std::int64_t utcSeconds, const std::string& fraction = "") {
    const rk::platform::CalendarTime time = rk::platform::LocalCalendar(utcSeconds);
    const long minutes = std::abs(time.tm_gmtoff) / 60;
    std::array<char, 64> text;
    std::snprintf(text.data(), text.size(), "%04d-%02d-%02dT%02d:%02d:%02d%s%c%02ld:%02ld", time.tm_year, time.tm_mon,
                  time.tm_mday, time.tm_hour, time.tm_min, time.tm_sec, fraction.c_str(),
                  time.tm_gmtoff < 0 ? '-' : '+', minutes / 60, minutes % 60);
    return text.data();
}

}  // namespace

void CrkLogWriter::LogStart() {
    using namespace rk::platform;
    const auto now = std::chrono::floor<std::chrono::milliseconds>(std::chrono::system_clock::now()).time_since_epoch();
    const std::int64_t seconds = std::chrono::floor<std::chrono::seconds>(now).count();
    const std::string milliseconds = std::to_string(1000 + now.count() - 1000 * seconds).replace(0, 1, ".");
    const std::pair<std::string_view, std::string> values[] = {
        {"time", IsoTime(seconds, milliseconds)},
        {"loaded", IsoTime(kUtcSecondsOf2001 + m_seconds)},
        {"zone", ZoneAbbreviation(seconds)},
        {"pid", std::to_string(ProcessId())},
        {"host", HostName()},
        {"program", ApplicationName()},
        {"library", std::string(rk::Version())},
        {"system", SystemName()},
    };
    std::string message = "LogStart";
    for (const auto& [key, value] : values)
        message.append(" ").append(key).append("=\"").append(Escaped(value)).append("\"");
    Log(LogInfo, message, CrkLogTypes::LogTypeApplicationStart);
}
