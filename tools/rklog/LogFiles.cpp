#include "rklog/LogFiles.h"

#include "rklog/EntryText.h"

#include <RkUtilities/foundation/NativePath.h>
#include <RkUtilities/logging/CrkLogWriter.h>

#include <algorithm>
#include <filesystem>
#include <system_error>
#include <tuple>

namespace rklog {

namespace {

struct Backup {
    std::int64_t modifiedNanoseconds;
    std::string path;
    friend bool operator<(const Backup& a, const Backup& b) {
        return std::tie(a.modifiedNanoseconds, a.path) < std::tie(b.modifiedNanoseconds, b.path);
    }
};

bool HasEntryNearStart(const std::string& path) {
    constexpr std::size_t kNear = 64 << 10;
    std::string bytes(kNear, '\0');
    bytes.resize(InputFile(path).Read(bytes.data(), bytes.size()));
    return bytes.find(kEntryStart) != std::string::npos;
}

}  // namespace

std::string ActiveFileOf(const std::string& folder) {
    return (std::filesystem::path(folder) / CrkLogWriter::m_activeFileName.ToUtf8()).string();
}

std::vector<std::string> FilesOfFolder(const std::string& folder) {
    const std::string activePath = ActiveFileOf(folder);
    std::vector<Backup> backups;
    for (const auto& item : std::filesystem::directory_iterator(folder)) {
        const std::string path = item.path().string();
        InputFile::Facts facts;
        if (path != activePath && path.ends_with(".xml") && InputFile::Look(path, facts) && facts.isRegular &&
            HasEntryNearStart(path))
            backups.push_back({facts.modifiedNanoseconds, path});
    }
    std::sort(backups.begin(), backups.end());
    std::vector<std::string> paths;
    paths.reserve(backups.size() + 1);
    for (Backup& backup : backups)
        paths.push_back(std::move(backup.path));
    if (InputFile::Facts facts; InputFile::Look(activePath, facts))
        paths.push_back(activePath);
    return paths;
}

std::vector<std::string> FilesOf(const std::string& path) {
    InputFile::Facts facts;
    return path != "-" && InputFile::Look(path, facts) && facts.isFolder ? FilesOfFolder(path)
                                                                         : std::vector<std::string>{path};
}

}  // namespace rklog
