// A tree with any names, copied, moved, listed and deleted: the copy equals the tree, the list leads to each entry.
#include "fuzz/Fuzz.h"

namespace {

namespace fs = std::filesystem;

/// A name that a folder can hold, or "".
std::string AnyName(FuzzedDataProvider& data) {
    std::string name = data.ConsumeRandomLengthString(data.ConsumeBool() ? 8 : 255);
    std::erase_if(name, [](char c) { return c == '/' || c == '\0'; });
    return name == "." || name == ".." ? "" : name;
}

/// Makes entries in `folder` and, where they are folders, in these.
void Grow(FuzzedDataProvider& data, const fs::path& folder, int levels) {
    for (int left = data.ConsumeIntegralInRange(0, 6); left > 0; --left) {
        const std::string name = AnyName(data);
        const fs::path path = folder / fs::path("./" + name);
        if (name.empty() || exists(fs::symlink_status(path)))
            continue;
        switch (data.ConsumeIntegralInRange(0, 3)) {
        case 0:
            fs::create_symlink("target" + name, path);
            break;
        case 1:
            if (levels > 0 && fs::create_directory(path))
                Grow(data, path, levels - 1);
            break;
        default:
            std::ofstream(path, std::ios::binary) << data.ConsumeRandomLengthString(300);
            fs::permissions(path, static_cast<fs::perms>(0400U | data.ConsumeIntegralInRange(0U, 0777U)));
        }
    }
}

void CheckList(const SECFileSystem& files, const ScopedFolder& scratch) {
    const std::unique_ptr<CAtlList<CString>> list(files.GetFileList(scratch.Text("tree/*.*"), 0xFF));
    for (const CString& path : *list)
        Require(files.FileExists(path) && exists(fs::symlink_status(rk::NativePath(path))));
    Require(list->GetCount() == scratch.EntryCount("tree"));
}

}  // namespace

void Try(FuzzedDataProvider& data) {
    static const ScopedFolder scratch;
    const SECFileSystem files;
    const auto tree = scratch.Text("tree"), copy = scratch.Text("copy"), moved = scratch.Text("moved");
    fs::create_directory(scratch.Path("tree"));
    Grow(data, scratch.Path("tree"), 3);
    const auto content = scratch.Picture("tree");
    Require(files.CopyFile(tree, copy, 0, nullptr) == 1 && scratch.Picture("copy") == content);
    Require(files.MakeDirectory(moved) && files.CopyFiles(tree, moved, 0, 0) == 1);
    Require(scratch.Picture("moved") == content && files.DeleteDirectory(moved, 1));
    Require(files.RenameDirectory(copy, moved) && scratch.Picture("moved") == content);
    CheckList(files, scratch);
    Require(files.DeleteDirectory(tree, 1) && files.DeleteDirectory(moved, 1) &&
            files.IsDirectoryEmpty(scratch.Text()));
}
