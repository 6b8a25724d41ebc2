#pragma once

namespace rk {

/// How severe a log entry is: a smaller value is more severe. Callers know it as `CrkLogWriter::ErkLogLevel`, and its
/// values as `CrkLogWriter::LogWarning` and so on.
/// The name of an enumerator is its text in a settings file; an entry carries it without "Log".
enum ErkLogLevel : int {
    LogEmergency = 0,
    LogCritical = 1,
    LogError = 2,
    LogWarning = 3,
    LogNotice = 4,
    LogInfo = 5,
    LogDebug = 6,
};

}  // namespace rk
