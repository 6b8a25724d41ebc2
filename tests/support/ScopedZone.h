#pragma once

#include <cstdlib>
#include <ctime>
#include <optional>
#include <string>

/// The process's time zone (`TZ`) as long as this lives; afterwards what it was.
class ScopedZone {
public:
    explicit ScopedZone(const char* zone)
    {
        if (const char* const before = std::getenv("TZ"))
            m_before = before;
        setenv("TZ", zone, 1);
    }
    ~ScopedZone()
    {
        if (m_before)
            setenv("TZ", m_before->c_str(), 1);
        else
            unsetenv("TZ");
    }
    ScopedZone(const ScopedZone&) = delete;
    ScopedZone& operator=(const ScopedZone&) = delete;

private:
    std::optional<std::string> m_before;
};
