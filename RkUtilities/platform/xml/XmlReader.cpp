#include "RkUtilities/platform/xml/XmlReader.h"

#include "RkUtilities/platform/files/FileCalls.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdint>
#include <ctime>
#include <exception>
#include <expat.h>
#include <fcntl.h>
#include <memory>
#include <new>
#include <optional>
#include <sys/random.h>
#include <sys/stat.h>
#include <unistd.h>

namespace rk::platform {

namespace {

constexpr std::int64_t kSmallestBlock = 1024;  // the length of a file may be a lie
constexpr std::int64_t kLargestBlock = std::int64_t{32} * 1024;

constexpr unsigned kElementsBetweenClockLooks = 256;  // a hostile document type can make each of them expensive
constexpr std::chrono::nanoseconds kLongestComputation = std::chrono::milliseconds(250);

std::chrono::nanoseconds ThreadComputingTime()
{
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

/// What keeps a document from choosing names that meet in one place of expat's hash tables: a secret, drawn once, since
/// drawing it for each reading costs as much as reading a small document. Where there is none (0), expat draws its own.
unsigned long HashSalt() noexcept
{
    static constinit std::atomic<unsigned long> drawn = 0;
    unsigned long salt = drawn.load(std::memory_order_relaxed);
    if (salt == 0 && getrandom(&salt, sizeof salt, GRND_NONBLOCK) == sizeof salt)
        drawn.store(salt, std::memory_order_relaxed);
    return salt;
}

// One reading of one document. No exception passes through expat: it is kept until the parser has returned.
class Reading {
public:
    explicit Reading(XmlReceiver& receiver) : m_receiver(receiver), m_parser(XML_ParserCreate(nullptr), XML_ParserFree)
    {
        if (!m_parser)
            throw std::bad_alloc();
        XML_Parser parser = m_parser.get();
        XML_SetHashSalt(parser, HashSalt());
        XML_SetUserData(parser, this);
        XML_SetElementHandler(parser, &OnElementBegins, &OnElementEnds);
        XML_SetCharacterDataHandler(parser, &OnText);
        XML_SetEntityDeclHandler(parser, &OnEntityDeclaration);
        XML_SetSkippedEntityHandler(parser, &OnSkippedEntity);
    }

    /// The memory to read the next block into, `byteCount` at most; valid until `Parse`.
    void* Block(int byteCount)
    {
        void* const block = XML_GetBuffer(m_parser.get(), byteCount);
        if (block == nullptr)
            throw std::bad_alloc();
        return block;
    }

    /// Parses what was put into the block; false when the document is refused.
    bool Parse(int byteCount, bool isLast)
    {
        const XML_Status status = XML_ParseBuffer(m_parser.get(), byteCount, isLast ? XML_TRUE : XML_FALSE);
        if (m_thrown)
            std::rethrow_exception(m_thrown);
        if (status == XML_STATUS_OK)
            return isLast || !TookTooLong();
        if (XML_GetErrorCode(m_parser.get()) == XML_ERROR_NO_MEMORY)
            throw std::bad_alloc();
        return false;
    }

private:
    static void OnElementBegins(void* self, const XML_Char* name, const XML_Char** /*attributes*/)
    {
        Reading& reading = *static_cast<Reading*>(self);
        if (++reading.m_elementCount % kElementsBetweenClockLooks == 0 && reading.TookTooLong())
            reading.Stop();
        else
            reading.Tell([name](XmlReceiver& receiver) { receiver.ElementBegins(name); });
    }
    static void OnText(void* self, const XML_Char* text, int byteCount)
    {
        const std::string_view piece(text, static_cast<std::size_t>(byteCount));
        static_cast<Reading*>(self)->Tell([piece](XmlReceiver& receiver) { receiver.Text(piece); });
    }
    static void OnElementEnds(void* self, const XML_Char* /*name*/)
    {
        static_cast<Reading*>(self)->Tell([](XmlReceiver& receiver) { receiver.ElementEnds(); });
    }
    static void OnEntityDeclaration(void* self, const XML_Char* /*name*/, int /*isParameterEntity*/,
                                    const XML_Char* /*value*/, int /*byteCount*/, const XML_Char* /*base*/,
                                    const XML_Char* /*systemId*/, const XML_Char* /*publicId*/,
                                    const XML_Char* /*notation*/)
    {
        static_cast<Reading*>(self)->Stop();
    }
    static void OnSkippedEntity(void* self, const XML_Char* /*name*/, int /*isParameterEntity*/)
    {
        static_cast<Reading*>(self)->Stop();
    }

    template <class Event>
    void Tell(const Event& event) noexcept
    {
        if (m_thrown)  // expat may still report the end of the element in which it was stopped
            return;
        try {
            event(m_receiver);
        } catch (...) {
            m_thrown = std::current_exception();
            Stop();
        }
    }
    void Stop() { XML_StopParser(m_parser.get(), XML_FALSE); }

    // The count begins with the first look, so that a document of one block and few elements costs none.
    bool TookTooLong()
    {
        const std::chrono::nanoseconds now = ThreadComputingTime();
        if (!m_started)
            m_started = now;
        return now - *m_started > kLongestComputation;
    }

    XmlReceiver& m_receiver;
    std::unique_ptr<XML_ParserStruct, decltype(&XML_ParserFree)> m_parser;
    std::exception_ptr m_thrown;
    std::optional<std::chrono::nanoseconds> m_started;
    unsigned m_elementCount = 0;
};

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
    Reading reading(receiver);
    for (std::int64_t readCount = 0;;) {
        void* const block = reading.Block(blockByteCount);
        const ssize_t byteCount =
            Uninterrupted([&] { return read(file.Descriptor(), block, static_cast<std::size_t>(blockByteCount)); });
        if (byteCount < 0)
            return false;
        readCount += byteCount;
        // Fewer bytes than asked for where the file is known to end save the call that would tell so.
        const bool isLast = byteCount == 0 || (byteCount < blockByteCount && readCount >= facts.st_size);
        if (!reading.Parse(static_cast<int>(byteCount), isLast))
            return false;
        if (isLast)
            return true;
    }
}

}  // namespace rk::platform
