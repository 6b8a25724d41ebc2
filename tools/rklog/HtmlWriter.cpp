#include "rklog/HtmlPage.h"
#include "rklog/RecordWriter.h"

#include <RkUtilities/guid/CrkGuid.h>

#include <ostream>

namespace rklog {

namespace {

constexpr std::string_view kEntries = "ENTRIES";

std::size_t PlaceOfEntries() { return kPage.find(kEntries); }

class HtmlWriter : public RecordWriter {
public:
    void Begin(std::ostream& out) override { WritePart(kPage.substr(0, PlaceOfEntries()), out); }
    void Write(const Record& record, std::ostream& out) override {
        std::string element = m_isFirst ? "" : ",\n";
        m_isFirst = false;
        AppendJson(record, JsonPlace::Script, element);
        out << element;
    }
    void End(std::ostream& out) override { WritePart(kPage.substr(PlaceOfEntries() + kEntries.size()), out); }

private:
    void WritePart(std::string_view part, std::ostream& out) const {
        constexpr std::string_view kPlace = "NONCE";
        for (std::size_t at = part.find(kPlace); at != std::string_view::npos; at = part.find(kPlace)) {
            out << part.substr(0, at) << m_nonce;
            part.remove_prefix(at + kPlace.size());
        }
        out << part;
    }

    // New for each page, so that no message can bring a script that the page would run.
    std::string m_nonce = CrkGuid::GuidToString(CrkGuid::CreateGuid()).ToUtf8();
    bool m_isFirst = true;
};

}  // namespace

std::unique_ptr<RecordWriter> MakeHtmlWriter() { return std::make_unique<HtmlWriter>(); }

}  // namespace rklog
