#include "mindmap/program/Program.h"

#include "mindmap/layout/MapCheck.h"
#include "mindmap/program/Options.h"
#include "mindmap/program/ProgressLine.h"
#include "mindmap/program/RunLog.h"
#include "mindmap/program/Settings.h"
#include "mindmap/read/FileError.h"
#include "mindmap/read/OutlineFile.h"
#include "mindmap/read/Placeholders.h"
#include "mindmap/write/BranchColors.h"
#include "mindmap/write/HtmlWriter.h"
#include "mindmap/write/MapFile.h"
#include "mindmap/write/SvgWriter.h"

#include <RkUtilities/foundation/NativePath.h>
#include <RkUtilities/foundation/UserLocale.h>
#include <RkUtilities/guid/CrkGuid.h>
#include <RkUtilities/logging/CrkLogTypes.h>
#include <RkUtilities/paths/CrkPathUtilities.h>
#include <RkUtilities/paths/SECFileSystem.h>
#include <RkUtilities/preferences/ApplicationName.h>

#include <algorithm>
#include <filesystem>
#include <istream>
#include <new>
#include <ostream>
#include <string>
#include <system_error>

namespace mindmap {

namespace {

/// "dir/plan.opml" and "svg" give "dir/plan.svg"; a name that is all extension, ".plan", is kept: ".plan.svg".
CString WithExtension(const CString& path, const CString& extension) {
    const CString base = CrkPathUtilities::FileWithoutExtensionFromFilename(path);
    const CString name = base.IsEmpty() ? CrkPathUtilities::FileWithExtensionFromFilename(path) : base;
    return CrkPathUtilities::PathFromFilename(path) + CrkPathUtilities::AddExtension(name, extension);
}

bool IsHtml(const CString& path) {
    const CString extension = CrkPathUtilities::GetExtensionFromFileName(path);
    return extension.CompareNoCase(u"html") == 0 || extension.CompareNoCase(u"htm") == 0;
}

/// The user's locale, as long as the object lives; the environment's when the name is empty.
class UserLocale {
public:
    explicit UserLocale(const CString& name) { rk::SetUserLocale(name.ToUtf8()); }
    ~UserLocale() { rk::SetUserLocale({}); }
    UserLocale(const UserLocale&) = delete;
    UserLocale& operator=(const UserLocale&) = delete;
};

/// The path of an outline that the command names. An outline without a folder may also be where the last outline was.
CString FindOutline(const CString& path) {
    const SECFileSystem files;
    if (!CrkPathUtilities::PathFromFilename(path).IsEmpty() || files.FileExists(path) || LastFolder().IsEmpty())
        return path;
    const CString there = CrkPathUtilities::AppendToPath(LastFolder(), path);
    return CrkPathUtilities::FileNotDirectoryExists(there) ? there : path;
}

/// Fills in the paths that the command leaves out.
///
/// @throws UsageError
void CompletePaths(Options& options) {
    const bool isPiped = options.outlinePath == kStandardStream;
    if (!isPiped)
        options.outlinePath = FindOutline(options.outlinePath);
    if (options.mapPath.IsEmpty())
        options.mapPath = isPiped ? CString(kStandardStream) : WithExtension(options.outlinePath, u"svg");
    if (options.mapPath == kStandardStream)
        return;
    if (options.logFolder.IsEmpty())
        options.logFolder = WithExtension(options.mapPath, u"log");
    std::error_code absent;  // a file that is not there cannot be lost
    if (std::filesystem::equivalent(rk::NativePath(options.mapPath), rk::NativePath(options.outlinePath), absent))
        throw UsageError{u"the map would take the outline's place"};
}

/// An outline or map as messages name it, without what would change a terminal.
CString Named(const CString& path, const CString& stream = u"standard input") {
    CString name = path == kStandardStream ? stream : path;
    for (int i = 0; i < name.GetLength(); ++i)
        if (const unsigned short unit = name.GetAt(i); unit < 0x20 || (unit >= 0x7F && unit < 0xA0))
            name.SetAt(i, u'\uFFFD');
    return name;
}

/// "plan.opml:12: mismatched tag"
CString Described(const CString& path, const OutlineError& error) {
    CString text = Named(path) + u":";
    if (error.line > 0)
        text += CString(std::to_string(error.line)) + u":";
    return text + u" " + error.reason;
}

CString Counted(std::size_t count, const CString& noun) {
    return CString(std::to_string(count)) + u" " + noun + (count == 1 ? u"" : u"s");
}

/// Gives every topic its GUID, and tells the log which of them are not shown in full.
std::vector<CString> NameTopics(const Outline& outline, const MapLayout& map, RunLog& log) {
    std::vector<CString> ids;
    ids.reserve(outline.topics.size());
    for (std::size_t i = 0; i < outline.topics.size(); ++i) {
        const CFUUIDBytes id = CrkGuid::CreateGuid();
        ids.push_back(CrkGuid::GuidToString(id));
        if (map.shapes[i].text.isShortened)
            log.Write(CrkLogWriter::LogNotice,
                      CString(u"Shortened ") + ids.back() + u", which begins in line " +
                          CString(std::to_string(outline.topics[i].line)),
                      u"Layout", id);
    }
    return ids;
}

Outline Read(const Options& options, std::istream& in) {
    Outline outline =
        options.outlinePath == kStandardStream ? ReadOutlineStream(in) : ReadOutlineFile(options.outlinePath);
    for (Topic& topic : outline.topics)
        if (options.expandsLinks)
            topic.link = ExpandPlaceholders(topic.link);
    return outline;
}

/// Reads, lays out, checks and writes; returns what came of it in a line.
CString Draw(const Options& options, RunLog& log, std::istream& in, std::ostream& out) {
    ProgressLine progressLine;
    const ProgressHook progress = progressLine.Hook();

    const Outline outline = Read(options, in);
    log.Write(CrkLogWriter::LogInfo,
              CString(u"Read ") + Counted(outline.topics.size(), u"topic") + u" from " + Named(options.outlinePath));
    if (outline.leftOutCount > 0)
        log.Write(CrkLogWriter::LogNotice,
                  Counted(static_cast<std::size_t>(outline.leftOutCount), u"topic") + u" left out as commented out");

    const MapLayout map = LayOut(outline, progress);
    if (!CheckMap(outline, map, progress).AreNone())
        throw OutlineError{0, u"the topics cannot be placed without touching each other"};

    const Legend legend = MakeLegend(outline, map);
    const std::vector<CString> guids = NameTopics(outline, map, log);
    const auto write = [&](const TextSink& sink) {
        if (IsHtml(options.mapPath))
            WriteHtml(outline, map, legend, ChosenDesign().shapes, sink, progress);
        else
            WriteSvg(outline, map, legend, ChosenDesign(), guids, sink, progress);
    };
    CString mapPath = options.mapPath;
    if (mapPath == kStandardStream) {
        write([&](const CString& piece) { out << piece; });
        if (!out.flush())
            throw FileError{u"standard output", u"cannot be written"};
    } else {
        MapFile file(mapPath, options.mayReplaceMap ? Overwrite::Allowed : Overwrite::Never);
        write([&](const CString& piece) { file.Write(piece); });
        mapPath = file.Commit();
    }
    if (options.outlinePath != kStandardStream)
        RememberFolderOf(options.outlinePath);

    const auto deepest = std::max_element(outline.topics.begin(), outline.topics.end(),
                                          [](const Topic& a, const Topic& b) { return a.level < b.level; });
    CString summary;
    summary.Format(u": %zu topics on %d levels, %.0f by %.0f units", outline.topics.size(), deepest->level + 1,
                   static_cast<double>(legend.bounds.width), static_cast<double>(legend.bounds.height));
    if (mapPath != options.mapPath)
        summary += u"; " + Named(options.mapPath) + u" stays as it was (see --replace)";
    return Named(mapPath, u"standard output") + summary;
}

int Run(const Options& options, std::istream& in, std::ostream& out, std::ostream& err) {
    RunLog log(options.logFolder);
    const auto fail = [&](const CString& reason) {
        log.Write(CrkLogWriter::LogError, reason);
        err << "mindmap: " << reason << '\n';
        return 1;
    };
    log.Write(CrkLogWriter::LogInfo, CString(u"Drawing ") + Named(options.outlinePath),
              CrkLogTypes::LogTypeApplicationStart);
    try {
        const CString summary = Draw(options, log, in, out);
        log.Write(CrkLogWriter::LogInfo, CString(u"Wrote ") + summary, CrkLogTypes::LogTypeApplicationExit);
        if (options.mapPath != kStandardStream)
            out << summary << '\n';
    } catch (const OutlineError& error) {
        return fail(Described(options.outlinePath, error));
    } catch (const FileError& error) {
        return fail(Named(error.path) + u": " + error.reason);
    } catch (const std::bad_alloc&) {
        return fail(Named(options.outlinePath) + u": not enough memory");
    }
    if (const CString trouble = TroubleWithSettings(); !trouble.IsEmpty())
        log.Write(CrkLogWriter::LogNotice, trouble);
    if (log.IsBroken())
        err << "mindmap: no log: " << Named(log.FilePath()) << " cannot be written\n";
    else if (!log.IsOff() && options.mapPath != kStandardStream &&
             CrkPathUtilities::FileNotDirectoryExists(log.FilePath()))  // the settings may switch it off
        out << "Log: " << Named(log.FilePath()) << '\n';
    return 0;
}

/// Changes settings, and shows them when that is wanted or there is no outline to draw.
int RunSettings(const Options& options, const SettingList& changes, std::ostream& out, std::ostream& err) {
    ChangeSettings(changes);
    if (options.wantsSettings || options.outlinePath.IsEmpty()) {
        for (const auto& [name, value] : AllSettings())
            out << name << '=' << value << '\n';
        if (!PlaceOfSettings().IsEmpty())
            out << "Kept in " << PlaceOfSettings() << '\n';
    }
    const CString trouble = TroubleWithSettings();
    if (trouble.IsEmpty())
        return 0;
    err << "mindmap: " << trouble << '\n';
    return 1;
}

int RunCommand(const std::vector<std::string_view>& arguments, std::istream& in, std::ostream& out, std::ostream& err) {
    try {
        Options options = ReadOptions(arguments);
        if (options.wantsHelp) {
            out << kHelp;
            return 0;
        }
        const SettingList changes = ReadSettings(options.assignments);
        const bool isAboutSettings = options.wantsSettings || !changes.empty();
        const int settingsStatus = isAboutSettings ? RunSettings(options, changes, out, err) : 0;
        if (options.outlinePath.IsEmpty())
            return settingsStatus;
        CompletePaths(options);
        const UserLocale locale(options.locale);
        return Run(options, in, out, err);
    } catch (const UsageError& error) {
        err << "mindmap: " << Named(error.reason) << "; see mindmap --help\n";
        return 2;
    }
}

}  // namespace

int RunProgram(const std::vector<std::string_view>& arguments, std::istream& in, std::ostream& out, std::ostream& err) {
    const ScopedColorNames colorNames;
    if (!colorNames.AreThere())
        err << "mindmap: the map misses words: the string tables beside the program are missing or cannot be read\n";
    rk::SetApplicationName("mindmap");
    const int status = RunCommand(arguments, in, out, err);
    if (status != 0 || out.flush())
        return status;
    err << "mindmap: standard output: cannot be written\n";
    return 1;
}

}  // namespace mindmap
