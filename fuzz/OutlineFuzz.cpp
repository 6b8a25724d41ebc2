// Any bytes, as each kind of outline and each field of a topic: a reason and its line, or a sound map without overlap.
#include "fuzz/Fuzz.h"
#include "mindmap/layout/MapCheck.h"
#include "mindmap/read/OpmlReader.h"
#include "mindmap/read/TextOutlineReader.h"
#include "tests/mindmap/MapInvariants.h"

using namespace mindmap;

namespace {

void CheckOutline(const Outline& outline) {
    const MapLayout map = LayOut(outline);
    Require(CheckMap(outline, map).AreNone());
    Require(std::ranges::all_of(map.shapes, TextStaysInShape));
    const XmlFacts svg = ParseXml(SvgOf(outline, map));
    Require(svg.isWellFormed);
    Require(svg.elements.count("path") >= outline.topics.size() - 1);  // the lines
}

template <class Read> void CheckReader(Read read) {
    try {
        CheckOutline(read());
    } catch (const OutlineError& error) {
        Require(!error.reason.IsEmpty() && error.line >= 0);
    }
}

}  // namespace

void Try(FuzzedDataProvider& data) {
    const std::string document = data.ConsumeRemainingBytesAsString();
    CheckReader([&] { return ReadOpml(document, u"file"); });
    CheckReader([&] { return ReadTextOutline(document, TextSyntax::Indented, u"file"); });
    CheckReader([&] { return ReadTextOutline(document, TextSyntax::Markdown, u"file"); });
    OutlineBuilder builder;
    const int top = builder.Add(0, {});
    for (CString Topic::* field : {&Topic::text, &Topic::note, &Topic::link, &Topic::date, &Topic::amount}) {
        Topic topic;
        topic.*field = document;
        builder.Add(top, topic);
    }
    CheckOutline(builder.Finish({}));
}
