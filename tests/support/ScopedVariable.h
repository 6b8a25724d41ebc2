#pragma once

#include <cstdlib>
#include <optional>
#include <string>

/// An environment variable of the process as long as this lives (null: not set); afterwards what it was.
class ScopedVariable {
public:
    ScopedVariable(std::string name, const char* value) : m_name(std::move(name)) {
        if (const char* const before = std::getenv(m_name.c_str()))
            m_before = before;
        Set(value);
    }
    ~ScopedVariable() { Set(m_before ? m_before->c_str() : nullptr); }
    ScopedVariable& operator=(ScopedVariable&&) = delete;  // nor a copy

private:
    void Set(const char* value) const {
        if (value != nullptr)
            setenv(m_name.c_str(), value, 1);
        else
            unsetenv(m_name.c_str());
    }

    std::string m_name;
    std::optional<std::string> m_before;
};

/// The process's time zone.
class ScopedZone : public ScopedVariable {
public:
    explicit ScopedZone(const char* zone) : ScopedVariable("TZ", zone) {}
};
