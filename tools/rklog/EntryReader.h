#pragma once

#include "rklog/EntryScanner.h"
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
    EntryScanner m_scanner;
    bool m_isAtEnd = false;
};

}  // namespace rklog
