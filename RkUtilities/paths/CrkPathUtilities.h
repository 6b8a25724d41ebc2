#pragma once

#include "RkUtilities/RkExport.h"
#include "RkUtilities/foundation/CString.h"

/// Paths as text, and what callers ask most often about the files behind them.
///
/// - A path is UTF-16 text. "/" separates its elements; where a path is taken apart "\" separates too. Code units are
///   looked at one by one, the only space that is trimmed is U+0020, and comparisons are exact unless a member says so.
/// - Members look at the text alone unless they say "on disk". There a leading "~/" is the home folder and a text with
///   U+0000 names nothing (NativePath.h has the rules); a relative path starts at the process's current folder.
/// - Any text is legal input. What cannot be found comes back as "", false or the text as it was; nothing is logged,
///   and nothing throws unless a member says so. A null `CString*` is left alone.
/// - Safe from any thread, as long as no thread changes the environment or the current folder meanwhile.
class RK_EXPORT CrkPathUtilities {
public:
    /// What `NormalizedPath` does with the end of a path; any other value keeps it.
    enum TrailingCharTreatment : int {
        StripTrailingChar = 0,   ///< one "/" goes, as with `StripTrailingSlash`
        AssureTrailingChar = 1,  ///< one "/" comes, as with `AssureTrailingSlash`
        KeepTrailingChar = 2,
    };

    /// Codes for `GetSpecialFolderPath`: four characters, the first in the highest byte.
    /// XDG_..._DIR are the entries of $XDG_CONFIG_HOME/user-dirs.dirs ("xdg-user-dirs"; one that leads to the home
    /// folder itself is switched off), the variables those of the XDG base directories (ignored unless absolute).
    enum ErkSpecialFolder : int {
        HomeFolder = 0x63757372,                     ///< "cusr": $HOME, else the password database
        DesktopFolder = 0x6465736B,                  ///< "desk": XDG_DESKTOP_DIR, else ~/Desktop
        DocumentsFolder = 0x646F6373,                ///< "docs": XDG_DOCUMENTS_DIR, else ~/Documents
        DownloadsFolder = 0x646F776E,                ///< "down": XDG_DOWNLOAD_DIR, else ~/Downloads
        PicturesFolder = 0x70646F63,                 ///< "pdoc": XDG_PICTURES_DIR, else ~/Pictures
        MusicFolder = static_cast<int>(0xB5646F63),  ///< the byte B5, then "doc": XDG_MUSIC_DIR, else ~/Music
        MoviesFolder = 0x6D646F63,                   ///< "mdoc": XDG_VIDEOS_DIR, else ~/Videos
        PublicFolder = 0x70756262,                   ///< "pubb": XDG_PUBLICSHARE_DIR, else ~/Public
        PreferencesFolder = 0x70726566,              ///< "pref": $XDG_CONFIG_HOME, else ~/.config
        ApplicationSupportFolder = 0x61737570,       ///< "asup": $XDG_DATA_HOME, else ~/.local/share
        CachesFolder = 0x63616368,                   ///< "cach": $XDG_CACHE_HOME, else ~/.cache
        TemporaryItemsFolder = 0x74656D70,           ///< "temp": the user's temporary folder
    };

    // --- Taking a path apart: folder + file name is the path again, for every path

    /// What follows the last separator; the whole path when it has no separator.
    ///
    ///     "/maps/plan.old.map"  ->  "plan.old.map"
    ///     "/maps/"              ->  ""
    static CString FileWithExtensionFromFilename(const CString& path);
    /// What ends with the last separator, "" for a path without a separator.
    ///
    ///     "C:\maps\plan.map"  ->  "C:\maps\"
    static CString PathFromFilename(const CString& path);
    /// What follows the file name's last dot, without the dot.
    ///
    ///     "plan.old.map"   ->  "map"
    ///     ".profile"       ->  "profile"   a leading dot opens an extension like any other
    ///     "plan.", "plan"  ->  ""
    ///     "/maps.v2/plan"  ->  ""          dots of folders do not count
    static CString GetExtensionFromFileName(const CString& path);
    /// The file name without extension and dot.
    ///
    ///     "/maps/plan.old.map"  ->  "plan.old"
    ///     ".profile"            ->  ""
    ///     "plan."               ->  "plan"     a closing dot goes
    static CString FileWithoutExtensionFromFilename(const CString& path);

    // --- Slashes and spaces

    /// Appends "/" unless the path is empty or ends with one.
    static void AssureTrailingSlash(CString* path);
    /// Removes one "/" at the end: "a//" becomes "a/", and "/" becomes "".
    static void StripTrailingSlash(CString* path);
    /// Copies `source` and assures the copy's trailing slash. Both may be the same object.
    static void AssignDirString(const CString& source, CString& target);
    /// The path with every "\" turned into "/" and then its end treated; spaces stay.
    ///
    ///     "a\b\"  ->  "a/b", "a/b/" and "a/b/" (strip, assure, keep)
    static CString NormalizedPath(const CString& path, TrailingCharTreatment treatment);
    /// Turns every "\" into "/", removes spaces at both ends and assures the trailing slash.
    ///
    ///     "  C\dir\sub  "  ->  "C/dir/sub/"
    ///     "   "            ->  ""
    static void NormalizePath(CString* path);
    /// Removes U+0020 at the start / at the end.
    static void StripLeadingSpace(CString* path);
    static void StripTrailingSpace(CString* path);  ///< Removes U+0020 at the end.

    // --- Absolute and relative paths

    /// Whether the path begins with "/". "~/x" does not.
    static bool IsAbsoluteFilename(const CString& path) { return path.GetAt(0) == u'/'; }
    /// The path, "/" unless it is empty or ends with one, and the name as it is: "/a/" and "/b" give "/a//b".
    static CString AppendToPath(const CString& path, const CString& name);
    /// The path itself when it begins with "/" or "~"; else the current folder, "/" and the path. "." and ".." stay as
    /// they are.
    /// "" gives "", and a relative path stays as it is when the current folder was deleted or may not be read.
    static CString GetAbsolutePath(const CString& path);
    /// `GetAbsolutePath` of the file name or, when that does not begin with "/", of base folder and file name put
    /// together.
    ///
    ///     "../y" with "/base/"  ->  "/base/../y"
    ///     "/x/y" with "/base"   ->  "/x/y"
    static CString RelativeToAbsoluteFilename(const CString& fileName, const CString& baseFolder);
    /// The file name without the base folder that it begins with and the "/" after that; as it is when it does not
    /// begin so. The text alone decides, not elements:
    ///
    ///     "/a/b/c.txt" with "/a/b" or "/a/b/"  ->  "c.txt"
    ///     "/a/bc/d" with "/a/b"                ->  "c/d"
    ///     "/A/b" with "/a"                     ->  "/A/b"
    static CString AbsoluteToRelativeFilename(const CString& fileName, const CString& baseFolder);
    /// The way from the base folder to the target, with "../" and "./" elements and without trailing "/".
    ///
    ///     "/a/b/c/f.txt" from "/a/b/d"     ->  "../c/f.txt"
    ///     "/a/b/f.txt" from "/a/b"         ->  "./f.txt"
    ///     "/a" from "/a/b/c"               ->  "../.."
    ///     "/a/b/" from "/a/b"              ->  "."
    ///     "/Users/Me/x" from "/users/me"   ->  "./x"
    ///
    /// Elements are equal without regard to case and to how their characters are composed (canonical caseless matching;
    /// Unicode, chapter 3, D145). Both are made absolute first, "~" and "~/" being the home folder. Repeated slashes
    /// count as one, "." goes, and ".." takes the element before it away without asking the disk: behind a link to a
    /// folder that is not the parent on disk. "" when one of them is "", or is relative and there is no current folder.
    static CString CalcRelativePathname(CString target, CString baseFolder);
    /// The path after `CString::MakeLower`. Nothing is looked up or expanded.
    static CString GetLowercaseLongPath(const CString& path);

    // --- Names of files and folders: the text alone. An extension is given with or without its leading dot

    /// The name with the extension after it, whatever extension it has already; as it is for "".
    ///
    ///     "Map" and "ext" or ".ext"  ->  "Map.ext"
    ///     "Map.ext" and "ext"        ->  "Map.ext.ext"
    static CString AddExtension(const CString& name, const CString& extension);
    /// The name with the extension in place of what begins at its last dot, if any. The last dot of the whole text
    /// counts, be it a folder's; "" removes the extension.
    ///
    ///     "Map.old" and "ext"     ->  "Map.ext"
    ///     "Map.old" and ""        ->  "Map"
    ///     "/dir.v/Map" and "ext"  ->  "/dir.ext"
    static CString ReplaceExtension(const CString& name, const CString& extension);
    /// Whether the name ends with the extension's text, without regard to case; no dot is needed before it. "" always
    /// does.
    ///
    ///     "Map.EXT", "Mapext" and "ext"  ->  true
    ///     "ext" and ".ext"               ->  false
    static bool HasExtension(const CString& name, const CString& extension);
    /// Whether the name has neither "/" nor ":". Line breaks and everything else are valid.
    static bool DoesFilenameUseOnlyValidCharacters(const CString& name);
    /// Removes carriage returns and line feeds, and puts "." for each "/" and ":". The second argument has no effect.
    ///
    ///     "Q1/Q2: plan"  ->  "Q1.Q2. plan"
    static void RemoveInvalidCharsFromFilename(CString& name, unsigned short replacement);
    /// The same for the name of a folder.
    static void RemoveInvalidCharsFromFolderName(CString& name) { RemoveInvalidCharsFromFilename(name, 0); }
    /// Puts `replacement` for each code unit that occurs in `characters`; 0 puts U+0000.
    static void RemoveCharsFromFilename(CString& name, const CString& characters, unsigned short replacement);
    /// Puts one double quotation mark before and one after the path, whatever it has already.
    static void QuotePath(CString& path) { path = u'"' + path + u'"'; }
    /// Takes one double quotation mark off both ends. False, with the path as it was, when it has not two of them.
    static bool UnquotePath(CString& path);

    // --- Comparing

    /// Whether the absolute paths are the same text without regard to case. Links are not followed.
    static bool AreFilenamesEqual(const CString& first, const CString& second);
    /// Whether both, on disk, can be opened for reading and `AreFilenamesEqual` of the paths that the system then
    /// reports, links resolved. Folders and devices may be compared too, a pipe is not waited for. Two hard links of
    /// one file have different paths, so they are not equal; files whose paths differ in case only are. False for a
    /// file that is deleted meanwhile.
    static bool ComparePaths(const CString& first, const CString& second);
    /// Whether both are folders on disk and the candidate's text begins with the folder's. A folder is its own
    /// sub-folder, and "/a/bc" is one of "/a/b".
    static bool IsSubFolder(const CString& folder, const CString& candidate);

    // --- On disk

    /// The user's folder of a kind, without trailing slash. `code` is an `ErkSpecialFolder`; "" for any other value,
    /// and for a folder that does not exist. Nothing is created.
    static CString GetSpecialFolderPath(int code);
    /// Whether the owner of the file or folder may not write it, whichever user asks and whatever other users may do. A
    /// link is followed. False for what does not exist.
    static bool IsFileReadOnly(const CString& path);
    /// Takes the owner's permission to write, or gives it. True when this call changed it: false when it was so
    /// already, and for what does not exist. Only the file or folder named is changed: a link has no permissions, and
    /// what it leads to is left alone (false). Nothing but this one permission changes, and what is put in the file's
    /// place meanwhile is not touched. Throws a `CFileException*` when the permission cannot be changed (a file of
    /// another user, a read-only file system).
    static bool MakeFileReadOnly(const CString& path);
    static bool MakeFileReadWrite(const CString& path);  ///< Gives the permission back, by the same rules.
    /// Whether something other than a folder exists there. A link is followed; one that leads nowhere counts.
    static bool FileNotDirectoryExists(const CString& path);
    /// Makes sure that the folder exists, with all that lead to it. Every "\" counts as "/". False when something else
    /// is in the way or permission is missing; folders made before that stay. Several threads and processes may make
    /// the same folders at once.
    static bool AssurePathExists(const CString& path);

    // --- Free names, on disk
    //
    // The first free one of "Map.ext", "Map (2).ext", "Map (3).ext" ... is found, also when a later one is taken. A
    // name of more than 255 bytes has its base cut between characters, before the number. Nothing is made: another
    // program may take the name before its use.
    //
    // A name is free only when nothing is there. Where looking fails (the folder may not be entered, the device fails),
    // no name is free and the result is "".

    /// The path itself when nothing has it; else its folder and what `MakeNameUnique` gives for its parts, which is ""
    /// for a path without a folder, and the folder alone for a name without a base (".profile").
    ///
    ///     "/d/Map.ext"  ->  "/d/Map (2).ext"
    static CString GetUniqueFilename(const CString& path);
    /// A file name that nothing in the folder has, neither file nor folder nor link; "" for an empty folder or base
    /// name. The base name is cleaned as `RemoveInvalidCharsFromFilename` does. A name that has the extension already
    /// (given without a dot; a name without an extension has "") is taken apart first, where a backslash still
    /// separates:
    ///
    ///     "Map" or "Map.ext" with "ext"  ->  "Map.ext", "Map (2).ext", ...
    ///     "Plan" or "Plan." with ""      ->  "Plan", "Plan (2)", ...
    ///     "a\b" with "", with "ext"      ->  "b", "a\b.ext"
    static CString MakeNameUnique(const CString& folder, const CString& baseName, const CString& extension);
    /// A name that no folder in `folder` has; files do not count. It is cleaned as `RemoveInvalidCharsFromFolderName`
    /// does; extensions are no matter: "Notes.old", then "Notes.old (2)".
    static CString MakeFolderNameUnique(const CString& folder, const CString& name);

    // --- Temporary files, on disk

    /// The user's folder for temporary files, absolute and without trailing "/". The same for the life of the process,
    /// even when it is deleted. $TMPDIR when it is an absolute path of a folder that belongs to the user and that no
    /// other user may write. Else a private folder (mode 0700) that is made when it is missing: "RkUtilities-<user id>"
    /// in $TMPDIR or /tmp, where a link and another user's folder are not used, or "RkUtilities/temporary" in the
    /// user's caches. Where no such folder can be made, /tmp.
    static CString GetTempFolder();
    /// Makes an empty file that only the user may read and write (mode 0600) and returns its path: the temporary
    /// folder, "/", the prefix and eight letters and digits. The caller deletes it.
    /// Nothing that exists is opened or replaced. When no file can be made (the prefix leads to a folder that does not
    /// exist or is too long for a name, the disk is full) the path ends with "XXXXXXXX" and no such file was made.
    static CString GetTempFilename(const CString& prefix);
};
