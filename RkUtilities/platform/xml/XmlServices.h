#pragma once

#include "RkUtilities/platform/xml/XmlReader.h"

#include <memory>

/// All that the library takes from expat.
namespace rk::platform {

/// Reads one document, block by block, and tells its receiver; the rules are those of `ReadXmlFile`.
class XmlParser {
public:
    enum class BlockKind { Further, Last };

    virtual ~XmlParser() = default;
    /// The memory to read the next block into, `byteCount` at most; valid until `Parse`.
    virtual void* Block(int byteCount) = 0;
    /// Parses what was put into the block; false when the document is refused.
    virtual bool Parse(int byteCount, BlockKind kind) = 0;
};

struct XmlServices {
    std::unique_ptr<XmlParser> (*parser)(XmlReceiver& receiver);
};

const XmlServices& Xml();

}  // namespace rk::platform
