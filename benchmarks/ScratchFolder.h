#pragma once

#include <cstdlib>
#include <filesystem>
#include <string>
#include <system_error>

/// An empty folder in the temporary folder, removed with all it holds.
class ScratchFolder {
public:
    ScratchFolder() : m_path((std::filesystem::temp_directory_path() / "rk-bench-XXXXXX").string()) {
        if (mkdtemp(m_path.data()) == nullptr)
            std::abort();
    }
    ~ScratchFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;

    std::string Path(const std::string& name) const { return m_path + '/' + name; }

private:
    std::string m_path;
};
