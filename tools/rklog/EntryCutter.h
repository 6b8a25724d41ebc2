#pragma once

#include "rklog/Entry.h"

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace rklog {

/// Cuts the bytes of a log into entries. Bytes are put in block by block, so memory is that of the longest entry.
///
/// An entry begins with its start tag at the beginning of a line and reaches to the next such start tag. What stands
/// behind its last footer is stray text, and so is what precedes the first entry; no byte is left out. An entry of more
/// than `longestByteCount` bytes comes in several pieces, the first torn and the others stray.
///
/// A message with a start tag at the beginning of a line cannot be told from an entry: the writer leaves it as it is.
class EntryCutter {
public:
    static constexpr std::size_t kBlockByteCount = std::size_t{1} << 20;

    explicit EntryCutter(std::size_t longestByteCount = std::size_t{256} << 20)
        : m_longestByteCount(longestByteCount) {}

    /// Room for the next `kBlockByteCount` bytes; what was given before becomes invalid.
    char* Room();
    /// Takes the first `byteCount` bytes of the room.
    void Took(std::size_t byteCount) {
        m_end += byteCount;
        m_isPaused = false;
    }
    /// No bytes follow for now: an entry at the end that has its footer is whole.
    void Pause() { m_isPaused = true; }
    /// No bytes follow any more.
    void Finish() { m_isFinished = true; }

    /// Gives the next entry; false when it takes more bytes, or when all of them are given.
    bool Next(Entry& entry);

    /// Where the first byte stands that is not given yet.
    [[nodiscard]] std::uint64_t Offset() const { return m_offset + m_begin; }
    /// Forgets all bytes that are not given, and goes on with those of another place.
    void StartAt(std::uint64_t offset);

private:
    [[nodiscard]] bool FindNextStart();
    [[nodiscard]] bool HasWholeEntryAtEnd() const;
    void Give(std::size_t end, Entry& entry);

    std::vector<char> m_bytes;
    std::size_t m_longestByteCount;
    std::size_t m_begin = 0;      // of what is to be given
    std::size_t m_end = 0;        // of what is there
    std::size_t m_searched = 0;   // up to here no entry begins behind m_begin
    std::size_t m_nextStart = 0;  // of the entry behind, when it is found
    std::uint64_t m_offset = 0;   // of m_bytes[0] in the file
    bool m_isFinished = false;
    bool m_isPaused = false;
};

}  // namespace rklog
