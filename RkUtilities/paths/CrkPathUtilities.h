#pragma once

#include "RkUtilities/RkExport.h"
#include "RkUtilities/foundation/CString.h"

/// Paths as text, and what callers ask most often about the files behind them.
/// - A path is UTF-16 text. "/" separates its elements; where a path is taken apart "\" separates too. Code units are
///   looked at one by one, the only space that is trimmed is U+0020, and comparisons are exact unless a member says so.
/// - Members look at the text alone unless they say "on disk". There a leading "~/" is the home folder and a text with
///   U+0000 names nothing (NativePath.h has the rules); a relative path starts at the process's current folder.
/// - Any text is legal input. What cannot be found comes back as "", false or the text as it was; nothing is logged,
///   and nothing but `std::bad_alloc` is thrown unless a member says so. A null `CString*` is left alone.
/// - Safe from any thread, as long as no thread changes the environment or the current folder meanwhile.
class RK_EXPORT CrkPathUtilities {
public:
    /// What `NormalizedPath` does with the end of a path; any other value keeps it.
    enum TrailingCharTreatment : int {
        StripTrailingChar = 0,   ///< one "/" goes, as with `StripTrailingSlash`
        AssureTrailingChar = 1,  ///< one "/" comes, as with `AssureTrailingSlash`
        KeepTrailingChar = 2,
    };

    /// Codes for `GetSpecialFolderPath`: four characters, the first in the highest byte. XDG_..._DIR are the entries of
    /// $XDG_CONFIG_HOME/user-dirs.dirs ("xdg-user-dirs"), which the user switches off by the home folder itself; the
    /// variables are those of the XDG base directories (ignored unless absolute).
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

    static void AssureTrailingSlash(CString* path);  ///< Appends "/" unless the path is empty or ends with "/".
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
    static void StripLeadingSpace(CString* path);   ///< Removes U+0020 at the start.
    static void StripTrailingSpace(CString* path);  ///< Removes U+0020 at the end.

    // --- Absolute and relative paths

    /// Whether the path begins with "/". "~/x" does not.
    static bool IsAbsoluteFilename(const CString& path) { return path.GetAt(0) == u'/'; }
    /// The path, "/" unless the path is empty or ends with "/", and the name as it is: "/a/" and "/b" give "/a//b".
    static CString AppendToPath(const CString& path, const CString& name);
    /// The path itself when it begins with "/" or "~"; else the current folder, "/" and the path. "." and ".." stay. ""
    /// gives "", and a relative path stays as it is when the current folder was deleted or may not be read.
    static CString GetAbsolutePath(const CString& path);
    /// `GetAbsolutePath` of a file name that begins with "/", else of base folder and file name together.
    ///
    ///     "../y" with "/base/"  ->  "/base/../y"
    ///     "/x/y" with "/base"   ->  "/x/y"
    static CString RelativeToAbsoluteFilename(const CString& fileName, const CString& baseFolder);
    /// The file name without the base folder at its start and the "/" after that. The text alone decides, not elements:
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
    /// Unicode, chapter 3, D145). Both paths are made absolute first, "~" and "~/" being the home folder. Repeated
    /// slashes count as a single slash, "." goes, and ".." takes away the element before it by the text alone, also
    /// after a link. "" when a path is "", or is relative and there is no current folder.
    static CString CalcRelativePathname(CString target, CString baseFolder);
    /// The path after `CString::MakeLower`. Nothing is looked up or expanded.
    static CString GetLowercaseLongPath(const CString& path);

    // --- Names of files and folders: the text alone. An extension is given with or without its leading dot

    /// The name with the extension after it, whatever extension it has already; as it is for "".
    ///
    ///     "Map" and "ext" or ".ext"  ->  "Map.ext"
    ///     "Map.ext" and "ext"        ->  "Map.ext.ext"
    static CString AddExtension(const CString& name, const CString& extension);
    /// The name with the extension in place of what begins at the last dot of the whole text, be it a folder's dot; ""
    /// removes the extension.
    ///
    ///     "Map.old" and "ext"     ->  "Map.ext"
    ///     "Map.old" and ""        ->  "Map"
    ///     "/dir.v/Map" and "ext"  ->  "/dir.ext"
    static CString ReplaceExtension(const CString& name, const CString& extension);
    /// Whether the name ends with the extension's text, without regard to case and to a dot before it; true for "".
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
    /// Puts a double quotation mark at both ends of the path, whatever it has already.
    static void QuotePath(CString& path) { path = u'"' + path + u'"'; }
    /// Takes a double quotation mark off both ends; false, with the path as it was, where an end has no mark.
    static bool UnquotePath(CString& path);

    // --- Comparing

    /// Whether the absolute paths are the same text without regard to case. Links are not followed.
    static bool AreFilenamesEqual(const CString& first, const CString& second);
    /// Whether both can be opened on disk for reading, and `AreFilenamesEqual` of the paths that the system then
    /// reports, links resolved. Folders and devices may be compared too, a pipe is not waited for. Hard links of the
    /// same file have different paths, so they are not equal. False for a file that is deleted meanwhile.
    static bool ComparePaths(const CString& first, const CString& second);
    /// Whether both are folders on disk and the candidate's text begins with the folder's. A folder is its own
    /// sub-folder, and "/a/bc" is a sub-folder of "/a/b".
    static bool IsSubFolder(const CString& folder, const CString& candidate);

    // --- On disk

    /// The user's folder of a kind, without trailing slash. `code` is an `ErkSpecialFolder`; "" for any other value,
    /// and for a folder that does not exist: look before a name is appended. Nothing is created.
    static CString GetSpecialFolderPath(int code);
    /// Whether the file or folder lacks its owner's permission to write. A link is followed. False for a missing file.
    static bool IsFileReadOnly(const CString& path);
    /// Takes the owner's permission to write, and nothing else. True when this call changed it: false when it was so
    /// already, for a missing file, in a folder that may not be entered, and for a link, whose target is left alone. A
    /// file that is put in the place meanwhile is not touched. Throws a `CFileException*` when the permission cannot be
    /// changed (a file of another user, a read-only file system).
    static bool MakeFileReadOnly(const CString& path);
    static bool MakeFileReadWrite(const CString& path);  ///< Gives the permission back, by the same rules.
    /// Whether something other than a folder exists there. A link is followed; a link that leads nowhere counts.
    static bool FileNotDirectoryExists(const CString& path);
    /// Makes the folder and all above it where they are missing. Every "\" counts as "/". False when something else is
    /// in the way or permission is missing; folders made before that stay. Threads and processes may make the same
    /// folders at once.
    static bool AssurePathExists(const CString& path);

    // --- Free names, on disk
    //
    // The first free name of "Map.ext", "Map (2).ext", "Map (3).ext" ... is found. A name of more than 255 bytes has
    // its base cut between characters, before the number. Nothing is made: another program may take the name before its
    // use.
    //
    // Where looking fails (the folder may not be entered, the device fails), no name is free and the result is "".

    /// The path itself when it is free; else its folder and what `MakeNameUnique` gives for its parts: "" for a path
    /// without a folder, and the folder alone for a name without a base (".profile").
    ///
    ///     "/d/Map.ext"  ->  "/d/Map (2).ext"
    static CString GetUniqueFilename(const CString& path);
    /// A name that no file, folder or link in the folder has; "" for an empty folder or base name. The base name is
    /// cleaned as `RemoveInvalidCharsFromFilename` does. A name that has the extension already (given without a dot, ""
    /// for no extension) is taken apart first, where a backslash still separates:
    ///
    ///     "Map" or "Map.ext" with "ext"  ->  "Map.ext", "Map (2).ext", ...
    ///     "Plan" or "Plan." with ""      ->  "Plan", "Plan (2)", ...
    ///     "a\b" with "", with "ext"      ->  "b", "a\b.ext"
    static CString MakeNameUnique(const CString& folder, const CString& baseName, const CString& extension);
    /// A name that no folder in `folder` has; files do not count. It is cleaned as `RemoveInvalidCharsFromFolderName`
    /// does and has no extension: "Notes.old", then "Notes.old (2)".
    static CString MakeFolderNameUnique(const CString& folder, const CString& name);

    // --- Temporary files, on disk

    /// The user's folder for temporary files, absolute and without trailing "/", the same for the life of the process.
    /// It is $TMPDIR, if that is the absolute path of a folder of the user that no other user may write. Else it is a
    /// private folder (mode 0700) that is made when it is missing: "RkUtilities-<user id>" in $TMPDIR or /tmp, if no
    /// other user can rename it there, neither a link nor another user's, or "RkUtilities/temporary" in the user's
    /// caches. Where no such folder can be made, it is /tmp.
    static CString GetTempFolder();
    /// Makes an empty file that only the user may read and write (mode 0600) and returns its path: the temporary
    /// folder, "/", the prefix and eight letters and digits. The caller deletes it.
    /// Nothing that exists is opened or replaced. When no file can be made (the prefix leads to a folder that does not
    /// exist or is too long for a name, the disk is full) the path ends with "XXXXXXXX" and no such file was made.
    static CString GetTempFilename(const CString& prefix);
};
