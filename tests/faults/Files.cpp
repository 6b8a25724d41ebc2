#include "tests/faults/Workload.h"

#include <memory>

namespace faults {
namespace {

using Paths = CrkPathUtilities;

const SECFileSystem files;

void Begin(Scene& scene) {
    scene.text = u"Plan: <Łódź>/2027? and a name that is longer";
    scene.Make({{"old.map", "the old map"},
                {"new.map", "the new map, which is longer"},
                {"tree/file", "content"},
                {"tree/folder/deep", "deep content"},
                {"names/plan.map", "1"},
                {"names/plan 2.map", "2"}});
}

void WriteOver(Scene& scene) {
    CFile file(scene.Text("old.map"), CFile::modeReadWrite | CFile::modeTruncate);
    file.WriteString(u"shorter");
    file.SetLength(5);
    file.Close();
}

void Save(Scene& scene, void (CFile::*commit)(const CString&), const char* name) {
    CFileException error;
    CFile file;
    if (!file.OpenNew(scene.Text(name), &error))
        throw new CFileException(error);
    file.WriteString(u"what was saved");
    (file.*commit)(scene.Text(name));
}

const Workload kRows[] = {
    GIVES("file: read all", CFile(s.Text("old.map"), CFile::modeRead).ReadAll(), "CFileException"),
    DOES("file: write over", WriteOver(s), "CFileException", Keeps::Nothing),
    DOES("file: save a new one", Save(s, &CFile::CommitAs, "saved.map"), "CFileException", Keeps::Either),
    DOES("file: save over", Save(s, &CFile::CommitOver, "old.map"), "CFileException", Keeps::Either),
    DOES("file: replace", CFile::ReplaceFile(s.Text("new.map"), s.Text("old.map")), "CFileException", Keeps::Either),
    DOES("file: rename", CFile::Rename(s.Text("old.map"), s.Text("another.map")), "CFileException"),
    DOES("file: remove", CFile::Remove(s.Text("old.map")), "CFileException"),
    GIVES("files: copy", files.CopyFile(s.Text("new.map"), s.Text("copy.map"), 0, nullptr), "0"),
    GIVES("files: copy over", files.CopyFile(s.Text("new.map"), s.Text("old.map"), 0, nullptr), "0"),
    GIVES("files: copy a tree", files.CopyFile(s.Text("tree"), s.Text("copied"), 0, nullptr), "0", Keeps::Nothing),
    GIVES("files: copy contents", files.CopyFiles(s.Text("tree"), s.Text("names"), 0, 0), "0|1", Keeps::Nothing),
    GIVES("files: rename", files.RenameFile(s.Text("old.map"), s.Text("another.map")), "false|CFileException"),
    GIVES("files: move a folder", files.RenameDirectory(s.Text("tree"), s.Text("moved")), "false"),
    GIVES("files: move to another file system", files.RenameDirectory(s.Text("tree"), s.Text("../elsewhere/tree")),
          "false", Keeps::Moved),
    GIVES("files: move to a taken name", files.RenameDirectory(s.Text("old.map"), s.Text("new.map")), "false"),
    GIVES("files: delete a tree", files.DeleteDirectory(s.Text("tree"), 1), "false", Keeps::Nothing),
    GIVES("files: make folders", files.MakePath(s.Text("a/b/c")), "false", Keeps::Nothing),
    GIVES("files: compare", files.CompareFiles(s.Text("new.map"), s.Text("new.map"), 4096), "0"),
    GIVES("files: exists", files.FileExists(s.Text("old.map")), "false"),
    GIVES("files: full name", files.GetFullPathName(u"plan.map").GetLength() > 9, "false"),
    GIVES("files: list",
          std::unique_ptr<const CAtlList<CString>>(files.GetFileList(s.Text("names/*.*"), 0xFF))->GetCount(),
          "0|CAtlException"),
    GIVES("paths: free name", Paths::GetUniqueFilename(s.Text("names/plan.map")).Mid(s.Text("").GetLength()), ""),
    GIVES("paths: temporary file", Paths::GetTempFilename(u"draft-").IsEmpty(), "true"),
    GIVES("paths: temporary folder", Paths::GetTempFolder().IsEmpty(), "true|*"),
    GIVES("paths: special folder", Paths::GetSpecialFolderPath(Paths::MusicFolder).IsEmpty(), "true"),
    GIVES("paths: read-only", Paths::MakeFileReadOnly(s.Text("old.map")), "false|CFileException", Keeps::Either),
    GIVES("paths: relative", Paths::CalcRelativePathname(u"/maps/trips/north/a.map", u"/maps/plans/of/last/year/"), ""),
    GIVES("paths: on disk", Paths::ComparePaths(s.Text("tree/../old.map"), s.Text("old.map")), "false"),
    GIVES("paths: sub-folder", Paths::IsSubFolder(s.Text("tree"), s.Text("tree/folder")), "false"),
    DOES("paths: clean name", Paths::RemoveInvalidCharsFromFilename(s.text, u'_')),
};

}  // namespace

constinit const std::span<const Workload> kFileWorkloads(kRows);

}  // namespace faults
