#include "tests/faults/Workload.h"

#include <array>

namespace faults {
namespace {

using Strings = CrkStringUtilities;

constexpr const char16_t* kLong = u"Eine Überfahrt nach Łódź dauert länger, als man denkt; das Schiff wartet nicht.";

void Begin(Scene& scene) {
    scene.text = kLong;
    scene.other = CString(u" Ein anderer Text, der für sich steht: ") + kLong + u" ";
    scene.array = {u"alpha alpha alpha alpha", u"beta beta beta beta beta", CString(kLong)};
    scene.list = {CString(kLong), u"zwei zwei zwei zwei zwei", u"Ämter und Würden im Jahr 2027"};
    for (const char16_t* const key : {u"one", u"two", u"three and a longer key behind it"})
        scene.map.SetAt(key, kLong);
}

using Pointers = std::array<const CString*, 3>;

void Grow(Scene& scene) {
    for (int i = 0; i < 60; ++i)
        scene.map.SetAt(Strings::LongToString(i), u"v");
}

const Workload kRows[] = {
    DOES("text from UTF-8", s.text = CString("Überfahrt nach Łódź, 7 Tage, und wieder zurück")),
    GIVES("text to UTF-8", s.text.ToUtf8().size()),
    DOES("text: append itself", s.text += s.text),
    DOES("text: insert", s.text.Insert(3, s.other)),
    DOES("text: replace", s.text.Replace(u"e", u"eeeeee")),
    DOES("text: upper case", s.text.MakeUpper()),
    DOES("text: trim units", s.other.Trim(u" E.")),
    DOES("text: format", s.text.Format(u"%s: %d of %08.3f, %Lg", s.other, 7, 2.5, 1.0L)),
    GIVES("text: join", s.text + s.other + u"!"),
    GIVES("text: parts", s.text.Left(20) + s.text.Mid(5, 30) + s.text.Right(40) + s.text.SpanExcluding(u"xyz")),
    GIVES("texts: clean a topic's text", Strings::ReplaceInvalidTopicTextCharacters(s.text + u"\x1\x2<>\n\n")),
    GIVES("texts: line breaks", Strings::ConvertLFsToCRLFPairs(u"one\ntwo\nthree\nfour and more than that\n")),
    DOES("texts: wrap", Strings::InsertLineSeparators(&s.text, u"\r\n", 10, 5)),
    GIVES("texts: combine", Strings::Combine(u", ", s.text, s.other, u"", /*skipEmptyParts=*/true)),
    GIVES("texts: format in order", Strings::FormatOrdered(u"%2$s and %1$s, %1$s", s.text, s.other)),
    DOES("texts: parameters of a link",
         Strings::ExtractUrlParameters(u"http://host/path?name=value&other=another%20value&third=3", s.map),
         "CAtlException", Keeps::Nothing),
    GIVES("texts: value of a link", Strings::ExtractUrlValue(u"http://host/path?name=value&other=x", u"OTHER"),
          "CAtlException"),
    DOES("texts: environment",
         Strings::ReplaceEnvironmentVariables(&(s.text = CString(u"at %HOME% and %TZ%, ") + s.text)), "*",
         Keeps::Nothing),
    GIVES("texts: e-mail", Strings::IsValidEmail(u"somebody.else@mail.example.org")),
    GIVES("texts: UTF-8 kept in a text", Strings::UnicodeToUtf8(s.text)),
    DOES("array: add", s.array.Add(s.text), "CAtlException"),
    DOES("array: insert", s.array.InsertAt(1, s.array[2]), "CAtlException"),
    DOES("array: count", s.array.SetCount(200), "CAtlException"),
    DOES("array: copy", s.array = CAtlArray<CString>(s.array), "CAtlException"),
    DOES("list: copy", s.list = CAtlList<CString>(s.list), "CAtlException"),
    DOES("map: make a value", s.map[u"a key that is new"] = u"", "CAtlException"),
    DOES("map: copy", s.map = decltype(s.map)(s.map), "CAtlException"),
    DOES("map: grow", Grow(s), "CAtlException", Keeps::Nothing),
    GIVES("pointers: any of", CorvaneNSArrayAdditions::containsAnyObjectsIdenticalTo(
                                  Pointers{&s.text, &s.other, nullptr}, Pointers{&s.other, nullptr, nullptr})),
    GIVES("XML: name", CrkXmlUtilities::StringToNCName(s.text, u'_', /*insertUnderscore=*/true)),
    GIVES("XML: text", CrkXmlUtilities::StringToXmlString(s.text + u"\x1\x2", u'?')),
    GIVES("XML: unique URI", CrkXmlUtilities::GenerateUniqueUri().GetLength(), "system_error"),
    GIVES("GUID: new", CrkGuid() == CrkGuid(), "system_error"),
    GIVES("GUID: text",
          CrkGuid::GuidToStringWithBraces(CrkGuid::StringToGuid(u"00112233-4455-6677-8899-aabbccddeeff"))),
};

}  // namespace

constinit const std::span<const Workload> kTextWorkloads(kRows);

}  // namespace faults
