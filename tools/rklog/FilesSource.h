#pragma once

#include "rklog/EntryReader.h"
#include "rklog/Trouble.h"

#include <memory>
#include <string>
#include <vector>

namespace rklog {

/// The entries of several files, one file after the other. A file that cannot be read is told of and left out.
class FilesSource : public EntrySource {
public:
    FilesSource(std::vector<std::string> paths, Trouble& trouble) : m_paths(std::move(paths)), m_trouble(trouble) {}
    bool Next(Entry& entry) override;

private:
    std::vector<std::string> m_paths;
    std::size_t m_nextPath = 0;
    std::unique_ptr<EntryReader> m_reader;
    Trouble& m_trouble;
};

}  // namespace rklog
