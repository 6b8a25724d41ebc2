#include "mindmap/read/OpmlReader.h"
#include "mindmap/read/TextOutlineReader.h"

#include <gtest/gtest.h>

using namespace mindmap;

namespace {

/// "centre(first(child),second)", with note, link, date and amount as "[note|link|date|amount]" where there is one.
std::string Told(const Outline& outline) {
    std::string told;
    int level = -1;
    for (const Topic& topic : outline.topics) {
        if (topic.level > level)
            told += level < 0 ? "" : "(";
        else
            told += std::string(static_cast<std::size_t>(level - topic.level), ')') + ",";
        level = topic.level;
        told += topic.text.ToUtf8();
        const CString details = topic.note + u"|" + topic.link + u"|" + topic.date + u"|" + topic.amount;
        if (details != u"|||")
            told += "[" + details.ToUtf8() + "]";
    }
    return told + std::string(static_cast<std::size_t>(level), ')');
}

template <class Read> std::string ToldOrError(Read read) {
    try {
        return Told(read());
    } catch (const OutlineError& error) {
        return "line " + std::to_string(error.line) + ": " + error.reason.ToUtf8();
    }
}

using ReaderCase = std::pair<std::string, const char*>;

std::string Opml(const std::string& body, const std::string& title = "") {
    return "<opml version='2.0'>\n<head><title>" + title + "</title></head>\n<body>" + body + "</body></opml>";
}

}  // namespace

TEST(OpmlReader, ReadsTopicsWithWhatGoesWithThemAndNamesTheLineOfAFault) {
    const ReaderCase cases[] = {
        {Opml("<outline text='A'><outline text='B'/><outline text='C'><outline text='D'/></outline></outline>"),
         "A(B,C(D))"},
        {Opml("<outline text='A'/><outline text='B'/>"), "file(A,B)"},
        {Opml("<outline text='Milk'/>", " Shopping "), "Shopping(Milk)"},  // one topic alone is no centre
        {Opml("<outline title='T' _note='n&#10;m' url='' htmlUrl='h' due='d' date='first' cost='5'><outline "
              "text=''/></outline>"),
         "T[n\nm|h|first|5]()"},
        {Opml("<outline text='A'><x><outline text='no'/></x><outline text='B'/></outline>"), "A(B)"},
        {Opml("<outline text='A'><outline text='B' isComment='true'><outline text='C'/></outline><outline "
              "text='D'/></outline>"),
         "A(D)"},
        {"<?xml version='1.0' encoding='ISO-8859-1'?>" + Opml("<outline text='\xE9'><outline text='b'/></outline>"),
         "é(b)"},
        {Opml(""), "line 0: the outline has no topic"},
        {Opml("\n<outline text='A & B'/>"), "line 4: not well-formed (invalid token)"},
        {"\n<html/>", "line 2: is no OPML: the root element is \"html\""},
        {"<?xml version='1.0'?>\n<!DOCTYPE opml [<!ENTITY a 'aaaa'><!ENTITY b '&a;&a;'>]>" +
             Opml("<outline text='&b;'/>"),
         "line 2: a document type declaration is not accepted"},
    };
    for (const auto& [document, told] : cases)
        EXPECT_EQ(ToldOrError([&, &text = document] { return ReadOpml(text, u"file"); }), told) << document;
}

TEST(TextOutlineReader, FindsTheTreeInIndentationHeadingsAndLists) {
    const ReaderCase cases[] = {
        {"A\n  B\n    C\n  D\n", "A(B(C),D)"},
        {"A\r\n\tB\r\n    C\r\n\r\n", "A(B,C)"},  // a tab is as wide as four spaces
        {"A\n    B\n  C\n   D\nE", "file(A(B,C(D)),E)"},
        {"\xEF\xBB\xBF"
         "A\n - B\n - 12. C\n - D-E",
         "A(B,12. C,D-E)"},
        {"# T #\n## A\n### C#\n- i\n  - j\n1. k\n## B", "T(A(C#(i(j),k)),B)"},
        {"- [x] done\n- [ ] open\n-nothing", "file(done,open[-nothing|||])"},
        {"# T\nfirst\nline\n\nsecond\n---\n- a\n```\n# no heading\n```\n",
         "T[first line\nsecond|||](a[# no heading|||])"},
        {"- A [site](https://x.org) and **b** `c`\n  - B [open](", "A site and b c[|https://x.org||](B [open]()"},
        {std::string("A\n\nB\0C", 6), "line 3: is no text in UTF-8"},
    };
    for (const auto& [document, told] : cases)
        EXPECT_EQ(ToldOrError([&, &text = document] { return ReadTextOutline(text, GuessTextSyntax(text), u"file"); }),
                  told)
            << document;
}

TEST(Readers, TakeAHundredThousandLevels) {
    std::string body;
    for (const char* const tag : {"<outline text='x'>", "</outline>"})
        for (int i = 0; i < 100'000; ++i)
            body += tag;
    EXPECT_EQ(ReadOpml(Opml(body), u"file").topics.back().level, 99'999);
}
