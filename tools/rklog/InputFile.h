#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <sys/types.h>

namespace rklog {

/// A file that is read, or standard input. Paths are native bytes. Every failure is thrown as a std::system_error whose
/// text begins with the path.
class InputFile {
public:
    /// Tells files apart, whatever they are called.
    struct Identity {
        dev_t device = 0;
        ino_t number = 0;
        friend auto operator<=>(const Identity&, const Identity&) = default;
    };
    struct Facts {
        Identity identity;
        std::uint64_t byteCount = 0;
        std::int64_t modifiedNanoseconds = 0;  ///< UTC, since 1970
        bool isRegular = false;
        bool isFolder = false;
    };

    /// @param path  "-" for standard input
    explicit InputFile(const std::string& path);
    InputFile(const InputFile&) = delete;
    InputFile& operator=(const InputFile&) = delete;
    ~InputFile();

    [[nodiscard]] Facts Look() const;
    /// What stands at a path; false when nothing does.
    static bool Look(const std::string& path, Facts& facts);

    /// Reads on; 0 at the end.
    std::size_t Read(char* buffer, std::size_t byteCount);
    /// Reads at a place of a regular file, and leaves where `Read` goes on.
    std::size_t ReadAt(std::uint64_t offset, char* buffer, std::size_t byteCount) const;
    /// Says where `Read` goes on in a regular file.
    void GoTo(std::uint64_t offset);

    [[nodiscard]] const std::string& Path() const { return m_path; }

private:
    [[noreturn]] void Fail() const;

    std::string m_path;
    int m_descriptor;
};

}  // namespace rklog
