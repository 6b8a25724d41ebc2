#pragma once

#include "RkUtilities/RkExport.h"
#include "RkUtilities/foundation/CAtlList.h"
#include "RkUtilities/foundation/CObject.h"
#include "RkUtilities/foundation/CString.h"
#include "RkUtilities/foundation/CTime.h"
#include "RkUtilities/foundation/TextView.h"

class CFile;
struct CFileStatus;

/// Files and folders: what is known of them, making, renaming, deleting, copying, comparing and listing them.
/// - An object keeps nothing between calls, and all members are safe from any thread.
/// - Paths are as `CFile` takes them: absolute or relative to the current folder, a leading "~/" is the home folder.
///   Names are of any bytes: a name that is no UTF-8 comes from `GetFileList` as a text that leads back to its file.
/// - A link is followed, unless a member says otherwise; a link that leads nowhere exists and is no folder.
/// - A file that is moved to a path meanwhile is never made writable in the place of the file that was looked at.
/// - Failures are false or 0 and nothing is logged. Only `RenameFile` throws a `CFileException*`. Exhausted memory is a
///   failure or `std::bad_alloc`; after both, things are as after a failure.
class RK_EXPORT SECFileSystem : public CObject {
public:
    /// Flags of `CopyFile` and `CopyFiles`.
    enum CopyFlags : unsigned int {
        copyKeepExisting = 0x1,       ///< a writable file that has the destination's name stays, and that is a success
        copyOverwriteReadOnly = 0x2,  ///< a read-only destination is made writable and replaced
        copyAskOverwriteReadOnly = 0x4,  ///< the same: this library asks no questions
        copyMakeWritable = 0x8,          ///< the copy is made writable
    };

    SECFileSystem();
    ~SECFileSystem() override;

    // --- Names: the text alone is looked at
    //
    // "/" separates, and so does "\". Folder (with the drive kept) + file name is the path again.

    CString GetFileName(const CString& path) const;  ///< As `CrkPathUtilities::FileWithExtensionFromFilename`.
    /// What ends with the last separator, "" without a separator. Without `keepDrive` what ends with its first ":"
    /// goes.
    ///
    ///     "C:\dir\f.txt"  ->  "C:\dir\", without the drive "\dir\"
    ///     "/a:b/c"        ->  "/a:b/",   without the drive "b/"
    CString GetPath(const CString& path, signed char keepDrive) const;
    CString GetExtension(const CString& path) const;     ///< As `CrkPathUtilities::GetExtensionFromFileName`.
    CString GetBaseFileName(const CString& path) const;  ///< As `CrkPathUtilities::FileWithoutExtensionFromFilename`.
    CString GetFullPathName(const CString& path) const;  ///< As `CrkPathUtilities::GetAbsolutePath`.

    // --- What is known of a file or folder: true when it could be read, else the output is untouched

    bool GetFileStatus(const CString& path, CFileStatus& status) const;     ///< Times, size and attribute.
    bool GetFileCreateTime(const CString& path, CTime& time) const;         ///< When it was made.
    bool GetFileModifyTime(const CString& path, CTime& time) const;         ///< When its content was last changed.
    bool GetFileAccessTime(const CString& path, CTime& time) const;         ///< When it was last read.
    bool GetFileSize(const CString& path, unsigned long long& size) const;  ///< Bytes.
    /// Bits of `CFileStatus::Attribute`.
    bool GetFileAttribute(const CString& path, unsigned char& attribute) const;
    /// Whether a file, a folder or a link, also a link that leads nowhere, has that name.
    bool FileExists(const CString& path) const;
    bool DirectoryExists(const CString& path) const;  ///< Whether a folder has that name; links are followed.
    /// Whether the folder can be listed and has no entries, hidden entries included.
    bool IsDirectoryEmpty(const CString& path) const;

    // --- Making, renaming, deleting

    /// Makes one folder. False when the name is taken or longer than 255 code units or bytes, or its parent is missing.
    bool MakeDirectory(const CString& path) const;
    /// Makes the folder and all above it. False when it exists already (ask `DirectoryExists` before).
    bool MakePath(const CString& path) const;

    /// Gives a file or folder another name; true at once when both are the same text. False, with nothing changed, when
    /// the file is missing or the new name is taken. A failure of the renaming itself is thrown as `CFile::Rename`
    /// does.
    bool RenameFile(const CString& oldPath, const CString& newPath) const;
    /// Moves a file, link or folder, across file systems too, where the copy is on the disk before the old tree goes.
    /// False when the new name is taken. After a failure, and after `std::bad_alloc`, the old tree is whole and there
    /// is no new tree. Only where the old tree cannot be removed wholly from another file system, the new tree is
    /// complete and the old tree may have lost files. A killed process leaves the old or the new tree complete.
    bool RenameDirectory(const CString& oldPath, const CString& newPath) const;

    bool DeleteFile(const CString& path) const;  ///< Removes a file or a link itself, never a folder.
    /// Removes an empty folder or, with `recursive`, a folder with all it holds, or a file. Links are removed, in the
    /// folder and at the path itself, and what they lead to is not. Stops at the first entry that cannot be removed.
    /// "", the root folder and paths that end in "." or ".." are refused.
    bool DeleteDirectory(const CString& path, signed char recursive) const;
    bool CloseFile(CFile* file) const;  ///< Closes the file; false when writing it back failed.

    // --- Comparing and copying

    /// 1 when both files hold the same bytes, as far as they have a length. 0 when they differ, and when a file cannot
    /// be opened (see `CFile::Open`) or read to the length it had, or is open in a `CFile` that denies it to others.
    /// `blockSize` is a hint at how many bytes to read at once, brought to between 128 KiB and 1 MiB.
    int CompareFiles(const CString& first, const CString& second, unsigned long blockSize) const;

    /// Copies a file, a link, or a folder with all it holds. 1 when copied, or when the flags let the destination stay.
    /// - A read-only destination, a folder too, stays without flags 0x2 and 0x4 (result 1), and with them may be left
    ///   writable by a failure; a writable file stays with 0x1 (result 1) and is replaced without; any other folder is
    ///   a failure. A file appears, or replaces the old file, when its copy is complete: a failure or a kill leaves no
    ///   part of a file. A folder appears with all that could be copied of it.
    /// - A killed process leaves at most a hidden folder ".rk-new-0", "-1" ... beside the destination. The next copy
    ///   beside it removes that folder; where the file system has no locks (`flock`) it stays.
    /// - A link is copied as a link. A pipe, socket or device is made anew and never opened. Permissions (read, write
    ///   and execute for owner, group and others) and the times of the last change and access are kept; owner,
    ///   extended attributes and the set-user-id bits are not.
    /// - Entries of a folder that cannot be copied make the result 0; the others are copied. A destination inside the
    ///   folder is not copied into itself.
    /// - The bytes are copied inside the kernel, holes stay holes, and nothing waits for the disk: like any file just
    ///   written the copy may be lost in a power cut.
    ///
    /// With 0x8 the copy is made writable and must be a file or link, else the result is 0; a link is left alone with
    /// what it leads to. `prompt` is not used.
    int CopyFile(const CString& source, const CString& destination, unsigned int flags, rk::TextView prompt) const;

    /// Copies all that a folder holds into an existing folder, each entry as `CopyFile` would, and folders that exist
    /// on both sides into each other. Always 1: an entry that cannot be copied is left out. The last argument has no
    /// effect. In a sub-folder that did not exist, files are copied as they are, and 0x8 makes them writable only
    /// together with 0x2 or 0x4. A destination inside the source is not copied into itself.
    int CopyFiles(const CString& source, const CString& destination, unsigned int flags, signed char) const;

    // --- Listing

    /// The full paths of a folder's entries whose name fits the pattern and whose attribute byte has a bit of
    /// `attributeMask` (`CFileStatus::Attribute`), in the order of the user's language without regard to case, then of
    /// their code units. The caller deletes the list; it is never null, and empty for a folder that cannot be read.
    ///
    ///     "/dir/*.*"    every entry
    ///     "/dir/*"      entries without an extension
    ///     "/dir/*.txt"  entries with the extension "txt", not "TXT"
    ///     "/dir/a.*"    entries whose base name is exactly "a"
    ///     "*.*"         every entry of the current folder, without a folder before the names
    ///
    /// "*" is a wildcard only as the whole base name or extension. A link has its target's attributes; an entry whose
    /// status may not be read has those of its kind, so that no entry is missing.
    CAtlList<CString>* GetFileList(const CString& pattern, unsigned long attributeMask) const;

private:
    [[maybe_unused]] int m_blockSize = 1024;  // kept for the layout of the interface's object
};
