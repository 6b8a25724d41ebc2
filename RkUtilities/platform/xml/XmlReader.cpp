#include "RkUtilities/platform/xml/XmlReader.h"

#include "RkUtilities/platform/files/FileCalls.h"
#include "RkUtilities/platform/xml/XmlServices.h"

#include <algorithm>
#include <cstdint>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace rk::platform {

namespace {

constexpr std::int64_t kSmallestBlock = 1024;  // the length of a file may be a lie
constexpr std::int64_t kLargestBlock = std::int64_t{32} * 1024;

}  // namespace

bool ReadXmlFile(const std::string& nativePath, XmlReceiver& receiver)
{
    // Opened without waiting, as a pipe would have it, and looked at before a byte is read: a device may be endless.
    constexpr int kFlags = O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK;
    const FileHandle file(Uninterrupted([&] { return open(SystemPath(nativePath), kFlags); }));
    struct stat facts {};
    if (!file || fstat(file.Descriptor(), &facts) != 0 || !S_ISREG(facts.st_mode))
        return false;

    // Room for one byte more than there should be, so that the first reading sees the end of a small file.
    const auto blockByteCount = static_cast<int>(std::clamp(facts.st_size, kSmallestBlock - 1, kLargestBlock - 1) + 1);
    const std::unique_ptr<XmlParser> parser = Xml().parser(receiver);
    for (std::int64_t readCount = 0;;) {
        void* const block = parser->Block(blockByteCount);
        const ssize_t byteCount =
            Uninterrupted([&] { return read(file.Descriptor(), block, static_cast<std::size_t>(blockByteCount)); });
        if (byteCount < 0)
            return false;
        readCount += byteCount;
        // Fewer bytes than asked for where the file is known to end save the call that would tell so.
        const bool isLast = byteCount == 0 || (byteCount < blockByteCount && readCount >= facts.st_size);
        if (!parser->Parse(static_cast<int>(byteCount),
                           isLast ? XmlParser::BlockKind::Last : XmlParser::BlockKind::Further))
            return false;
        if (isLast)
            return true;
    }
}

}  // namespace rk::platform
