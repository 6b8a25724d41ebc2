#pragma once

#include "RkUtilities/foundation/CString.h"
#include "RkUtilities/foundation/NativePath.h"

#include "fuzz/Require.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>

/// A folder of a fuzzer's own in $TMPDIR, removed when the fuzzer ends.
class ScratchFolder {
public:
    ScratchFolder() : m_path(std::filesystem::temp_directory_path() / "rk-fuzz-XXXXXX") {
        Require(mkdtemp(m_path.data()) != nullptr);
    }
    ~ScratchFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;

    std::string Path(std::string_view name = "") const { return m_path + '/' + std::string(name); }
    CString Text(std::string_view name = "") const { return rk::PathText(Path(name)); }

private:
    std::string m_path;
};

inline void WriteFile(const std::string& path, std::string_view bytes) {
    std::ofstream file(path, std::ios::binary);
    file << bytes;
    Require(file.flush().good());
}

inline std::string ReadFile(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), {});
}
