// A tree with any names, copied, moved, listed and deleted: the copy equals the tree, the list leads to each entry.
#include "RkUtilities/paths/SECFileSystem.h"

#include "fuzz/Require.h"
#include "fuzz/ScratchFolder.h"

#include <cstdint>
#include <fuzzer/FuzzedDataProvider.h>
#include <map>
#include <memory>
#include <string>

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
            WriteFile(path, data.ConsumeRandomLengthString(300));
            fs::permissions(path, static_cast<fs::perms>(0400U | data.ConsumeIntegralInRange(0U, 0777U)));
        }
    }
}

/// Everything below a folder by its path there: kind, permissions and content.
std::map<std::string, std::string> Content(const fs::path& folder) {
    std::map<std::string, std::string> content;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(folder)) {
        const fs::file_status status = entry.symlink_status();
        content[entry.path().string().substr(folder.string().size())] =
            std::to_string(static_cast<int>(status.type())) + ' ' +
            std::to_string(static_cast<int>(status.permissions())) +
            (is_symlink(status)        ? fs::read_symlink(entry).string()
             : is_regular_file(status) ? ReadFile(entry.path())
                                       : "");
    }
    return content;
}

void CheckList(const SECFileSystem& files, const fs::path& folder) {
    const std::unique_ptr<CAtlList<CString>> list(files.GetFileList(rk::PathText(folder.string()) + u"/*.*", 0xFF));
    std::size_t count = 0;
    for (const CString& path : *list) {
        Require(files.FileExists(path) && exists(fs::symlink_status(rk::NativePath(path))));
        ++count;
    }
    Require(count == static_cast<std::size_t>(std::distance(fs::directory_iterator(folder), fs::directory_iterator())));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    static const ScratchFolder scratch;
    const SECFileSystem files;
    const auto tree = scratch.Text("tree"), copy = scratch.Text("copy"), moved = scratch.Text("moved");
    fs::create_directory(scratch.Path("tree"));
    FuzzedDataProvider data(bytes, size);
    Grow(data, scratch.Path("tree"), 3);
    const auto content = Content(scratch.Path("tree"));
    Require(files.CopyFile(tree, copy, 0, nullptr) == 1 && Content(scratch.Path("copy")) == content);
    Require(files.MakeDirectory(moved) && files.CopyFiles(tree, moved, 0, 0) == 1);
    Require(Content(scratch.Path("moved")) == content && files.DeleteDirectory(moved, 1));
    Require(files.RenameDirectory(copy, moved) && Content(scratch.Path("moved")) == content);
    CheckList(files, scratch.Path("tree"));
    Require(files.DeleteDirectory(tree, 1) && files.DeleteDirectory(moved, 1) &&
            files.IsDirectoryEmpty(scratch.Text()));
    return 0;
}
