#include "tests/faults/Workload.h"

#include <memory>

namespace faults {
namespace {

using Paths = CrkPathUtilities;

const SECFileSystem& Files() {
    static const SECFileSystem files;
    return files;
}

void Begin(Scene& scene) {
    scene.Make({{"old.map", "the old map"},
                {"new.map", "the new map, which is longer"},
                {"tree/file", "content"},
                {"tree/folder/deep", "deep content"},
                {"tree/folder/empty/", ""},
                {"names/plan.map", "1"},
                {"names/plan 2.map", "2"}});
}

/// A call of CFile that returns nothing.
#define DOES(name, call, keeps)                                                                                        \
    {name, &Begin, [](Scene& s) { return call, std::string("done"); }, "CFileException", keeps}

CFile Opened(bool (*open)(CFile& file, const CString& path, CFileException* error), const CString& path) {
    CFileException error;
    CFile file;
    if (!open(file, path, &error))
        throw new CFileException(error);
    return file;
}

template <unsigned flags> bool Open(CFile& file, const CString& path, CFileException* error) {
    return file.Open(path, flags, error);
}
bool OpenNew(CFile& file, const CString& path, CFileException* error) { return file.OpenNew(path, error); }

std::string Read(Scene& scene) {
    char bytes[64]{};
    return {bytes, Opened(&Open<CFile::modeRead>, scene.Text("old.map")).Read(bytes, sizeof bytes)};
}

std::string WriteOver(Scene& scene) {
    CFile file = Opened(&Open<CFile::modeReadWrite | CFile::modeTruncate>, scene.Text("old.map"));
    file.WriteString(u"shorter");
    file.SetLength(5);
    file.Close();
    return "written";
}

void Save(Scene& scene, void (CFile::*commit)(const CString&), const char* name) {
    CFile file = Opened(&OpenNew, scene.Text(name));
    file.WriteString(u"what was saved");
    (file.*commit)(scene.Text(name));
}

CFileStatus ReadOnly() {
    CFileStatus status;
    status.m_attribute = CFileStatus::readOnly;
    return status;
}

std::size_t EntryCount(const Scene& scene) {
    const std::unique_ptr<const CAtlList<CString>> found(Files().GetFileList(scene.Text("names/*.*"), 0xFF));
    return found->GetCount();
}

CString CleanName() {
    CString name = u"Plan: <Łódź>/2027? and a name that is longer";
    Paths::RemoveInvalidCharsFromFilename(name, u'_');
    return name;
}

const Workload kRows[] = {
    {"file: read", &Begin, &Read, "CFileException"},
    {"file: read all", &Begin, [](Scene& s) { return CFile(s.Text("old.map"), CFile::modeRead).ReadAll(); },
     "CFileException"},
    {"file: write over", &Begin, &WriteOver, "CFileException", Keeps::Nothing},
    DOES("file: save a new one", Save(s, &CFile::CommitAs, "saved.map"), Keeps::Either),
    DOES("file: save over", Save(s, &CFile::CommitOver, "old.map"), Keeps::Either),
    DOES("file: replace", CFile::ReplaceFile(s.Text("new.map"), s.Text("old.map")), Keeps::Either),
    DOES("file: rename", CFile::Rename(s.Text("old.map"), s.Text("another.map")), Keeps::Before),
    DOES("file: remove", CFile::Remove(s.Text("old.map")), Keeps::Before),
    DOES("file: make read-only", CFile::SetStatus(s.Text("old.map"), ReadOnly()), Keeps::Either),
    GIVES("files: copy", &Begin, Files().CopyFile(s.Text("new.map"), s.Text("copy.map"), 0, nullptr), "0"),
    GIVES("files: copy over", &Begin, Files().CopyFile(s.Text("new.map"), s.Text("old.map"), 0, nullptr), "0"),
    GIVES("files: copy a tree", &Begin, Files().CopyFile(s.Text("tree"), s.Text("copied"), 0, nullptr), "0",
          Keeps::Nothing),
    GIVES("files: copy contents", &Begin, Files().CopyFiles(s.Text("tree"), s.Text("names"), 0, 0), "0|1",
          Keeps::Nothing),
    GIVES("files: rename", &Begin, Files().RenameFile(s.Text("old.map"), s.Text("another.map")),
          "false|CFileException"),
    GIVES("files: move a folder", &Begin, Files().RenameDirectory(s.Text("tree"), s.Text("moved")), "false"),
    GIVES("files: move to another file system", &Begin,
          Files().RenameDirectory(s.Text("tree"), s.Text("../elsewhere/tree")), "false", Keeps::Moved),
    GIVES("files: move to a taken name", &Begin, Files().RenameDirectory(s.Text("old.map"), s.Text("new.map")),
          "false"),
    GIVES("files: delete a tree", &Begin, Files().DeleteDirectory(s.Text("tree"), 1), "false", Keeps::Nothing),
    GIVES("files: make folders", &Begin, Files().MakePath(s.Text("a/b/c")), "false", Keeps::Nothing),
    GIVES("files: compare", &Begin, Files().CompareFiles(s.Text("new.map"), s.Text("new.map"), 4096), "0"),
    GIVES("files: empty folder", &Begin, Files().IsDirectoryEmpty(s.Text("tree/folder/empty")), "false"),
    GIVES("files: exists", &Begin, Files().FileExists(s.Text("old.map")), "false"),
    GIVES("files: full name", &Begin, Files().GetFullPathName(u"plan.map").GetLength() > 9, "false"),
    GIVES("files: list", &Begin, EntryCount(s), "0|CAtlException"),
    GIVES("paths: free name", &Begin, Files().GetFileName(Paths::GetUniqueFilename(s.Text("names/plan.map"))), ""),
    GIVES("paths: free folder name", &Begin, Paths::MakeFolderNameUnique(s.Text(""), u"tree"), ""),
    GIVES("paths: temporary file", &Begin, Paths::GetTempFilename(u"draft-").IsEmpty(), "true"),
    GIVES("paths: temporary folder", &Begin, Paths::GetTempFolder().IsEmpty(), "true|*"),
    GIVES("paths: special folder", &Begin, Paths::GetSpecialFolderPath(Paths::MusicFolder).IsEmpty(), "true"),
    GIVES("paths: read-only", &Begin, Paths::MakeFileReadOnly(s.Text("old.map")), "false|CFileException",
          Keeps::Either),
    GIVES("paths: existing folders", &Begin, Paths::AssurePathExists(s.Text("a/b/c")), "false", Keeps::Nothing),
    GIVES("paths: relative", &Begin,
          Paths::CalcRelativePathname(u"/maps/trips/north/a.map", u"/maps/plans/of/last/year/"), ""),
    GIVES("paths: absolute", &Begin, Paths::RelativeToAbsoluteFilename(u"../trips/a.map", u"/maps/plans/"), ""),
    GIVES("paths: on disk", &Begin, Paths::ComparePaths(s.Text("tree/../old.map"), s.Text("old.map")), "false"),
    GIVES("paths: sub-folder", &Begin, Paths::IsSubFolder(s.Text("tree"), s.Text("tree/folder")), "false"),
    GIVES("paths: clean name", &Begin, CleanName(), ""),
};

}  // namespace

constinit const std::span<const Workload> kFileWorkloads(kRows);

}  // namespace faults
