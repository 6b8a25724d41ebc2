#pragma once

#include "rklog/EntryCutter.h"
#include "rklog/InputFile.h"

#include <memory>
#include <string>

namespace rklog {

/// The entries of one file, from its start to its end.
class EntryReader : public EntrySource {
public:
    explicit EntryReader(const std::string& path) : m_file(path) {}
    bool Next(Entry& entry) override;

private:
    InputFile m_file;
    EntryCutter m_cutter;
    bool m_isAtEnd = false;
};

}  // namespace rklog
