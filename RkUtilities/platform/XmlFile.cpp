#include "RkUtilities/platform/FileCalls.h"
#include "RkUtilities/platform/Modules.h"
#include "RkUtilities/platform/XmlReader.h"
#include "RkUtilities/platform/xml/XmlServices.h"

#include <cstdint>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace rk::platform {

namespace {

constexpr int kBlockByteCount = 32 * 1024;

}  // namespace

bool ReadXmlFile(const std::string& nativePath, XmlReceiver& receiver)
{
    // Opened without waiting, as a pipe would have it, and looked at before a byte is read: a device may be endless.
    constexpr int kFlags = O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK;
    const FileHandle file(Uninterrupted([&] { return open(SystemPath(nativePath), kFlags); }));
    struct stat facts {};
    if (!file || fstat(file.Descriptor(), &facts) != 0 || !S_ISREG(facts.st_mode))
        return false;

    const std::unique_ptr<XmlParser> parser = Xml().parser(receiver);
    for (std::int64_t readCount = 0;;) {
        void* const block = parser->Block(kBlockByteCount);
        const ssize_t byteCount = Uninterrupted([&] { return read(file.Descriptor(), block, kBlockByteCount); });
        if (byteCount < 0)
            return false;
        readCount += byteCount;
        // Fewer bytes than asked for where the file is known to end save the call that would tell so.
        const bool isLast = byteCount == 0 || (byteCount < kBlockByteCount && readCount >= facts.st_size);
        if (!parser->Parse(static_cast<int>(byteCount),
                           isLast ? XmlParser::BlockKind::Last : XmlParser::BlockKind::Further))
            return false;
        if (isLast)
            return true;
    }
}

}  // namespace rk::platform
