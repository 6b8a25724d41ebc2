#pragma once

#include "RkUtilities/foundation/CString.h"
#include "RkUtilities/foundation/NativePath.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <initializer_list>
#include <iterator>
#include <set>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

/// Throws where a call to the system has failed.
inline void MustBeZero(int result, std::string_view what) {
    if (result != 0)
        throw std::system_error(errno, std::generic_category(), std::string(what));
}

/// An empty folder of a test's own, removed with all it holds when the test ends.
class ScopedFolder {
public:
    ScopedFolder() : ScopedFolder(std::filesystem::temp_directory_path()) {}
    explicit ScopedFolder(const std::filesystem::path& parent) : m_path(parent / "rk-test-XXXXXX") {
        if (mkdtemp(m_path.data()) == nullptr)
            MustBeZero(-1, m_path);
        umask(S_IWGRP | S_IWOTH);  // the log takes a folder that a group may write for a shared one
    }
    ~ScopedFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }
    ScopedFolder& operator=(ScopedFolder&&) = delete;  // nor a copy

    /// A path inside, as bytes and as text.
    std::string Path(std::string_view name = "") const { return m_path + '/' + std::string(name); }
    CString Text(std::string_view name = "") const { return rk::PathText(Path(name)); }

    /// Makes a file and the folders that lead to it; returns its path as text.
    CString Write(std::string_view name, std::string_view content = "") const {
        std::filesystem::create_directories(std::filesystem::path(Path(name)).parent_path());
        std::ofstream(Path(name), std::ios::binary) << content;
        return Text(name);
    }
    CString MakeFolder(std::string_view name) const {
        std::filesystem::create_directories(Path(name));
        return Text(name);
    }
    CString Link(std::string_view name, std::string_view target) const {
        std::filesystem::create_symlink(target, Path(name));
        return Text(name);
    }
    /// Makes what each entry spells, with the folders that lead there: "file", "file=content", "folder/",
    /// "link>target", "pipe|"; any of them after a mode, "0444 file=content".
    void Make(std::initializer_list<std::string> entries) const {
        for (std::string_view entry : entries) {
            const bool hasMode = entry.size() > 5 && entry[0] == '0' && entry[4] == ' ';
            const std::string mode(hasMode ? entry.substr(0, 4) : "");
            entry.remove_prefix(hasMode ? 5 : 0);
            const std::size_t end = std::min(entry.find_first_of(">=|"), entry.size());
            const std::string_view name = entry.substr(0, end);
            const std::string_view rest = entry.substr(std::min(end + 1, entry.size()));
            if (name.ends_with('/'))
                MakeFolder(name);
            else if (entry.substr(end).starts_with('>'))
                Link(name, rest);
            else if (entry.ends_with('|'))
                MustBeZero(mkfifo(Path(name).c_str(), 0600), name);
            else
                Write(name, rest);
            if (hasMode)
                SetMode(name, static_cast<unsigned>(std::stoul(mode, nullptr, 8)));
        }
    }
    void SetMode(std::string_view name, unsigned mode) const { MustBeZero(chmod(Path(name).c_str(), mode), name); }
    /// Permissions and the bits above them; a link's own.
    unsigned Mode(std::string_view name) const { return Status(name).st_mode & 07777U; }
    struct stat Status(std::string_view name) const {
        struct stat status{};
        MustBeZero(lstat(Path(name).c_str(), &status), name);
        return status;
    }
    /// The bytes of a file; "(none)" when there is no such file.
    std::string Read(std::string_view name) const {
        if (!std::filesystem::is_regular_file(Path(name)))
            return "(none)";
        std::ifstream file(Path(name), std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(file), {});
    }
    /// Every path below a folder with kind, permissions, time and content, so that trees can be compared.
    std::set<std::string> Picture(const std::string& root) const {
        std::set<std::string> lines;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(Path(root))) {
            const std::string path = entry.path().string().substr(Path(root).size());
            const struct stat status = Status(root + path);
            const std::string content = entry.is_symlink() ? read_symlink(entry.path()).string() : Read(root + path);
            lines.insert(path + ' ' + std::to_string(status.st_mode) + ' ' + std::to_string(status.st_mtim.tv_sec) +
                         '.' + std::to_string(status.st_mtim.tv_nsec) + ' ' + content);
        }
        return lines;
    }
    bool Has(std::string_view name) const {
        return std::filesystem::symlink_status(Path(name)).type() != std::filesystem::file_type::not_found;
    }
    std::size_t EntryCount(std::string_view name = "") const {
        return static_cast<std::size_t>(std::ranges::distance(std::filesystem::directory_iterator(Path(name))));
    }

private:
    std::string m_path;
};

/// A test that runs as root is the user "nobody" meanwhile, who gets the folder, so that permissions count.
class ScopedNobody {
public:
    explicit ScopedNobody(const ScopedFolder& folder) {
        if (geteuid() != 0)
            return;
        constexpr uid_t kNobody = 65534;
        MustBeZero(chown(folder.Path().c_str(), kNobody, static_cast<gid_t>(-1)), folder.Path());
        for (const auto& entry : std::filesystem::recursive_directory_iterator(folder.Path()))
            MustBeZero(lchown(entry.path().c_str(), kNobody, static_cast<gid_t>(-1)), entry.path().native());
        MustBeZero(seteuid(kNobody), "seteuid");
        m_wasRoot = true;
    }
    ~ScopedNobody() {
        if (m_wasRoot)
            MustBeZero(seteuid(0), "seteuid");  // what is thrown here ends the program
    }
    ScopedNobody& operator=(ScopedNobody&&) = delete;  // nor a copy

private:
    bool m_wasRoot = false;
};
