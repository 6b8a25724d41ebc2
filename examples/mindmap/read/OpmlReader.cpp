#include "mindmap/read/OpmlReader.h"

#include <expat.h>

#include <algorithm>
#include <array>
#include <iterator>
#include <memory>
#include <optional>

namespace mindmap {

namespace {

struct AttributeName {
    const char* name;
    CString Topic::* field;
};
/// The attributes of each field, the preferred attribute first.
constexpr AttributeName kAttributes[] = {
    {"text", &Topic::text},     {"title", &Topic::text},   {"_note", &Topic::note},  {"note", &Topic::note},
    {"url", &Topic::link},      {"htmlUrl", &Topic::link}, {"xmlUrl", &Topic::link}, {"link", &Topic::link},
    {"_date", &Topic::date},    {"date", &Topic::date},    {"due", &Topic::date},    {"_amount", &Topic::amount},
    {"amount", &Topic::amount}, {"cost", &Topic::amount},
};

std::string_view ValueOf(std::string_view name, const XML_Char** attributes) {
    for (; *attributes != nullptr; attributes += 2)
        if (name == attributes[0])
            return attributes[1];
    return {};
}

class OpmlElementReader {
public:
    OpmlElementReader() : m_parser(XML_ParserCreate(nullptr)) {
        if (m_parser == nullptr)
            throw std::bad_alloc();
        XML_SetUserData(m_parser.get(), this);
        XML_SetElementHandler(m_parser.get(), OnStart, OnEnd);
        XML_SetCharacterDataHandler(m_parser.get(), OnText);
        XML_SetStartDoctypeDeclHandler(m_parser.get(), OnDoctype);
    }

    Outline Read(std::string_view document, const CString& title) {
        const XML_Status status =
            XML_Parse(m_parser.get(), document.data(), static_cast<int>(document.size()), XML_TRUE);
        if (m_error)
            throw *m_error;
        if (status != XML_STATUS_OK)
            throw OutlineError{Line(), CString(XML_ErrorString(XML_GetErrorCode(m_parser.get())))};
        CString headTitle(m_title);
        headTitle.Trim();
        return m_builder.Finish(headTitle.IsEmpty() ? title : headTitle);
    }

private:
    /// Where the parser is in an OPML document.
    enum class Section { BeforeRoot, Root, Head, Title, Body };

    static void XMLCALL OnStart(void* reader, const XML_Char* name, const XML_Char** attributes) {
        static_cast<OpmlElementReader*>(reader)->Guard([=](OpmlElementReader& self) { self.Start(name, attributes); });
    }
    static void XMLCALL OnEnd(void* reader, const XML_Char*) { static_cast<OpmlElementReader*>(reader)->End(); }
    static void XMLCALL OnText(void* reader, const XML_Char* bytes, int byteCount) {
        static_cast<OpmlElementReader*>(reader)->Guard([=](OpmlElementReader& self) {
            if (self.m_section == Section::Title)
                self.m_title.append(bytes, static_cast<std::size_t>(byteCount));
        });
    }
    static void XMLCALL OnDoctype(void* reader, const XML_Char*, const XML_Char*, const XML_Char*, int) {
        static_cast<OpmlElementReader*>(reader)->Guard([](OpmlElementReader& self) {
            throw OutlineError{self.Line(), u"a document type declaration is not accepted"};
        });
    }

    /// Runs what may throw where exceptions must not pass through the parser's C code.
    template <class Work> void Guard(Work work) {
        if (m_error)
            return;
        try {
            work(*this);
        } catch (const OutlineError& error) {
            m_error = error;
            XML_StopParser(m_parser.get(), XML_FALSE);
        } catch (const std::exception&) {
            m_error = OutlineError{Line(), u"not enough memory"};
            XML_StopParser(m_parser.get(), XML_FALSE);
        }
    }

    void Start(std::string_view name, const XML_Char** attributes) {
        ++m_depth;
        if (m_ignoredFromDepth != 0)
            return;
        if (m_section == Section::BeforeRoot && name != "opml")
            throw OutlineError{Line(), CString(u"is no OPML: the root element is \"") + CString(name) + u"\""};
        if (m_section == Section::BeforeRoot)
            m_section = Section::Root;
        else if (m_section == Section::Root && name == "head")
            m_section = Section::Head;
        else if (m_section == Section::Root && name == "body")
            m_section = Section::Body;
        else if (m_section == Section::Head && name == "title")
            m_section = Section::Title;
        else if (m_section == Section::Body && name == "outline")
            AddTopic(attributes);
        else
            m_ignoredFromDepth = m_depth;
    }

    void AddTopic(const XML_Char** attributes) {
        if (ValueOf("isComment", attributes) == "true") {
            m_builder.CountLeftOut();
            m_ignoredFromDepth = m_depth;
            return;
        }
        Topic topic;
        topic.line = Line();
        for (const AttributeName& attribute : kAttributes)
            if (const std::string_view value = ValueOf(attribute.name, attributes);
                !value.empty() && (topic.*attribute.field).IsEmpty())
                topic.*attribute.field = value;
        topic.more = OthersOf(attributes, topic);
        m_current = m_builder.Add(m_current, std::move(topic));
    }

    /// The attributes that no field has; those of outline programs themselves ("isComment", "_status") say nothing.
    static CString OthersOf(const XML_Char** attributes, const Topic& topic) {
        CString others;
        for (; *attributes != nullptr; attributes += 2) {
            const std::string_view name = attributes[0];
            const CString value = std::string_view(attributes[1]);
            const bool isShown = std::any_of(std::begin(kAttributes), std::end(kAttributes),
                                             [&](const AttributeName& known) { return value == topic.*known.field; });
            if (!isShown && !value.IsEmpty() && !name.starts_with("is") && !name.starts_with("_"))
                others += (others.IsEmpty() ? u"" : u"\n") + CString(name) + u": " + value;
        }
        return others;
    }

    void End() {
        const int depth = m_depth--;
        if (m_ignoredFromDepth != 0) {
            if (m_ignoredFromDepth == depth)
                m_ignoredFromDepth = 0;
        } else if (m_section == Section::Title) {
            m_section = Section::Head;
        } else if (m_section == Section::Body && depth > kBodyDepth) {
            m_current = m_builder.At(m_current).parent;
        } else {
            m_section = Section::Root;
        }
    }

    [[nodiscard]] int Line() const { return static_cast<int>(XML_GetCurrentLineNumber64(m_parser.get())); }

    static constexpr int kBodyDepth = 2;

    struct FreeParser {
        void operator()(XML_Parser parser) const { XML_ParserFree(parser); }
    };
    std::unique_ptr<XML_ParserStruct, FreeParser> m_parser;
    OutlineBuilder m_builder;
    std::optional<OutlineError> m_error;
    Section m_section = Section::BeforeRoot;
    int m_depth = 0;
    int m_ignoredFromDepth = 0;  // the element whose content is passed over; 0 for no element
    int m_current = 0;           // the topic whose element is open
    std::string m_title;
};

}  // namespace

Outline ReadOpml(std::string_view document, const CString& title) { return OpmlElementReader().Read(document, title); }

}  // namespace mindmap
