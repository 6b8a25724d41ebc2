#pragma once

#include <filesystem>

/// The process's current folder as long as this lives; afterwards what it was.
class ScopedCurrentFolder {
public:
    explicit ScopedCurrentFolder(const std::filesystem::path& folder) : m_before(std::filesystem::current_path()) {
        std::filesystem::current_path(folder);
    }
    ~ScopedCurrentFolder() {
        std::error_code ignored;
        std::filesystem::current_path(m_before, ignored);
    }
    ScopedCurrentFolder& operator=(ScopedCurrentFolder&&) = delete;  // nor a copy

private:
    std::filesystem::path m_before;
};
