#include "RkUtilities/platform/xml/XmlReader.h"

#include "RkUtilities/platform/files/FileCalls.h"
#include "RkUtilities/platform/files/Files.h"

#include <algorithm>
#include <cstdint>
#include <ctime>
#include <exception>
#include <expat.h>
#include <fcntl.h>
#include <memory>
#include <new>
#include <sys/random.h>
#include <sys/stat.h>

namespace rk::platform {

namespace {

/// Gives expat the secret of its hash tables. Where the system gives no random bytes, expat's own drawing may end the
/// program; the place and the time are the secret then.
void SetSecret(XML_Parser parser) noexcept {
    std::uint64_t secret[2];
    if (getrandom(secret, sizeof secret, GRND_NONBLOCK) != sizeof secret) {
        secret[0] = reinterpret_cast<std::uintptr_t>(parser);
        secret[1] = static_cast<std::uint64_t>(clock());
    }
#ifdef RK_EXPAT_HAS_LONG_SECRET
    XML_SetHashSalt16Bytes(parser, reinterpret_cast<const std::uint8_t*>(secret));
#else
    XML_SetHashSalt(parser, (secret[0] ^ secret[1]) | 1);  // 0 stands for no secret
#endif
}

/// The reading of a document. No exception passes through expat: the exception is kept until the parser has returned.
class Reading {
public:
    explicit Reading(const TakeXmlChild& take) : m_take(take), m_parser(XML_ParserCreate(nullptr), XML_ParserFree) {
        if (!m_parser)
            throw std::bad_alloc();
        XML_Parser parser = m_parser.get();
        SetSecret(parser);
        XML_SetUserData(parser, this);
        XML_SetElementHandler(
            parser, [](void* self, const XML_Char* name, const XML_Char**) { Of(self).Begin(name); },
            [](void* self, const XML_Char*) { Of(self).End(); });
        XML_SetCharacterDataHandler(parser, [](void* self, const XML_Char* text, int byteCount) {
            Of(self).Text({text, static_cast<std::size_t>(byteCount)});
        });
        XML_SetAttlistDeclHandler(parser, [](void* self, auto...) {
            if (++Of(self).m_declarationCount > kMostXmlAttributeDeclarations)
                Of(self).Refuse("too many attributes are declared");
        });
        XML_SetEntityDeclHandler(parser, [](void* self, auto...) { Of(self).Refuse("an entity is declared"); });
        XML_SetSkippedEntityHandler(parser, [](void* self, auto...) { Of(self).Refuse("an entity is used"); });
    }

    /// The memory to read the document into.
    char* Block(std::size_t byteCount) {
        void* const block = XML_GetBuffer(m_parser.get(), static_cast<int>(byteCount));
        if (block == nullptr)
            throw std::bad_alloc();
        return static_cast<char*>(block);
    }

    /// Parses the whole document from the block; returns why it is refused.
    std::string Parse(std::size_t byteCount) {
        XML_Parser parser = m_parser.get();
        const XML_Status status = XML_ParseBuffer(parser, static_cast<int>(byteCount), XML_TRUE);
        if (m_thrown)
            std::rethrow_exception(m_thrown);
        if (status == XML_STATUS_OK)
            return {};
        const XML_Error error = XML_GetErrorCode(parser);
        if (error == XML_ERROR_NO_MEMORY)
            throw std::bad_alloc();
        return "line " + std::to_string(XML_GetCurrentLineNumber64(parser)) + ": " +
               (m_refusal != nullptr ? m_refusal : XML_ErrorString(error));
    }

private:
    static Reading& Of(void* self) { return *static_cast<Reading*>(self); }

    void Begin(const XML_Char* name) {
        if (++m_depth > kDeepestXmlElement)
            Refuse("elements are nested too deep");
        if (m_depth == kDepthOfChildren)
            Do([&] {
                m_name = name;
                m_text.clear();
            });
    }
    void Text(std::string_view piece) {
        if (m_depth >= kDepthOfChildren)
            Do([&] { m_text += piece; });
    }
    void End() {
        if (m_depth-- == kDepthOfChildren)
            Do([&] { m_take(m_name, m_text); });
    }

    template <class Step> void Do(const Step& step) noexcept {
        if (m_thrown || m_refusal != nullptr)  // expat may still report the end of the element in which it was stopped
            return;
        try {
            step();
        } catch (...) {
            m_thrown = std::current_exception();
            XML_StopParser(m_parser.get(), XML_FALSE);
        }
    }
    void Refuse(const char* why) {
        m_refusal = why;
        XML_StopParser(m_parser.get(), XML_FALSE);
    }

    static constexpr int kDepthOfChildren = 2;

    const TakeXmlChild& m_take;
    std::unique_ptr<XML_ParserStruct, decltype(&XML_ParserFree)> m_parser;
    std::exception_ptr m_thrown;
    const char* m_refusal = nullptr;
    std::string m_name;  // of the child of the root that is being read, with its text so far
    std::string m_text;
    int m_depth = 0;  // of the innermost open element; the root's is 1
    int m_declarationCount = 0;
};

}  // namespace

std::string ReadXmlFile(const std::string& nativePath, const TakeXmlChild& take) {
    // Opened without waiting, as a pipe would have it, and looked at before a byte is read: a device may be endless.
    const FileHandle file = OpenAt(PlaceOf(nativePath), O_RDONLY | O_NONBLOCK);
    struct stat facts{};
    if (!file || fstat(file.Descriptor(), &facts) != 0)
        return LastError().message();
    if (!S_ISREG(facts.st_mode))
        return "not an ordinary file";

    // The file is read at once, so that the parser sees no token twice. The room is a byte larger than the file, to see
    // the file's end. The kernel gives 0 as the length of files that it makes up; they get the largest room.
    constexpr auto kLongest = static_cast<off_t>(kLongestXmlFile);
    const auto room = static_cast<std::size_t>(facts.st_size > 0 ? std::min(facts.st_size, kLongest) : kLongest) + 1;
    Reading reading(take);
    std::error_code error;
    const std::size_t byteCount = ReadFile(file.Descriptor(), reading.Block(room), room, error);
    if (error)
        return error.message();
    return byteCount < room ? reading.Parse(byteCount) : "longer than it may be";
}

}  // namespace rk::platform
