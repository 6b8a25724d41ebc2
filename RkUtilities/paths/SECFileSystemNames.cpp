#include "RkUtilities/paths/SECFileSystem.h"
#include "RkUtilities/paths/detail/PathNames.h"

CString SECFileSystem::GetFileName(const CString& path) const { return rk::FileNameOf(path); }

CString SECFileSystem::GetPath(const CString& path, signed char keepDrive) const {
    const std::u16string_view folder = rk::FolderOf(path);
    return keepDrive != 0 ? folder : folder.substr(folder.find(u':') + 1);  // npos + 1 is 0
}

CString SECFileSystem::GetExtension(const CString& path) const { return rk::ExtensionOf(path); }

CString SECFileSystem::GetBaseFileName(const CString& path) const { return rk::BaseNameOf(path); }

CString SECFileSystem::GetFullPathName(const CString& path) const { return rk::AbsolutePath(path); }
