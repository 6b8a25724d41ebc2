#include "RkUtilities/paths/SECFileSystem.h"

#include "RkUtilities/foundation/CFile.h"
#include "RkUtilities/foundation/NativePath.h"
#include "RkUtilities/platform/files/CopyTree.h"
#include "RkUtilities/platform/files/FileFacts.h"
#include "RkUtilities/platform/files/FileNames.h"
#include "RkUtilities/platform/files/FolderList.h"
#include "RkUtilities/platform/files/MoveTree.h"
#include "RkUtilities/platform/files/RemoveTree.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <exception>
#include <memory>

namespace platform = rk::platform;

namespace {

/// Copies one field of a path's status where that can be read.
template <class Field, class Value>
bool ReadField(const SECFileSystem& files, const CString& path, Field CFileStatus::* field, Value& value) {
    CFileStatus status;
    if (!files.GetFileStatus(path, status))
        return false;
    value = static_cast<Value>(status.*field);
    return true;
}

/// Runs a step that may throw a file failure; tells whether it did not.
template <class Step> bool Succeeds(Step step) {
    try {
        step();
        return true;
    } catch (CFileException* failure) {
        failure->Delete();
        return false;
    }
}

platform::CopyRules RulesOf(unsigned int flags) {
    return {.keepWritable = (flags & SECFileSystem::copyKeepExisting) != 0,
            .replaceReadOnly =
                (flags & (SECFileSystem::copyOverwriteReadOnly | SECFileSystem::copyAskOverwriteReadOnly)) != 0,
            .makeWritable = (flags & SECFileSystem::copyMakeWritable) != 0};
}

/// Whether a name on the path has more than 255 code units, which no folder made here may have on any file system.
bool HasOverlongName(const CString& path) {
    constexpr std::ptrdiff_t kMostUnits = 255;
    const auto* start = path.begin();
    while (start != path.end()) {
        const auto* const end = std::find(start, path.end(), u'/');
        if (end - start > kMostUnits)
            return true;
        start = end == path.end() ? end : end + 1;
    }
    return false;
}

/// Whether the rest of both files, `byteCount` bytes of each, is the same.
bool HaveEqualBytes(CFile& first, CFile& second, unsigned long long byteCount, unsigned long blockSize) {
    constexpr unsigned long kLeast = 128UL * 1024;  // below, the calls cost more than what they read
    constexpr unsigned long kMost = 1024UL * 1024;
    const auto block =
        static_cast<unsigned int>(std::min<unsigned long long>(std::clamp(blockSize, kLeast, kMost), byteCount));
    const auto buffer = std::make_unique_for_overwrite<char[]>(2 * static_cast<std::size_t>(block));
    char* const other = buffer.get() + block;
    while (byteCount > 0) {
        const auto wanted = static_cast<unsigned int>(std::min<unsigned long long>(block, byteCount));
        // A file that became shorter meanwhile is no longer equal.
        if (first.Read(buffer.get(), wanted) != wanted || second.Read(other, wanted) != wanted ||
            std::memcmp(buffer.get(), other, wanted) != 0)
            return false;
        byteCount -= wanted;
    }
    return true;
}

}  // namespace

SECFileSystem::SECFileSystem() = default;

SECFileSystem::~SECFileSystem() = default;

// --- What is known of a file or folder

bool SECFileSystem::GetFileStatus(const CString& path, CFileStatus& status) const {
    try {
        return CFile::GetStatus(path, status);
    } catch (const std::exception&) {  // memory ran out: no file failure is thrown
        return false;
    }
}

bool SECFileSystem::GetFileCreateTime(const CString& path, CTime& time) const {
    return ReadField(*this, path, &CFileStatus::m_ctime, time);
}

bool SECFileSystem::GetFileModifyTime(const CString& path, CTime& time) const {
    return ReadField(*this, path, &CFileStatus::m_mtime, time);
}

bool SECFileSystem::GetFileAccessTime(const CString& path, CTime& time) const {
    return ReadField(*this, path, &CFileStatus::m_atime, time);
}

bool SECFileSystem::GetFileSize(const CString& path, unsigned long long& size) const {
    return ReadField(*this, path, &CFileStatus::m_size, size);
}

bool SECFileSystem::GetFileAttribute(const CString& path, unsigned char& attribute) const {
    return ReadField(*this, path, &CFileStatus::m_attribute, attribute);
}

bool SECFileSystem::FileExists(const CString& path) const { return platform::KindOf(rk::NativePath(path)).has_value(); }

bool SECFileSystem::DirectoryExists(const CString& path) const {
    return platform::KindOf(rk::NativePath(path)) == platform::FileKind::Folder;
}

bool SECFileSystem::IsDirectoryEmpty(const CString& path) const {
    bool isEmpty = true;
    const std::error_code error =
        platform::VisitFolder(rk::NativePath(path), [&](std::string_view, platform::FileKind) {
            isEmpty = false;
            return platform::Visit::Stop;
        });
    return !error && isEmpty;
}

// --- Making, renaming, deleting

bool SECFileSystem::MakeDirectory(const CString& path) const {
    return !HasOverlongName(path) && !platform::MakeFolder(rk::NativePath(path));
}

bool SECFileSystem::MakePath(const CString& path) const {
    return !HasOverlongName(path) && !platform::MakeFolders(rk::NativePath(path));
}

bool SECFileSystem::RenameFile(const CString& oldPath, const CString& newPath) const {
    if (oldPath == newPath)
        return true;
    if (!FileExists(oldPath) || FileExists(newPath))
        return false;
    CFile::Rename(oldPath, newPath);
    return true;
}

bool SECFileSystem::RenameDirectory(const CString& oldPath, const CString& newPath) const {
    return !platform::MoveTree(rk::NativePath(oldPath), rk::NativePath(newPath));
}

bool SECFileSystem::DeleteFile(const CString& path) const {
    return Succeeds([&] { CFile::Remove(path); });
}

bool SECFileSystem::DeleteDirectory(const CString& path, signed char recursive) const {
    const std::string nativePath = rk::NativePath(path);
    if (recursive != 0)
        return !platform::RemoveTree(nativePath);
    return IsDirectoryEmpty(path) && !platform::RemoveEmptyFolder(nativePath);
}

bool SECFileSystem::CloseFile(CFile* file) const {
    return Succeeds([&] { file->Close(); });
}

// --- Comparing and copying

int SECFileSystem::CompareFiles(const CString& first, const CString& second, unsigned long blockSize) const {
    CFile a;
    CFile b;
    if (!a.Open(first, CFile::modeRead | CFile::shareDenyWrite) ||
        !b.Open(second, CFile::modeRead | CFile::shareDenyWrite))
        return 0;
    bool areEqual = false;
    const bool couldRead = Succeeds([&] {
        const unsigned long long length = a.GetLength();
        areEqual = length == b.GetLength() && HaveEqualBytes(a, b, length, blockSize);
    });
    return couldRead && areEqual ? 1 : 0;
}

int SECFileSystem::CopyFile(const CString& source, const CString& destination, unsigned int flags, rk::TextView) const {
    const std::string to = rk::NativePath(destination);
    auto outcome = platform::CopyOutcome::Stayed;
    if (platform::CopyTree(rk::NativePath(source), to, RulesOf(flags), outcome))
        return 0;
    if (outcome == platform::CopyOutcome::Stayed || (flags & copyMakeWritable) == 0)
        return 1;
    const auto copy = platform::Inspect(to, platform::Links::DoNotFollow);
    return copy && copy->kind != platform::FileKind::Folder && copy->ownerMayWrite ? 1 : 0;
}

int SECFileSystem::CopyFiles(const CString& source, const CString& destination, unsigned int flags, signed char) const {
    static_cast<void>(platform::CopyContents(rk::NativePath(source), rk::NativePath(destination), RulesOf(flags)));
    return 1;
}
